// vexcli as a newcomer meets it: a fresh folder, a broken INI, a missing database.
#include "support/CliRun.h"
#include "support/TempApp.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

using vex::test::CliRun;
using vex::test::Vexcli;

TEST(CliStart, AFreshFolderShowsItsTablesAndSettingsRow)
{
    vex::test::TempApp app;
    const QString dir = app.Path("site");
    const CliRun init = Vexcli({"--app-dir", dir, "init"});
    ASSERT_EQ(init.code, 0) << init.err.toStdString();
    EXPECT_TRUE(init.out.contains("SQLite " + dir + "/db/morix.mdb"));

    // VEX_HOME stands in for --app-dir.
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("VEX_HOME", dir);
    const CliRun show = Vexcli({"show"}, env);
    ASSERT_EQ(show.code, 0) << show.err.toStdString();
    EXPECT_TRUE(show.out.contains("application folder: " + dir));
    EXPECT_TRUE(show.out.contains(QRegularExpression("S_D14\\s+23 columns\\s+1 rows")));
    EXPECT_TRUE(show.out.contains(QRegularExpression("D_D1\\s+27 columns\\s+0 rows")));
    EXPECT_TRUE(show.out.contains(QRegularExpression("D_F5\\s+U_UserID\\s+qemba")));
    EXPECT_TRUE(show.out.contains("안전벨트"));
}

TEST(CliStart, BadSettingsGiveAReasonAndNoCrash)
{
    vex::test::TempApp app;
    const QString dir = app.Path("site");
    ASSERT_EQ(Vexcli({"--app-dir", dir, "init"}).code, 0);

    app.Write_File("site/MORIX.INI", "[MAIN]\nOTHER=1\n");
    CliRun r = Vexcli({"--app-dir", dir, "show"});
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("MAIN SERVER")) << r.err.toStdString();

    app.Write_File("site/MORIX.INI", "[MAIN]\nMAIN SERVER=\\db\\gone.mdb\n");
    r = Vexcli({"--app-dir", dir, "show"});
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("cannot open the database")) << r.err.toStdString();
    EXPECT_FALSE(QFile::exists(dir + "/db/gone.mdb"));

    app.Write_File("site/db/morix.mdb", "not a database at all");
    app.Write_File("site/MORIX.INI", "[MAIN]\nMAIN SERVER=\\db\\morix.mdb\n");
    r = Vexcli({"--app-dir", dir, "show"});
    EXPECT_EQ(r.code, 2);
    QFile log(dir + "/vex-error.log");
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("gone.mdb")); // every failure left its line

    EXPECT_EQ(Vexcli({"--app-dir", dir, "no-such-command"}).code, 2);
    EXPECT_EQ(Vexcli({"--help"}).code, 0);
}

TEST(CliStart, AServerDatabaseStartsWithoutTheServersNotices)
{
    if (vex::test::Pg_Uri().isEmpty()) {
        if (qEnvironmentVariableIsSet("VEX_REQUIRE_PG"))
            FAIL() << "VEX_REQUIRE_PG is set but VEX_TEST_PG_URI is not";
        GTEST_SKIP() << "no PostgreSQL server (set VEX_TEST_PG_URI)";
    }
    vex::test::TempApp app;
    const QString dir = app.Path("site");
    ASSERT_EQ(Vexcli({"--app-dir", dir, "init"}).code, 0);
    // A database of its own on the test server, so that no other test shares it.
    const vex::DbTarget t = vex::test::Fresh_Target(vex::test::Backend::Postgres, app);
    const QString own = QStringLiteral("postgresql://%1@%2:%3/%4").arg(t.user, t.host).arg(t.port).arg(t.database);
    app.Write_File("site/MORIX.INI", ("[MAIN]\nMAIN SERVER=" + own + "\n").toUtf8());
    // The second start meets every table already there.
    for (int run = 0; run < 2; ++run) {
        const CliRun r = Vexcli({"--app-dir", dir, "init"});
        ASSERT_EQ(r.code, 0) << r.err.toStdString();
        EXPECT_FALSE(r.err.contains("NOTICE")) << r.err.toStdString();
        EXPECT_FALSE(r.out.contains("NOTICE"));
    }
}
