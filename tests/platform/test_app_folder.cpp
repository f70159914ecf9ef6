#include "app/App_Setup.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "platform/IniFile.h"
#include "platform/Resources.h"
#include "support/TempApp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace vex;

TEST(AppFolder, ANewFolderGetsItsLayoutIniAndDatabases)
{
    test::TempApp app;
    QString reason;
    ASSERT_TRUE(Init_App_Folder(app.Dir(), &reason)) << reason.toStdString();
    for (const QString& sub : App_Folders())
        EXPECT_TRUE(QFileInfo(app.Path(sub)).isDir()) << sub.toStdString();

    // "Exp" and "exp" reach one folder.
    app.Write_File("exp/exp.mdb", "x");
    EXPECT_TRUE(QFileInfo::exists(app.Path("Exp/exp.mdb")));

    EXPECT_EQ(Read_INI("MAIN", "MAIN SERVER", app.Path("MORIX.INI")), "\\db\\morix.mdb");
    EXPECT_GT(QFileInfo(app.Path("db_temp/morix.mdb")).size(), 0);
    EXPECT_GT(QFileInfo(app.Path("db/morix.mdb")).size(), 0);
    EXPECT_FALSE(QFileInfo::exists(app.Path("db_temp/morix.mdb.part")));
    // From the build tree the delivered data is the copy built into the
    // program; the help pages and templates arrive with the folder.
    EXPECT_EQ(Resource_Origin(), "built into the program");
    EXPECT_TRUE(QFileInfo::exists(app.Path("Help/VEX.html")));
    EXPECT_TRUE(QFileInfo::exists(app.Path("Helpchinese/VEXchinese.html")));
    EXPECT_TRUE(QFileInfo::exists(app.Path("Excel/carday.xltx")));

    // A second start keeps what the site changed.
    app.Write_File("MORIX.INI", "[MAIN]\nMAIN SERVER=DSN=site\n");
    app.Write_File("db/morix.mdb", "site data");
    ASSERT_TRUE(Init_App_Folder(app.Dir()));
    EXPECT_EQ(Read_INI("MAIN", "MAIN SERVER", app.Path("MORIX.INI")), "DSN=site");
    QFile live(app.Path("db/morix.mdb"));
    ASSERT_TRUE(live.open(QIODevice::ReadOnly));
    EXPECT_EQ(live.readAll(), "site data");
}

TEST(AppFolder, AFolderThatCannotBeWrittenIsRefusedWithAReason)
{
    // A file where a folder should be stops even root.
    test::TempApp app;
    app.Write_File("blocked", "a file");
    QString reason;
    EXPECT_FALSE(Init_App_Folder(app.Path("blocked/vex"), &reason));
    EXPECT_TRUE(reason.contains("blocked/vex")) << reason.toStdString();

    QDir().mkpath(app.Path("half"));
    app.Write_File("half/db", "a file where db should be");
    EXPECT_FALSE(Init_App_Folder(app.Path("half"), &reason));
    EXPECT_TRUE(reason.contains("db")) << reason.toStdString();
}

TEST(AppFolder, PathsOfTheSystemsFormLandUnderTheFolder)
{
    EXPECT_EQ(App_Path("/a", "\\db\\morix.mdb"), "/a/db/morix.mdb");
    EXPECT_EQ(App_Path("/a", "Dat\\Read.Vex"), "/a/Dat/Read.Vex");
    EXPECT_EQ(App_Path("/a", "\\"), "/a");
    const FileSystem fs("/a");
    EXPECT_EQ(fs.Path("/tmp/x.vex"), "/tmp/x.vex"); // an absolute path stays
    EXPECT_EQ(fs.Path("\\mpack\\0001\\x.Vex"), "/a/mpack/0001/x.Vex");
    EXPECT_EQ(Resolve_App_Dir("rel/dir"), QDir::current().absoluteFilePath("rel/dir"));
}

TEST(IniFile, ReadsLikeTheProfileReader)
{
    test::TempApp app;
    app.Write_File("a.ini",
                   "; comment\r\n"
                   "[other]\r\nMAIN SERVER=wrong\r\n"
                   "  [ main ]  \r\n"
                   "garbage line without equals\r\n"
                   "  main server  =  \"quoted value\"  \r\n"
                   "EMPTY=\r\n"
                   "LONG=" + QByteArray(300, 'x') + "\r\n");
    const QString f = app.Path("a.ini");
    EXPECT_EQ(Read_INI("MAIN", "MAIN SERVER", f), "quoted value");
    EXPECT_EQ(Read_INI("MAIN", "EMPTY", f), "");
    EXPECT_EQ(Read_INI("MAIN", "LONG", f).size(), 254);
    EXPECT_EQ(Read_INI("MAIN", "NONE", f), "");
    EXPECT_EQ(Read_INI("NONE", "MAIN SERVER", f), "");
    EXPECT_EQ(Read_INI("MAIN", "MAIN SERVER", app.Path("missing.ini")), "");
}

TEST(FileSystem, CopyOverATargetKeepsTheOldFileWhenTheSourceIsMissing)
{
    test::TempApp app;
    const FileSystem fs(app.Dir());
    app.Write_File("db/a", "new");
    app.Write_File("db/b", "old");
    EXPECT_FALSE(fs.CopyFile("\\db\\missing", "\\db\\b"));
    EXPECT_EQ(fs.FileSize("\\db\\b"), 3);
    EXPECT_FALSE(fs.CopyFile("\\db\\a", "\\db\\b", false));
    EXPECT_TRUE(fs.CopyFile("\\db\\a", "\\db\\b"));
    QFile b(app.Path("db/b"));
    ASSERT_TRUE(b.open(QIODevice::ReadOnly));
    EXPECT_EQ(b.readAll(), "new");
    EXPECT_TRUE(fs.DeleteFile("\\db\\a"));
    EXPECT_EQ(fs.FileSize("\\db\\a"), -1);
}
