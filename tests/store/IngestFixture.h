#pragma once
// A store on one engine with the delivered schema and a configuration of
// known standards, for the tests of the ingest routines.
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "platform/FileSystem.h"
#include "store/Cls_DB.h"
#include "support/TempApp.h"

#include <gtest/gtest.h>
#include <memory>

namespace vex::test {

class Ingest : public ::testing::TestWithParam<Backend> {
protected:
    void SetUp() override
    {
        if (GetParam() != Backend::Sqlite && Pg_Uri().isEmpty()) {
            if (qEnvironmentVariableIsSet("VEX_REQUIRE_PG"))
                FAIL() << "VEX_REQUIRE_PG is set but VEX_TEST_PG_URI is not";
            GTEST_SKIP() << "no PostgreSQL server (set VEX_TEST_PG_URI)";
        }
        G().App_Dir = app.Dir();
        G().FS = std::make_unique<FileSystem>(app.Dir());
        G().Config = std::make_unique<Cls_Config>();
        Cls_Config& c = cfg();
        // 100 points over 100 km, limit 80 km/h; deductions overspeed 1,
        // quick brake 2, quick acceleration 2, long overspeed 3, idle 1.
        c.B_Val1 = "100";
        c.B_Val2 = 100;
        c.B_Val3 = 80;
        c.B_Val4 = 1;
        c.B_Val5 = 2;
        c.B_Val6 = 2;
        c.B_Val7 = 3;
        c.B_Val8 = 1;
        c.B_Val9 = 9;
        c.B_Val10 = 8;
        c.B_Val11 = 3;
        c.B_Val12 = 5;
        c.U_PackDir = "\\Pack";
        c.S_CompanyCode = "12345678";
        db = std::make_unique<Cls_DB>(Fresh_Target(GetParam(), app));
        ASSERT_EQ(db->DB_State(), 1) << Err_Last().toStdString();
        ASSERT_TRUE(Guarded(1161, [&] { db->Ensure_Schema(); })) << Err_Last().toStdString();
    }
    void TearDown() override { db.reset(); }

    static Cls_Config& cfg() { return *G().Config; }

    int Rows(const QString& table, const QString& key = {})
    {
        if (key.isEmpty())
            return db->DB_RSet_D_D("SELECT * FROM " + table).RecordCount();
        return db->DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key}).RecordCount();
    }
    QString Text(const QString& table, const QString& key, const QString& field)
    {
        Recordset rs = db->DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
        return rs.RecordCount() < 1 ? QStringLiteral("<no row>") : rs.Text(field);
    }
    bool Is_Null(const QString& table, const QString& key, const QString& field)
    {
        Recordset rs = db->DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
        return rs.RecordCount() > 0 && rs.Field(field).isNull();
    }
    double Num(const QString& table, const QString& key, const QString& field)
    {
        Recordset rs = db->DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
        return rs.RecordCount() < 1 ? -12345 : rs.Field(field).toDouble();
    }
    void Put(const QString& table, const QString& key, const QVariantList& fields)
    {
        Recordset rs = db->DB_RSet_D_D("SELECT * FROM " + table + " WHERE D_F1=?", {key});
        if (rs.RecordCount() < 1) {
            rs.AddNew();
            rs.Set("D_F1", key);
        }
        for (int i = 0; i + 1 < fields.size(); i += 2)
            rs.Set(fields[i].toString(), fields[i + 1]);
        rs.Update();
    }

    TempApp app;
    std::unique_ptr<Cls_DB> db;
};

// A minute series of 1,440 zero cells with some cells set: {minute, value}.
inline QString Series(std::initializer_list<std::pair<int, int>> cells)
{
    QString s(2880, QLatin1Char('0'));
    for (const auto& [m, v] : cells)
        s.replace(2 * m, 2, QString::number(v, 16).toUpper().rightJustified(2, QLatin1Char('0')));
    return s;
}

#define VEX_INGEST_ENGINES(Suite)                                                                                   \
    INSTANTIATE_TEST_SUITE_P(Engines, Suite,                                                                         \
                             ::testing::Values(::vex::test::Backend::Sqlite, ::vex::test::Backend::Postgres,        \
                                               ::vex::test::Backend::Odbc),                                          \
                             [](const auto& info) { return ::vex::test::Backend_Name(info.param).toStdString(); })

} // namespace vex::test
