// Packages are untrusted: what a zip may not do, and the headers that tell
// a Jet database from a SQLite one. The Jet files are small public samples.
#include "exchange/Db_Source.h"
#include "exchange/Package.h"
#include "support/HandZip.h"
#include "support/TempApp.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

using test::Hand_Zip;

TEST(Package, WhatAPackageMayNotDo)
{
    test::TempApp app;
    const QString out = app.Path("out");
    QDir().mkpath(out);
    // A package of ours round-trips, folders and all.
    app.Write_File("a.mdb", "database");
    app.Write_File("d.vex", QByteArray(1000, '\x05'));
    ASSERT_TRUE(Zip_Make(app.Path("p.zip"), {{app.Path("a.mdb"), "exp.mdb"}, {app.Path("d.vex"), "pack/12AB00/260105/260105000123.vex"}}));
    EXPECT_FALSE(QFile::exists(app.Path("p.zip.part")));
    EXPECT_TRUE(Zip_Holds(app.Path("p.zip"), "exp.mdb"));
    Unzip_Result r = UnZip_Make(app.Path("p.zip"), out);
    ASSERT_TRUE(r.ok) << r.error.toStdString();
    EXPECT_EQ(r.names.size(), 2);
    QFile f(out + "/pack/12AB00/260105/260105000123.vex");
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray(1000, '\x05'));

    // Names that leave the folder, a link, a bomb, a broken file: refused,
    // and nothing of them written.
    for (const QByteArray& evil : {QByteArray("../evil.mdb"), QByteArray("/tmp/evil.mdb"), QByteArray("a/../../evil.mdb"),
                                   QByteArray("C:\\evil.mdb"), QByteArray("..\\evil.mdb")}) {
        Hand_Zip(app.Path("evil.zip"), {{"exp.mdb", "x"}, {evil, "y"}});
        r = UnZip_Make(app.Path("evil.zip"), out + "/e");
        EXPECT_FALSE(r.ok) << evil.constData();
        EXPECT_FALSE(QDir(out + "/e").exists()) << evil.constData();
    }
    EXPECT_FALSE(QFile::exists(app.Path("evil.mdb")));
    Hand_Zip(app.Path("link.zip"), {{"exp.mdb", "/etc/passwd"}}, true);
    r = UnZip_Make(app.Path("link.zip"), out + "/l");
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.error.contains("link"));
    Hand_Zip(app.Path("bomb.zip"), {{"exp.mdb", QByteArray(100 << 20, '\0')}});
    EXPECT_LT(QFile(app.Path("bomb.zip")).size(), 1 << 20);
    r = UnZip_Make(app.Path("bomb.zip"), out + "/b");
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.error.contains("more than"));
    EXPECT_FALSE(QDir(out + "/b").exists());
    QByteArray broken = QFile(app.Path("p.zip")).open(QIODevice::ReadOnly) ? QByteArray() : QByteArray();
    {
        QFile p(app.Path("p.zip"));
        ASSERT_TRUE(p.open(QIODevice::ReadOnly));
        broken = p.readAll();
    }
    broken[broken.size() / 2] = char(~broken[broken.size() / 2]);
    app.Write_File("broken.zip", broken.left(broken.size() - 30));
    EXPECT_FALSE(UnZip_Make(app.Path("broken.zip"), out + "/x").ok);
    EXPECT_FALSE(Zip_Holds(app.Path("broken.zip"), "exp.mdb"));

    EXPECT_TRUE(Safe_Entry_Name("exp.mdb"));
    EXPECT_TRUE(Safe_Entry_Name("pack/12AB00/260105/260105000123.vex"));
    EXPECT_FALSE(Safe_Entry_Name("pack/../../x"));
    EXPECT_FALSE(Safe_Entry_Name(""));
}

TEST(Package, TheHeaderTellsJetFromSqlite)
{
    const QString dir = QStringLiteral(VEX_TEST_DATA) + "/mdb";
    int jet = 0;
    for (const QString& name : QDir(dir).entryList({"*.mdb"}, QDir::Files)) {
        const QString path = dir + "/" + name;
        EXPECT_EQ(Db_File_Kind_Of(path), Db_File_Kind::Jet) << name.toStdString();
        QString error;
        auto source = Db_Source::Open(path, &error);
        ASSERT_TRUE(source) << name.toStdString() << " " << error.toStdString();
        ++jet;
        for (const QString& t : source->Tables()) {
            const Source_Table rows = source->Read(t);
            EXPECT_FALSE(rows.columns.isEmpty()) << name.toStdString() << " " << t.toStdString();
        }
        EXPECT_THROW(source->Read("NO_SUCH_TABLE"), std::exception);
    }
    EXPECT_EQ(jet, 5);
    EXPECT_EQ(Db_Header_Kind(QByteArray("SQLite format 3\0....", 20)), Db_File_Kind::Sqlite);
    EXPECT_EQ(Db_Header_Kind(QByteArray("\0\1\0\0Standard Jet DB\0", 20)), Db_File_Kind::Jet);
    EXPECT_EQ(Db_Header_Kind("PK\3\4"), Db_File_Kind::Unknown);
    test::TempApp app;
    app.Write_File("named.mdb", "this is text, whatever its name says");
    EXPECT_EQ(Db_File_Kind_Of(app.Path("named.mdb")), Db_File_Kind::Unknown);
    EXPECT_FALSE(Db_Source::Open(app.Path("named.mdb")));
    EXPECT_EQ(Db_File_Kind_Of(app.Path("none.mdb")), Db_File_Kind::Missing);
}
