#include "registers/Register_Rules.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "store/Cls_DB.h"

#include <QDate>

namespace vex {

namespace {

const QString kToday = QStringLiteral("\\today");

Register_Field F(const char* column, int id, const char* fixed = "", const char* newValue = "",
                 const char* nullValue = "")
{
    Register_Field f;
    f.column = QString::fromLatin1(column);
    f.captionId = id;
    f.fixedCaption = QString::fromUtf8(fixed);
    f.newValue = QString::fromUtf8(newValue);
    f.nullValue = QString::fromUtf8(nullValue);
    return f;
}

// Where clause of the key (and of the car the rows belong to).
QString Key_Where(const Register_Def& def, QVariantList& binds, const QString& code, const QString& scope)
{
    if (def.scopeColumn.isEmpty()) {
        binds << code;
        return QStringLiteral(" WHERE D_F1 = ?");
    }
    binds << scope << code;
    return QStringLiteral(" WHERE ") + def.scopeColumn + QStringLiteral(" = ? AND D_F2 = ?");
}

} // namespace

const Register_Def& Car_Register()
{
    static const Register_Def def = [] {
        Register_Def d;
        d.table = QStringLiteral("S_D1");
        d.formName = QStringLiteral("frmRegister_Car");
        d.titleId = 617;
        d.fields = {F("D_F1", 632), F("D_F2", 809), F("D_F3", 808)};
        Register_Field date = F("D_F4", 1088);
        date.date = true;
        date.newValue = date.nullValue = kToday;
        d.fields.push_back(date);
        Register_Field io = F("D_F8", 0, "IO세팅", "FF", "3");
        io.blankMeans = QStringLiteral("FF");
        d.fields.push_back(io);
        d.fields.push_back(F("D_F6", 1090));
        d.fields.push_back(F("D_F5", 0, "RPM 계수"));
        d.fields.push_back(F("D_F10", 1070, "", "80", "80"));
        d.fields.push_back(F("D_F7", 0, "연비 기준", "3.0", "3.0"));
        d.grid = {0, 1, 2};
        d.gridHeads = {632, 809, 808};
        d.searchColumns = {QStringLiteral("D_F1"), QStringLiteral("D_F2"), QStringLiteral("D_F3")};
        d.loadCode = 1034;
        d.buttonCode = 1035;
        return d;
    }();
    return def;
}

const Register_Def& Driver_Register()
{
    static const Register_Def def = [] {
        Register_Def d;
        d.table = QStringLiteral("S_D2");
        d.formName = QStringLiteral("frmRegister_Driver");
        d.titleId = 618;
        const int ids[] = {633, 1095, 1063, 1064, 1096, 1002, 1097, 1098, 1084, 1085, 876};
        for (int i = 0; i < 11; ++i) {
            Register_Field f;
            f.column = QStringLiteral("D_F%1").arg(i + 1);
            f.captionId = ids[i];
            f.written = i < 6; // the columns beyond the sixth are shown, never written
            d.fields.push_back(f);
        }
        d.grid = {0, 1, 2, 3, 4};
        d.gridHeads = {633, 1095, 1063, 1064, 1096};
        d.searchColumns = {QStringLiteral("D_F1"), QStringLiteral("D_F3"), QStringLiteral("D_F4")};
        d.loadCode = 1036;
        d.buttonCode = 1037;
        return d;
    }();
    return def;
}

const Register_Def& Equipment_Register()
{
    static const Register_Def def = [] {
        Register_Def d;
        d.table = QStringLiteral("S_M1");
        d.formName = QStringLiteral("frm_Equipment");
        d.fixedTitle = QStringLiteral("장비 관리");
        d.fields = {F("D_F2", 1183), F("D_F3", 1040), F("D_F4", 1038), F("D_F5", 1204)};
        d.grid = {0, 1, 2, 3};
        d.gridHeads = {1183, 1040, 1038, 1204};
        d.searchColumns = {QStringLiteral("D_F1"), QStringLiteral("D_F3"), QStringLiteral("D_F4")};
        d.scopeColumn = QStringLiteral("D_F1");
        d.loadCode = 1036; // shared with the driver register
        d.buttonCode = 1037;
        return d;
    }();
    return def;
}

QString Field_Caption(const Register_Field& f)
{
    return f.captionId ? LoadResString(f.captionId) : f.fixedCaption;
}

QString New_Value(const Register_Field& f)
{
    return f.newValue == kToday ? QDate::currentDate().toString(Qt::ISODate) : f.newValue;
}

QString Null_Value(const Register_Field& f)
{
    return f.nullValue == kToday ? QDate::currentDate().toString(Qt::ISODate) : f.nullValue;
}

Register_Rows Register_List(Cls_DB& db, const Register_Def& def, const QString& scope,
                            const QString& searchColumn, const QString& pattern)
{
    Register_Rows out;
    Guarded(int16_t(def.loadCode), [&] {
        QString sql = QStringLiteral("SELECT * FROM ") + def.table;
        QVariantList binds;
        QStringList where;
        if (!def.scopeColumn.isEmpty()) {
            where << def.scopeColumn + QStringLiteral(" = ?");
            binds << scope;
        }
        if (!searchColumn.isEmpty()) {
            QString p = pattern;
            p.replace(QLatin1Char('*'), QLatin1Char('%')).replace(QLatin1Char('?'), QLatin1Char('_'));
            where << searchColumn + QStringLiteral(" like ?");
            binds << p;
        }
        if (!where.isEmpty())
            sql += QStringLiteral(" WHERE ") + where.join(QStringLiteral(" AND "));
        sql += def.scopeColumn.isEmpty() ? QStringLiteral(" ORDER BY D_F1") : QStringLiteral(" ORDER BY D_F2");
        Recordset rs = db.DB_RSet_D_D(sql, binds);
        out.columns = rs.Field_Names();
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            QVariantList row;
            for (const QString& c : out.columns)
                row << rs.Field(c);
            out.rows.push_back(row);
        }
    });
    return out;
}

int Register_Save(Cls_DB& db, const Register_Def& def, Register_Mode mode, const QStringList& values,
                  const QString& scope)
{
    const QString code = values.value(0);
    if (code.isEmpty())
        return 152;
    int result = 151;
    Guarded(int16_t(def.buttonCode), [&] {
        QVariantList binds;
        const QString where = Key_Where(def, binds, code, scope);
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + def.table + where, binds);
        if (mode == Adding) {
            if (rs.RecordCount() > 0) {
                result = 153;
                return;
            }
            rs.AddNew();
            if (!def.scopeColumn.isEmpty())
                rs.Set(def.scopeColumn, scope);
            rs.Set(def.fields[0].column, code);
        } else if (rs.RecordCount() < 1) {
            throw RunTimeError(QStringLiteral("No current record."));
        }
        for (size_t i = 1; i < def.fields.size(); ++i) {
            const Register_Field& f = def.fields[i];
            if (!f.written)
                continue;
            QString v = values.value(int(i));
            if (!f.blankMeans.isEmpty() && v == QLatin1String(" "))
                v = f.blankMeans;
            rs.Set(f.column, v);
        }
        rs.Update();
        result = 150;
    });
    return result;
}

bool Register_Delete(Cls_DB& db, const Register_Def& def, const QString& code, const QString& scope)
{
    bool ok = false;
    Guarded(int16_t(def.buttonCode), [&] {
        QVariantList binds;
        const QString where = Key_Where(def, binds, code, scope);
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM ") + def.table + where, binds);
        if (rs.RecordCount() < 1)
            throw RunTimeError(QStringLiteral("Either BOF or EOF is True, or the current record has been deleted."));
        db.Execute(QStringLiteral("DELETE FROM ") + def.table + where, binds);
        ok = true;
    });
    return ok;
}

QStringList Car_Codes(Cls_DB& db)
{
    QStringList out;
    Guarded(1036, [&] {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 ORDER BY D_F1"));
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            out << rs.Text(QStringLiteral("D_F1"));
    });
    return out;
}

} // namespace vex
