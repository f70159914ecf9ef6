// Remote reception against a real FTP server on loopback: a package that
// arrives and is loaded, the second press with nothing new, a refused
// login, an empty folder, no account at all, names that may not be files,
// a server that stops mid-download, and bad files that may hold back
// neither the good ones nor the next run.
#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Data_Package.h"
#include "exchange/Received_Files.h"
#include "exchange/Remote_Reception.h"
#include "store/Cls_DB.h"
#include "support/AppSession.h"
#include "support/FtpServer.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <thread>
#include <gtest/gtest.h>
#include <future>

using namespace vex;

namespace {

class Remote : public ::testing::Test {
protected:
    test::AppSession app;
    QTemporaryDir ftpRoot;
    QString folder;
    void SetUp() override
    {
        Cls_Config& cfg = *G().Config;
        cfg.U_Name = "firm";
        cfg.S_IP = "127.0.0.1";
        cfg.S_User = "site";
        cfg.S_Password = "secret";
        cfg.S_CompanyCode = "12345678";
        cfg.S_Port = "21"; // has no effect
        folder = ftpRoot.path() + "/firm_st";
        QDir().mkpath(folder);
    }
    void TearDown() override { qunsetenv("VEX_FTP_PORT"); }
    Cls_DB& db() { return *G().DB; }
    int Trips() { return db().DB_RSet_D_D("SELECT * FROM D_D1").RecordCount(); }
    // A package of two trips, put on the server; the trips leave the database.
    void Package_On_Server(const QString& name, const QStringList& days = {"260105", "260106"})
    {
        for (const QString& day : days)
            db().Execute("INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES (?, '12AB00', '000123', ?, 1234)",
                         {QString("12AB00000123") + day, day});
        ASSERT_TRUE(Export_Package(db(), {"260101", "260131"}, "pkg").ok);
        db().Execute("DELETE * FROM D_D1");
        ASSERT_TRUE(QFile::rename(app.Path("Exp/pkg.zip"), folder + "/" + name));
    }
    Remote_Outcome Press(const test::FtpServer& server)
    {
        qputenv("VEX_FTP_PORT", QByteArray::number(server.Port()));
        return Remote_Reception(db(), Ftp_Settings_Of(*G().Config));
    }
};

} // namespace

TEST_F(Remote, APackageArrivesAndIsLoadedThenNothingNew)
{
    Package_On_Server("site1.zip");
    test::FtpServer server(ftpRoot.path(), "site", "secret");
    ASSERT_GT(server.Port(), 0);
    EXPECT_EQ(Ftp_Settings_Of(*G().Config).port, 7666) << "S_Port has no say";

    Remote_Outcome out = Press(server);
    EXPECT_EQ(out.downloaded, QStringList{"site1.zip"});
    EXPECT_TRUE(out.messages.contains(LoadResString(1241))) << out.messages.join('|').toStdString();
    EXPECT_EQ(out.loaded, QStringList{"site1.zip"}) << out.kept.join('|').toStdString();
    EXPECT_EQ(Trips(), 2);
    EXPECT_FALSE(QFile::exists(folder + "/site1.zip")) << "deleted after a good download";
    EXPECT_TRUE(QDir(app.Path("Exp")).entryList({"*.zip"}, QDir::Files).isEmpty());

    // Nothing new: the first pass finds nothing, no loading.
    out = Press(server);
    EXPECT_EQ(out.messages, QStringList{"데이터가 없읍니다"});
    EXPECT_FALSE(out.loadingRan);
}

TEST_F(Remote, RefusalsAndAccountsWithoutNetwork)
{
    test::FtpServer server(ftpRoot.path(), "site", "other-password");
    ASSERT_GT(server.Port(), 0);
    Remote_Outcome out = Press(server);
    ASSERT_EQ(out.messages.size(), 1);
    EXPECT_TRUE(out.messages[0].startsWith("연결실패")) << out.messages[0].toStdString();
    EXPECT_FALSE(out.loadingRan);

    // An empty S_IP ends it without a word.
    G().Config->S_IP = "";
    out = Press(server);
    EXPECT_TRUE(out.messages.isEmpty());
    EXPECT_FALSE(out.loadingRan);

    // No account: a message, no network, and what lies in "\exp" is loaded.
    G().Config->S_CompanyCode = "00000000";
    G().Config->S_IP = "127.0.0.1";
    // What waits is what an earlier press fetched and didn't load; the
    // site's own backup beside it is neither loaded nor deleted.
    Package_On_Server("waiting.zip");
    ASSERT_TRUE(QFile::rename(folder + "/waiting.zip", app.Path("Exp/waiting.zip")));
    ASSERT_TRUE(Received_Add(app.Path("Exp"), "waiting.zip"));
    Package_On_Server("260101260131.zip", {"260107"});
    ASSERT_TRUE(QFile::rename(folder + "/260101260131.zip", app.Path("Exp/260101260131.zip")));
    out = Press(server);
    EXPECT_EQ(out.messages.value(0), "연결실패");
    EXPECT_EQ(out.loaded, QStringList{"waiting.zip"});
    EXPECT_EQ(Trips(), 2);
    EXPECT_TRUE(QFile::exists(app.Path("Exp/260101260131.zip")));

    // A ".Zip" is no zip to the loading step: nothing to load.
    app.Write_File("Exp/odd.Zip", "x");
    Received_Add(app.Path("Exp"), "odd.Zip");
    out = Press(server);
    EXPECT_EQ(out.messages.value(1), "데이터가 없읍니다");
    EXPECT_TRUE(QFile::exists(app.Path("Exp/odd.Zip")));

    // Message 1241 is told while the package still waits, before loading.
    QFile::remove(app.Path("Exp/odd.Zip"));
    db().Execute("DELETE * FROM D_D1");
    Package_On_Server("again.zip");
    ASSERT_TRUE(QFile::rename(folder + "/again.zip", app.Path("Exp/again.zip")));
    Received_Add(app.Path("Exp"), "again.zip");
    Remote_Outcome load;
    QStringList said;
    Remote_Load(*G().DB, load, {}, [&](const QString& m) {
        said << m + (QFile::exists(app.Path("Exp/again.zip")) ? " (waiting)" : " (loaded)");
    });
    EXPECT_EQ(said, QStringList{LoadResString(1241) + " (waiting)"});
    EXPECT_EQ(load.loaded, QStringList{"again.zip"});
}

TEST_F(Remote, UntrustedNamesAndACutDownload)
{
    // Names that may not become files of "\exp" stay on the server.
    for (const char* name : {"a..b.zip", ".hidden.part"})
        QFile(folder + "/" + name).open(QIODevice::WriteOnly);
    EXPECT_FALSE(Plain_Remote_Name(QString(260, 'a')));
    EXPECT_FALSE(Plain_Remote_Name("../x.zip"));
    EXPECT_FALSE(Plain_Remote_Name("a\\b.zip"));
    EXPECT_FALSE(Plain_Remote_Name(":res.zip"));
    EXPECT_TRUE(Plain_Remote_Name("12AB00260105093000.vex"));
    EXPECT_EQ(Trip_File_Target("/x/12AB00260105093000.vex"), "\\pack\\12AB00\\260105\\260105093000.vex");
    EXPECT_TRUE(Trip_File_Target("/x/../../etc/passwd.vex").isEmpty());

    // A big file on a slow server, stopped half way.
    QByteArray big(2 << 20, '\0');
    for (char& c : big)
        c = char(QRandomGenerator::global()->bounded(256));
    {
        QFile f(folder + "/big.zip");
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(big);
    }
    test::FtpServer server(ftpRoot.path(), "site", "secret", true);
    ASSERT_GT(server.Port(), 0);
    qputenv("VEX_FTP_PORT", QByteArray::number(server.Port()));
    const Ftp_Settings settings = Ftp_Settings_Of(*G().Config);
    Ftp_Pass pass;
    // The server stops once the download of the big file has begun; at the
    // slow server's pace it takes far longer than any test.
    std::promise<void> begun;
    std::thread transfer([&] {
        pass = Ftp_Run_Pass(settings, app.Path("Exp"), [&](const QString& name) {
            if (name == QLatin1String("big.zip"))
                begun.set_value();
        });
    });
    ASSERT_EQ(begun.get_future().wait_for(std::chrono::seconds(60)), std::future_status::ready);
    server.Stop();
    transfer.join();
    EXPECT_EQ(pass.end, Ftp_Pass_End::Download_Failed) << pass.error.toStdString();
    EXPECT_TRUE(pass.passedOver.join('|').contains("a..b.zip"));
    EXPECT_FALSE(QFile::exists(app.Path("Exp/big.zip")));
    EXPECT_TRUE(QDir(app.Path("Exp")).entryList({"*.part"}, QDir::Files | QDir::Hidden).isEmpty());
    EXPECT_TRUE(QFile::exists(folder + "/big.zip")) << "the server keeps what didn't arrive";
    EXPECT_TRUE(QFile::exists(folder + "/a..b.zip"));
}

TEST_F(Remote, BadFilesHoldBackNeitherTheGoodOnesNorTheNextRun)
{
    Package_On_Server("good1.zip", {"260105"});
    Package_On_Server("good2.zip", {"260106"});
    // Damaged: a package cut in half, and bytes that are no zip at all.
    Package_On_Server("truncated.zip", {"260107"});
    {
        QFile f(folder + "/truncated.zip");
        ASSERT_TRUE(f.resize(f.size() / 2));
    }
    app.Write_File("garbage", QByteArray(3000, 'G'));
    ASSERT_TRUE(QFile::rename(app.Path("garbage"), folder + "/garbage.zip"));
    // A Jet file with a page the library loops on (2 KiB pages, page 47).
    {
        QFile jet(VEX_TEST_DATA "/jet3.mdb");
        ASSERT_TRUE(jet.open(QIODevice::ReadOnly));
        app.Write_File("loop", jet.readAll().replace(47 * 2048, 2048, QByteArray(2048, '\xff')));
        ASSERT_TRUE(QFile::rename(app.Path("loop"), folder + "/loop.mdb"));
    }
    // A file the server sends at 2 bytes a second (by its name).
    ASSERT_TRUE(QFile::copy(folder + "/good1.zip", folder + "/trickle.zip"));
    // Names that can't be fetched or stored: control characters, too long
    // for the hidden download name, and Korean in CP949.
    const QByteArray dir = QFile::encodeName(folder) + '/';
    for (const QByteArray& name : {QByteArray("esc\x1b[31mred.zip"), QByteArray(250, 'a') + ".zip",
                                   QByteArray("\xc7\xd1\xb1\xdb.zip")}) {
        FILE* f = fopen((dir + name).constData(), "w");
        ASSERT_TRUE(f) << name.toStdString();
        fclose(f);
    }
    // The site's own backup in "\exp", and a server file of the same name.
    app.Write_File("Exp/260101260131.zip", "backup");
    const QStringList exp = QDir(app.Path("Exp")).entryList(QDir::Files | QDir::Hidden);
    ASSERT_TRUE(QFile::copy(folder + "/good1.zip", folder + "/260101260131.zip"));
    // A killed run's download.
    app.Write_File("Exp/.big.zip.part", "half");

    test::FtpServer server(ftpRoot.path(), "site", "secret");
    ASSERT_GT(server.Port(), 0);
    qputenv("VEX_FTP_PORT", QByteArray::number(server.Port()));
    Ftp_Settings settings = Ftp_Settings_Of(*G().Config);
    EXPECT_EQ(settings.lowSpeedBytes, 1024);
    EXPECT_EQ(settings.stallSeconds, 60);
    settings.stallSeconds = 2; // the floor's window, short for the test

    for (int run = 1; run <= 2; ++run) {
        const Remote_Outcome out = Remote_Reception(db(), settings);
        const QString said = (out.messages + out.passedOver + out.refused + out.kept).join('|');
        SCOPED_TRACE(said.toStdString());
        EXPECT_EQ(Trips(), 2);
        if (run == 1) {
            EXPECT_EQ(out.loaded, (QStringList{"good1.zip", "good2.zip"}));
            EXPECT_EQ(out.kept.size(), 1);
            EXPECT_TRUE(said.contains("loop.mdb: ")) << "set aside";
        } else {
            EXPECT_TRUE(out.loaded.isEmpty());
            EXPECT_TRUE(out.kept.isEmpty()) << "not tried again";
        }
        EXPECT_TRUE(out.loadingRan);
        EXPECT_EQ(out.refused.size(), 3);
        for (const char* bad : {"truncated.zip: arrived damaged", "garbage.zip: arrived damaged", "trickle.zip: "})
            EXPECT_TRUE(said.contains(bad)) << bad;
        EXPECT_EQ(out.passedOver.size(), 4);
        for (const char* why : {"esc\\x1b[31mred.zip: control characters", "the name is too long",
                                "the name is not in UTF-8", "260101260131.zip: a file of this site has that name"})
            EXPECT_TRUE(said.contains(why)) << why;
        EXPECT_FALSE(said.contains(QChar(0x1b))) << "no raw control byte is printed";
        for (const char* left : {"truncated.zip", "garbage.zip", "trickle.zip", "260101260131.zip"})
            EXPECT_TRUE(QFile::exists(folder + "/" + left)) << left;
        EXPECT_EQ(QDir(app.Path("Exp")).entryList(QDir::Files | QDir::Hidden), exp)
            << "no download, part or list is left; the backup stays";
        QFile backup(app.Path("Exp/260101260131.zip"));
        EXPECT_TRUE(backup.open(QIODevice::ReadOnly) && backup.readAll() == "backup");
    }
}
