#include "forms/logic/Reception_Logic.h"

#include "acquisition/Last_Reception.h"

#include "acquisition/AnalyzerLink.h"
#include "acquisition/Cls_IO.h"
#include "acquisition/Inbox.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "acquisition/UsbRecorder.h"
#include "forms/logic/Usb_Drives.h"
#include "platform/SerialPort.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QPushButton>

namespace vex::forms {

QString Dashed_Day(const QString& yymmdd)
{
    return yymmdd.left(2) + QLatin1Char('-') + yymmdd.mid(2, 2) + QLatin1Char('-') + yymmdd.mid(4, 2);
}

QDateTime Stamp_Date_Time(const QString& stamp)
{
    if (stamp.size() < 10 || !All_Digits(stamp.left(10)))
        return {};
    const QDate d(2000 + stamp.left(2).toInt(), stamp.mid(2, 2).toInt(), stamp.mid(4, 2).toInt());
    const QTime t(stamp.mid(6, 2).toInt(), stamp.mid(8, 2).toInt());
    if (!d.isValid() || !t.isValid())
        return {};
    return QDateTime(d, t);
}

QString Text_Press_Connect()
{
    return QStringLiteral("분석기 연결버튼을 누르세요");
}

QString Text_No_Pack()
{
    return QStringLiteral("팩이 없거나 분석기 작동에 문제가 없습니다 ");
}

QString Text_Received()
{
    return QStringLiteral("수신완료");
}

Pack_Info Pack_Info_Step()
{
    Pack_Info info;
    Globals& g = G();
    if (g.Link_Type != 1 || !g.IO || !g.DB) {
        info.message = Text_Press_Connect();
        return info;
    }
    Cls_IO& io = *g.IO;
    AnalyzerLink& link = *g.Link;
    io.Link = &link;
    io.Range_Selected = false;
    link.Set_Pack_Car_Code(QStringLiteral("0000"));
    if (!link.SIO_PackCheck()) {
        info.message = Text_No_Pack();
        return info;
    }
    info.carCode = link.Pack_Car_Code();
    info.lastDay = Last_Reception_Day(*g.DB, QStringLiteral("00") + info.carCode);
    io.System_Page.dbWriteDate = info.lastDay;
    if (io.Pack_SysReads()) {
        info.from = Stamp_Date_Time(io.System_Page.packInsert);
        info.to = Stamp_Date_Time(io.System_Page.packLastWrite);
        info.haveDates = info.from.isValid() && info.to.isValid();
    }
    info.ok = true;
    return info;
}

Pack_Read Pack_Read_Step(bool useRange, const QDate& from, const QDate& to, const Reception_Progress& progress)
{
    Pack_Read read;
    Pack_Receive& r = read.receive;
    Globals& g = G();
    if (g.Link_Type != 1 || !g.IO || !g.DB) {
        r.message = Text_Press_Connect();
        return read;
    }
    Cls_IO& io = *g.IO;
    AnalyzerLink& link = *g.Link;
    io.Link = &link;
    if (!link.SIO_PackCheck()) {
        r.message = Text_No_Pack();
        return read;
    }
    r.ok = true;
    r.message = Text_Received();
    r.outcome.failure = Reception_Precheck(g.DB.get());
    if (!r.outcome.failure.isEmpty())
        return read;
    read.daysRead = Read_Pack_Days(r.outcome, useRange, from, to, progress);
    read.inboxDue = true;
    return read;
}

namespace {

QDate Day_Of(const QString& yymmdd)
{
    if (yymmdd.size() < 6 || !All_Digits(yymmdd.left(6)))
        return {};
    return QDate(2000 + yymmdd.left(2).toInt(), yymmdd.mid(2, 2).toInt(), yymmdd.mid(4, 2).toInt());
}

// The days the medium holds: the master's, else those of the log.
std::pair<QDate, QDate> Days_Held(const QString& source, const QString& root, const Usb_Master& master)
{
    QDate from = Day_Of(master.start), to = Day_Of(master.end);
    if (!from.isValid() || !to.isValid() || from == to) {
        const Usb_Days_Held held = Usb_Log_Days(Spdr_Path(root), source, QDate::currentDate().year() % 100);
        from = Day_Of(held.oldest);
        to = Day_Of(held.newest);
    }
    return {from, to};
}

} // namespace

Usb_Info Usb_Info_Step(const QString& source, const QString& folder)
{
    Usb_Info info;
    info.root = Has_Master(folder) ? folder : Find_Usb_Medium(Usb_Roots());
    if (info.root.isEmpty()) {
        info.message = Text_No_Usb();
        return info;
    }
    if (source != QLatin1String("260")) {
        const QString refusal = Usb_Model_Refusal(source, Spdr_Path(info.root));
        if (!refusal.isEmpty()) {
            info.message = refusal;
            return info;
        }
    }
    const auto master = Read_Master(Master_Path(info.root));
    if (!master) {
        info.message = Text_No_Records();
        return info;
    }
    info.carCode = master->car;
    info.ok = true;
    if (source == QLatin1String("260"))
        return info;
    if (G().DB)
        info.lastDay = Last_Reception_Day(*G().DB, info.carCode);
    std::tie(info.from, info.to) = Days_Held(source, info.root, *master);
    info.haveDates = info.from.isValid() && info.to.isValid();
    return info;
}

Pack_Receive Usb_Receive_Step(Cls_DB& db, const QString& source, const QString& root, bool useRange, const QDate& from,
                              const QDate& to, const Reception_Progress& progress)
{
    Pack_Receive r;
    if (source == QLatin1String("260"))
        return r;
    const auto master = Read_Master(Master_Path(root));
    if (!master) {
        r.message = Text_No_Records();
        return r;
    }
    QDate a = from, b = to;
    if (!useRange)
        std::tie(a, b) = Days_Held(source, root, *master);
    const Filing_Note who = Usb_Reception_Note(*master, a.toString(QStringLiteral("yyMMdd")),
                                               b.toString(QStringLiteral("yyMMdd")));
    r.outcome = Receive_Usb_Log(db, source, Spdr_Path(root), who, progress);
    r.ok = true;
    r.message = Text_Received();
    return r;
}

Pack_Receive Reception_Job(Ledger_Road road, const QString& source, const Reception_Work& work,
                           const Reception_Progress& progress,
                           const std::function<void(const QString&)>& notice, AnalyzerPort* port, QPushButton* cancel)
{
    if (!G().DB) {
        Pack_Receive r;
        r.message = Reception_Precheck(nullptr);
        return r;
    }
    Job_Runner runner(G().DB->Target());
    // A count is progress; a text alone is a wait notice.
    QObject::connect(&runner, &Job_Runner::Progress, [&](const QString& text, int done, int all) {
        if (all > 0 && progress)
            progress(done, all, text);
        else if (all == 0 && notice)
            notice(text);
    });
    if (cancel) {
        QObject::connect(cancel, &QPushButton::clicked, &runner, [&] {
            runner.Cancel();
            cancel->setEnabled(false);
        });
        cancel->setEnabled(true);
        cancel->show();
    }
    runner.Start([work, road, source](Job& job) -> std::any {
        job.Db().Wait_Notice = [&job](const QString& text) { job.Progress(text); };
        Pack_Receive r =
            work(job, [&job](int done, int all, const QString& what) { job.Step(what, done, std::max(all, 1)); });
        if (r.ok)
            Guarded(kErrLedger, [&] {
                r.ledger = Ledger_Line(Record_Reception(job.Db(), road, source, r.outcome.Summary(),
                                                        Ledger_Days(r.outcome)));
            });
        return r;
    }, port ? port->Device() : nullptr);
    const Job_Result& done = runner.Wait_Events();
    if (cancel)
        cancel->hide();
    Pack_Receive r;
    if (done.Ok())
        r = done.Value<Pack_Receive>();
    else
        r.message = done.error;
    r.cancelled = done.cancelled;
    return r;
}

} // namespace vex::forms
