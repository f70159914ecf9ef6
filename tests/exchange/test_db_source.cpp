// Another installation's database read table by table: a Jet file through
// the library, in a child with limits, so that a damaged page that sends
// the library round for ever is refused, by every road that reads Jet, and
// a loose one received is set aside rather than tried at every press.
#include "exchange/Data_Package.h"
#include "exchange/Db_Keeping.h"
#include "exchange/Db_Source.h"
#include "exchange/Package.h"
#include "exchange/Received_Files.h"
#include "exchange/Remote_Reception.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/CliRun.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vex;

namespace {

// A Jet 3 file of four tables, the first with two rows; page 47 (2 KiB
// pages) made all 0xFF is one the library loops on.
QByteArray Jet(bool damaged)
{
    QFile f(QStringLiteral(VEX_TEST_DATA "/jet3.mdb"));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    QByteArray bytes = f.readAll();
    if (damaged)
        bytes.replace(47 * 2048, 2048, QByteArray(2048, '\xff'));
    return bytes;
}

} // namespace

TEST(Db_Source, ADamagedJetFileIsRefusedByEveryRoad)
{
    test::AppSession app;
    app.Write_File("good.mdb", Jet(false));
    QString error;
    auto good = Db_Source::Open(app.Path("good.mdb"), &error);
    ASSERT_TRUE(good) << error.toStdString();
    EXPECT_EQ(good->Tables(), (QStringList{"Table1", "Table2", "Table3", "Table4"}));
    EXPECT_EQ(good->Read("table1").rows.size(), 2u);

    // move and import in programs of their own, as a scheduler runs them:
    // the library's state in a fresh process is where it loops for sure.
    app.Write_File("loop.mdb", Jet(true));
    ASSERT_TRUE(Zip_Make(app.Path("loop.zip"), {{app.Path("loop.mdb"), "exp.mdb"}}));
    for (const QStringList& road : {QStringList{"move", "--source", app.Path("loop.mdb"), "--kind", "1", "--from", "260101"},
                                    QStringList{"import", app.Path("loop.zip")}}) {
        const test::CliRun r = test::Vexcli(QStringList{"--app-dir", app.Dir()} + road);
        EXPECT_EQ(r.code, 1) << road[0].toStdString() << ": " << r.out.toStdString() << r.err.toStdString();
        EXPECT_TRUE(r.out.contains("cannot be read")) << r.out.toStdString();
    }
    // remote: a loose file received, set aside once and not tried again.
    ASSERT_TRUE(QFile::copy(app.Path("loop.mdb"), app.Path("Exp/loop.mdb")));
    app.Write_File("Exp/pkg.zip", Jet(false)); // a zip among them, so the step runs
    ASSERT_TRUE(Received_Add(app.Path("Exp"), "loop.mdb"));
    ASSERT_TRUE(Received_Add(app.Path("Exp"), "pkg.zip"));
    Remote_Outcome out;
    Remote_Load(*G().DB, out);
    EXPECT_EQ(out.kept.size(), 2) << out.kept.join('|').toStdString();
    EXPECT_TRUE(out.kept.join('|').contains("loop.mdb: ")) << out.kept.join('|').toStdString();
    EXPECT_FALSE(QFile::exists(app.Path("Exp/loop.mdb")));
    EXPECT_TRUE(QFile::exists(app.Path("Exp/refused/loop.mdb")));
    Remote_Outcome again;
    Remote_Load(*G().DB, again);
    EXPECT_TRUE(again.kept.isEmpty());
    EXPECT_TRUE(Received_Names(app.Path("Exp")).isEmpty());
}
