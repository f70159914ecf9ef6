// The press of "원격수신" against a site's FTP server on loopback: the
// transfer and the loading run as jobs while the main window stays alive,
// the loading's box comes on the window's thread before anything is loaded,
// and the trips of the package land in the database.
#include "GuiFixture.h"

#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "exchange/Data_Package.h"
#include "support/FtpServer.h"

#include <QDir>
#include <QFile>
#include <QThread>

namespace {

using namespace vex;
using namespace vex::forms;

using RemotePressTest = vex::test::GuiTest;

TEST_F(RemotePressTest, APackageOnTheServerIsLoadedAfterItsBox)
{
    MDIForm_Main* m = Login();
    ASSERT_NE(m, nullptr);
    Cls_Config& cfg = *G().Config;
    cfg.U_Name = "firm";
    cfg.S_IP = "127.0.0.1";
    cfg.S_User = "site";
    cfg.S_Password = "secret";
    cfg.S_CompanyCode = "12345678";

    // Two trips packed and taken out of the database, the package put on
    // the server.
    QTemporaryDir ftpRoot;
    QDir().mkpath(ftpRoot.path() + "/firm_st");
    for (const QString day : {"260105", "260106"})
        G().DB->Execute("INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES (?, '12AB00', '000123', ?, 1234)",
                        {"12AB00000123" + day, day});
    ASSERT_TRUE(Export_Package(*G().DB, {"260101", "260131"}, "pkg").ok);
    G().DB->Execute("DELETE * FROM D_D1");
    ASSERT_TRUE(QFile::rename(app.Path("Exp/pkg.zip"), ftpRoot.path() + "/firm_st/site1.zip"));
    vex::test::FtpServer server(ftpRoot.path(), "site", "secret");
    ASSERT_GT(server.Port(), 0);
    qputenv("VEX_FTP_PORT", QByteArray::number(server.Port()));

    // Each box as it comes: the loading's own, on this thread, with nothing
    // loaded yet.
    QStringList boxes;
    int tripsAtTheLoadingBox = -1;
    const Msg_Hook previous = Set_Msg_Hook([&](const Msg_Record& r) {
        EXPECT_EQ(QThread::currentThread(), m->thread()) << r.text.toStdString();
        if (r.text == LoadResString(1241))
            tripsAtTheLoadingBox = Rows("SELECT * FROM D_D1");
        boxes << r.text;
        return QMessageBox::Ok;
    });
    QTest::mouseClick(m->SSCommand[10], Qt::LeftButton);
    Set_Msg_Hook(previous);
    qunsetenv("VEX_FTP_PORT");

    EXPECT_EQ(boxes.count(LoadResString(1241)), 1) << boxes.join('|').toStdString();
    EXPECT_EQ(tripsAtTheLoadingBox, 0);
    EXPECT_EQ(Rows("SELECT * FROM D_D1"), 2);
    EXPECT_FALSE(QFile::exists(ftpRoot.path() + "/firm_st/site1.zip")) << "deleted after a good download";
}

} // namespace
