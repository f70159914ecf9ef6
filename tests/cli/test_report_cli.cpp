// vexcli standards, recalc and report on a received site: the standards
// printed and set (and refused), old trips counted again with a summary, a
// recount killed half way, every report as a PDF, and a report printed
// through CUPS to the cups-pdf queue of the test script.
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "support/CliRun.h"
#include "support/PdfRead.h"
#include "support/ReceivedSite.h"
#include "support/TempApp.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QThread>
#include <csignal>
#include <gtest/gtest.h>

using namespace vex;

namespace {

// A copy of the received site that a test may change.
QString Copy_Site(const QString& site, const QString& to)
{
    QDirIterator it(site, QDir::Files | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString from = it.next();
        const QString target = to + from.mid(site.size());
        QDir().mkpath(QFileInfo(target).path());
        QFile::copy(from, target);
    }
    return to;
}

class ReportCli : public ::testing::Test {
protected:
    void SetUp() override
    {
        QString why;
        site = test::Received_Site(&why);
        ASSERT_FALSE(site.isEmpty()) << why.toStdString();
        copy = Copy_Site(site, tmp.path() + "/site");
    }
    test::CliRun Run(QStringList args)
    {
        args.prepend(copy);
        args.prepend("--app-dir");
        return test::Vexcli(args, test::Korean_Offscreen());
    }
    QString Out(const QString& name) const { return tmp.path() + "/" + name; }
    QString site, copy;
    QTemporaryDir tmp;
};

} // namespace

TEST_F(ReportCli, StandardsArePrintedSetAndRefusedWhereTheyAreNoNumbers)
{
    test::CliRun r = Run({"standards"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(" 1  기준점수 : 100"));
    EXPECT_TRUE(r.out.contains(" 3  기준속도 : 80"));
    EXPECT_TRUE(r.out.contains("13  그래프 최저 점수 : 0"));

    r = Run({"standards", "set", "9=10", "10=7"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("저장 완료되었읍니다 !"));
    r = Run({"standards"});
    EXPECT_TRUE(r.out.contains(" 9  급제동 기준(km/h) : 10"));
    EXPECT_TRUE(r.out.contains("10  급가속 기준(km/h) : 7"));

    // Letters, a field out of range and a number too big change nothing.
    r = Run({"standards", "set", "3=8O", "4=2"});
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("기준속도 : \"8O\""));
    EXPECT_EQ(Run({"standards", "set", "14=1"}).code, 2);
    EXPECT_EQ(Run({"standards", "set", "2=40000"}).code, 2);
    r = Run({"standards"});
    EXPECT_TRUE(r.out.contains(" 3  기준속도 : 80"));
    EXPECT_TRUE(r.out.contains(" 4  과속 공제점수 : 1"));
}

TEST_F(ReportCli, RecalcSummarisesWhatChanged)
{
    // Under the standards the days were received with, nothing changes.
    test::CliRun r = Run({"recalc"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("recalc 1/2") && r.err.contains("recalc 2/2"));
    EXPECT_TRUE(r.out.contains("trips 2, recounted 2, rows changed 0, events kept for want of a day file 0"))
        << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("수행 성공 !"));

    // Five points an overspeed minute: both marks fall.
    ASSERT_EQ(Run({"standards", "set", "4=5"}).code, 0);
    r = Run({"recalc"});
    ASSERT_EQ(r.code, 0);
    EXPECT_TRUE(r.out.contains("rows changed 2")) << r.out.toStdString();
    r = Run({"day", "12AB00", "000123", "260105"});
    EXPECT_TRUE(r.out.contains("0")) << r.out.toStdString();

    // Without standards there is nothing to count against.
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "report-cli-standards");
        db.setDatabaseName(copy + "/db/morix.mdb");
        ASSERT_TRUE(db.open());
        ASSERT_TRUE(QSqlQuery(db).exec("DELETE FROM S_D10"));
        db.close();
    }
    QSqlDatabase::removeDatabase("report-cli-standards");
    r = Run({"recalc"});
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("평가기준이 저장되어 있지 않습니다"));
}

TEST_F(ReportCli, ARecalcKilledHalfWayLeavesEveryRowOldOrNew)
{
    // Sixty trips of the received days under other drivers, each with its
    // day file, and six hundred more with their minute speed alone, their
    // figures marked as old (-1 where a recount writes): enough work that
    // the recount is stopped half way, however fast it counts.
    QString database;
    {
        test::Site_Session session(copy);
        ASSERT_TRUE(session.Ok());
        Cls_DB& db = *G().DB;
        database = db.Target().database;
        Cls_DB::Batch batch(db);
        for (int i = 0; i < 660; ++i) {
            const QString driver = QStringLiteral("9%1").arg(i, 5, 10, QLatin1Char('0'));
            const QString day = i % 2 ? "260106" : "260105";
            const QString from = test::kSiteCar + test::kSiteDriver + day, key = test::kSiteCar + driver + day;
            const bool whole = i < 60;
            for (const char* table : {"D_D1", "D_D3", "D_D7", "D_D8"}) {
                if (!whole && QLatin1String(table) != QLatin1String("D_D1") && QLatin1String(table) != QLatin1String("D_D3"))
                    continue;
                Recordset src = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM %1 WHERE D_F1=?").arg(table), {from});
                Recordset dst = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM %1 WHERE D_F1=?").arg(table), {key});
                dst.AddNew();
                for (const QString& f : src.Field_Names())
                    dst.Set(f, src.Field(f));
                dst.Set("D_F1", key);
                if (QLatin1String(table) == QLatin1String("D_D1")) {
                    dst.Set("D_F3", driver);
                    for (const char* c : {"D_F11", "D_F14", "D_F15", "D_F16", "D_F17"})
                        dst.Set(c, -1);
                }
                dst.Update();
            }
            const QString folder = copy + "/pack/" + test::kSiteCar + "/" + day + "/";
            if (whole)
                ASSERT_TRUE(QFile::copy(folder + day + test::kSiteDriver + ".vex", folder + day + driver + ".vex"));
        }
    }

    QProcess recalc;
    recalc.setProcessEnvironment(test::Korean_Offscreen());
    recalc.setReadChannel(QProcess::StandardError);
    recalc.start(VEXCLI_PATH, {"--app-dir", copy, "recalc"});
    ASSERT_TRUE(recalc.waitForStarted());
    // The first trips reported done: the recount is held while the database
    // is locked for writing, so that its next row waits, and it is killed.
    QByteArray said;
    while (!said.contains("recalc 3/662") && recalc.state() == QProcess::Running)
        if (recalc.waitForReadyRead(100))
            said += recalc.readAllStandardError();
    const pid_t pid = pid_t(recalc.processId());
    ::kill(pid, SIGSTOP);
    QSqlDatabase lock = QSqlDatabase::addDatabase("QSQLITE", "report-cli-lock");
    lock.setDatabaseName(database);
    lock.setConnectOptions("QSQLITE_BUSY_TIMEOUT=0");
    ASSERT_TRUE(lock.open());
    // Held inside a trip's write, it is let go on a moment to commit it.
    for (int tries = 0; !QSqlQuery(lock).exec("BEGIN IMMEDIATE"); ++tries) {
        ASSERT_LT(tries, 1000);
        ::kill(pid, SIGCONT);
        QThread::msleep(1);
        ::kill(pid, SIGSTOP);
    }
    ::kill(pid, SIGCONT);
    // Killed once the recount says its next write waits for the lock.
    said.clear();
    const QDeadlineTimer guard(120000);
    while (!said.contains("vexcli: ") && recalc.state() == QProcess::Running && !guard.hasExpired())
        if (recalc.waitForReadyRead(1000))
            said += recalc.readAllStandardError();
    EXPECT_TRUE(said.contains("vexcli: ")) << said.toStdString();
    recalc.kill();
    recalc.waitForFinished();
    QSqlQuery(lock).exec("ROLLBACK");

    int fresh = 0, old = 0;
    QSqlQuery q(lock);
    ASSERT_TRUE(q.exec("SELECT D_F1, D_F11, D_F14, D_F15, D_F16, D_F17 FROM D_D1"));
    while (q.next()) {
        int minusOne = 0;
        for (int c = 1; c <= 5; ++c)
            minusOne += q.value(c).toInt() == -1 ? 1 : 0;
        EXPECT_TRUE(minusOne == 0 || minusOne == 5) << q.value(0).toString().toStdString();
        (minusOne == 5 ? old : fresh) += 1;
    }
    lock.close();
    lock = QSqlDatabase();
    QSqlDatabase::removeDatabase("report-cli-lock");
    // The two received rows were never old; the three rows reported are
    // new, and the recount was stopped before the last.
    EXPECT_GE(fresh, 3);
    EXPECT_GE(old, 1);
    EXPECT_EQ(fresh + old, 662);
}

TEST_F(ReportCli, EveryReportKindMakesItsPdf)
{
    const std::vector<std::pair<QStringList, QString>> kinds = {
        {{"drive-day", "12AB00", "000123", "260105"}, "운전일보"},
        {{"inspection-day", "12AB00", "000123", "260105"}, "배차 번호"},
        {{"sections", "12AB00", "000123", "260106"}, "운행 정보"},
        {{"operation", "12AB00", "000123", "260105", "--zoom", "6", "--hour", "6"}, "차량 운행 상황 분석"},
        {{"operation-360", "12AB00", "000123", "260105", "08"}, "초당 운행 그래프"},
        {{"quick-brake", "12AB00", "--slot", "2"}, "속도 정밀 분석"},
        {{"avg-day", "--from", "260101", "--to", "260131"}, "운전원 평균 평점 그래프"},
        {{"day-avg", "--car", "12AB00", "--driver", "000123", "--from", "260101", "--to", "260131"},
         "운전원 일별 평점 그래프"},
    };
    for (const auto& [args, title] : kinds) {
        const QString pdf = Out(args[0] + ".pdf");
        test::CliRun r = Run(QStringList{"report"} + args + QStringList{"--out", pdf});
        // The quick-brake buffers come with packs only: the frame alone, said.
        EXPECT_EQ(r.code, args[0] == "quick-brake" ? 1 : 0) << args.join(' ').toStdString() << r.err.toStdString();
        EXPECT_TRUE(r.out.contains("wrote " + pdf));
        EXPECT_TRUE(test::Pdf_Text(pdf).contains(title)) << args[0].toStdString();
    }
    EXPECT_EQ(test::Pdf_Pages(Out("drive-day.pdf")), 2);

    // What the command refuses, and a day that isn't stored.
    EXPECT_EQ(Run({"report", "drive-day", "12AB00", "000123", "260105"}).code, 2);
    EXPECT_EQ(Run({"report", "drive-day", "12AB00", "000123", "260105", "--out", Out("x.png")}).code, 2);
    EXPECT_EQ(Run({"report", "operation", "12AB00", "000123", "260105", "--zoom", "5", "--out", Out("x.pdf")}).code,
              2);
    EXPECT_EQ(Run({"report", "weekly", "--out", Out("x.pdf")}).code, 2);
    test::CliRun r = Run({"report", "drive-day", "12AB00", "000123", "260107", "--out", Out("none.pdf")});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.contains("no stored day 12AB00000123260107"));
}

TEST_F(ReportCli, APrinterOfTheSystemGetsTheSamePages)
{
    QString why;
    const QString printer = test::Cups_Printer(&why);
    if (printer.isEmpty())
        GTEST_SKIP() << why.toStdString();
    EXPECT_EQ(Run({"report", "drive-day", "12AB00", "000123", "260105", "--printer", "NO_SUCH_QUEUE"}).code, 2);
    const qint64 sent = QDateTime::currentMSecsSinceEpoch();
    test::CliRun r = Run({"report", "drive-day", "12AB00", "000123", "260105", "--printer", printer});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("sent to " + printer));
    const QString pdf = test::Wait_For_Cups_Pdf(sent);
    ASSERT_FALSE(pdf.isEmpty()) << "cups-pdf wrote nothing into " << qgetenv("VEX_TEST_CUPS_OUT").constData();
    EXPECT_EQ(test::Pdf_Pages(pdf), 2);
    EXPECT_EQ(test::Pdf_Page_Size(pdf), "A4 portrait");
    // The way through PostScript keeps the Korean text (not every digit).
    const QString text = test::Pdf_Text(pdf);
    EXPECT_TRUE(text.contains("운전일보")) << text.toStdString();
    EXPECT_TRUE(text.contains("자동차 코드"));
    EXPECT_TRUE(text.contains("* 별첨 (운행 정보) 참조"));
    EXPECT_TRUE(test::Pdf_Text(pdf, 2, 2).contains("운행 정보"));
}
