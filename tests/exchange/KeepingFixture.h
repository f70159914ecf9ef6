#pragma once
// A test's own copy of the received site (two days of car 12AB00, driver
// 000123, with their day files), a session started on it, and whole tables
// and day files to compare before and after a keeping step.
#include "core/Mod_Main.h"
#include "exchange/Exchange_Tables.h"
#include "store/Cls_DB.h"
#include "support/ReceivedSite.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <memory>

namespace vex::test {

class Keeping : public ::testing::Test {
protected:
    void SetUp() override
    {
        QString why;
        const QString received = Received_Site(&why);
        ASSERT_FALSE(received.isEmpty()) << why.toStdString();
        site = tmp.path() + "/site";
        Copy_Tree(received, site);
        Start();
    }
    void TearDown() override { session.reset(); }
    // A start of the program on the site, as after a login.
    void Start()
    {
        session = std::make_unique<Site_Session>(site);
        ASSERT_TRUE(session->Ok());
    }
    Cls_DB& db() { return *G().DB; }

    // A table as key -> every value, for comparing whole tables.
    std::map<QString, QString> Dump(const QString& table)
    {
        std::map<QString, QString> rows;
        Recordset rs = db().DB_RSet_D_D("SELECT * FROM " + table);
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            QStringList values;
            for (const QString& c : rs.Field_Names())
                values << rs.Field(c).toString();
            rows[rs.Text("D_F1")] = values.join('|');
        }
        return rows;
    }
    std::map<QString, std::map<QString, QString>> Dump_All()
    {
        std::map<QString, std::map<QString, QString>> all;
        for (const QString& t : Package_Tables())
            all[t] = Dump(t);
        return all;
    }
    // Each day file under "pack" by its path, as a digest of its bytes.
    std::map<QString, QByteArray> Day_Files()
    {
        std::map<QString, QByteArray> files;
        for (QDirIterator it(site + "/pack", {"*.vex"}, QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
            QFile f(it.next());
            f.open(QIODevice::ReadOnly);
            files[QDir(site).relativeFilePath(f.fileName())] = QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha1);
        }
        return files;
    }
    int Rows(const QString& sql, const QVariantList& values = {}) { return db().DB_RSet_D_D(sql, values).RecordCount(); }

    QTemporaryDir tmp;
    QString site;
    std::unique_ptr<Site_Session> session;
};

} // namespace vex::test
