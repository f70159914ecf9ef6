// vexcli receive pack|usb|inbox: the reception road without a window.
#include "cli/Commands.h"

#include <QDir>
#include <QFileInfo>
#include <memory>

#include "acquisition/AnalyzerLink.h"
#include "acquisition/Cls_IO.h"
#include "acquisition/Inbox.h"
#include "acquisition/Last_Reception.h"
#include "acquisition/Reception.h"
#include "acquisition/UsbRecorder.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "exchange/Reception_Ledger.h"
#include "platform/SerialPort.h"
#include "platform/UsbMedia.h"
#include "store/Cls_DB.h"

namespace vex::cli {

namespace {

// A stored pack day, one line, with the figures of its summary row.
QString Day_Line(const Pack_Day& day)
{
    return QStringLiteral("stored %1 car %2 driver %3  %4-%5  %6 km  accel %7  brakes %8  overspeed %9  long %10")
        .arg(day.startDay, day.car, day.driver, Time4_To_Text(day.startTime), Time4_To_Text(day.endTime))
        .arg(day.distance / 10.0, 0, 'f', 1)
        .arg(day.accelerations)
        .arg(day.brakes)
        .arg(day.overspeedMinutes)
        .arg(day.Stored_Long_Overspeeds());
}

// A stored day of the USB road, read back from its summary row, in the form
// of Day_Line; empty when the day has no summary.
QString Row_Line(const QString& key)
{
    QString line;
    Guarded(1103, [&] {
        Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F1=?"), {key});
        if (rs.RecordCount() < 1)
            return;
        auto T = [&](const char* f) { return rs.Text(QLatin1String(f)); };
        line = QStringLiteral("stored %1 car %2 driver %3  %4-%5  %6 km  accel %7  brakes %8  overspeed %9  long %10")
                   .arg(T("D_F4"), T("D_F2"), T("D_F3"), Time4_To_Text(T("D_F5")), Time4_To_Text(T("D_F7")))
                   .arg(Val(T("D_F8")) / 10, 0, 'f', 1)
                   .arg(int(Val(T("D_F9"))))
                   .arg(int(Val(T("D_F10"))))
                   .arg(int(Val(T("D_F11"))))
                   .arg(int(Val(T("D_F13"))));
        rs.Close();
    });
    return line;
}

// Each file of the inbox pass as it is done: a pack day's record, the
// summary rows of the USB days it brought, or why it stays or was refused.
std::function<void(const Inbox_File&)> File_Printer(Context& ctx)
{
    auto printed = std::make_shared<QStringList>();
    return [&ctx, printed](const Inbox_File& f) {
        if (f.undriven)
            ctx.out << "not driven " << f.name.mid(8, 6) << " (" << f.name << ": the pack's page of the day is empty)\n";
        else if (f.kind == QLatin1String("Vex") && f.result == 0)
            ctx.out << Day_Line(G().IO->Decoded) << "\n";
        else if (f.removed && f.result != 0)
            ctx.out << "refused " << f.name << " (" << f.why << ")\n";
        else if (!f.removed && f.result != 0)
            ctx.out << "kept " << f.name << " (" << f.why << ")\n";
        else
            ctx.out << "decoded " << f.name << "\n";
        for (const QString& key : Usb_State().stored) {
            if (printed->contains(key))
                continue;
            const QString line = Row_Line(key);
            if (line.isEmpty())
                continue;
            *printed << key;
            ctx.out << line << "\n";
        }
        ctx.out.flush();
    };
}

// The dialog's closing words and the line under them, then the ledger's
// line of the days stored and their notes; non-zero unless the reception
// stored everything it found.
int Finish_Reception(Context& ctx, Ledger_Road road, const QString& source, const Reception_Outcome& outcome)
{
    ctx.out << "수신완료\n" << outcome.Summary() << "\n";
    Tell_Ledger(ctx, road, source, outcome.Summary(), Ledger_Days(outcome));
    ctx.out.flush();
    if (!outcome.Clean()) {
        ctx.err << "vexcli: " << outcome.Summary() << "\n";
        return 1;
    }
    return 0;
}

// "--name value" of the arguments, or empty.
QDate Day_Date(const QString& yymmdd)
{
    if (yymmdd.size() != 6 || !All_Digits(yymmdd))
        return {};
    return QDate(2000 + yymmdd.left(2).toInt(), yymmdd.mid(2, 2).toInt(), yymmdd.mid(4, 2).toInt());
}

bool Valid_Day(const QString& yymmdd)
{
    return Day_Date(yymmdd).isValid();
}

int Receive_Pack(Context& ctx)
{
    const QString port = Option(ctx.args, QStringLiteral("--port"));
    const QString from = Option(ctx.args, QStringLiteral("--from"));
    const QString to = Option(ctx.args, QStringLiteral("--to"));
    if (from.isEmpty() != to.isEmpty() || (!from.isEmpty() && (!Valid_Day(from) || !Valid_Day(to) || from > to))) {
        ctx.err << "vexcli: --from and --to go together, as YYMMDD days, the first not after the second\n";
        return 2;
    }
    if (!port.isEmpty()) {
        // The analyzer is on this port: the scan sees no other.
        const int n = port.toInt();
        if (n < 1 || n > 6) {
            ctx.err << "vexcli: --port takes 1 to 6\n";
            return 2;
        }
        QStringList only(6);
        only[n - 1] = Serial_Port_Device(n);
        qputenv("VEX_SERIAL_PORTS", only.join(QLatin1Char(',')).toUtf8());
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;

    Globals& g = G();
    AnalyzerLink& link = *g.Link;
    const bool found = link.Find_Analyzer();
    Apply_Link_Result(found);
    ctx.out << Link_Status_Text(found) << " (" << Link_Panel4_Text(g.Link_Type) << ")\n";
    if (!found) {
        ctx.err << "vexcli: " << LoadResString(207) << "\n";
        return 2;
    }
    Cls_IO& io = *g.IO;
    io.Link = &link;
    io.Message = [&](int id) { ctx.err << LoadResString(id) << "\n"; };
    io.Progress = [&](int done, int all, const QDate& d) {
        ctx.out << "read " << d.toString(QStringLiteral("yyMMdd")) << " (" << done << "/" << all << ")\n";
        ctx.out.flush();
    };
    link.Set_Pack_Car_Code(QStringLiteral("0000"));
    if (!link.SIO_PackCheck()) {
        ctx.err << "vexcli: 팩이 없거나 분석기 작동에 문제가 없습니다 \n";
        return 2;
    }
    ctx.out << "pack of car " << link.Pack_Car_Code() << "\n";
    auto progress = [&](int done, int all, const QString& what) {
        if (what.startsWith(QLatin1String("read ")))
            ctx.out << what << " (" << done << "/" << all << ")\n";
        ctx.out.flush();
    };
    const QString source = QStringLiteral("port %1, pack of car %2").arg(link.Port().portNumber()).arg(link.Pack_Car_Code());
    const Reception_Outcome outcome =
        Receive_Pack_Days(!from.isEmpty(), Day_Date(from), Day_Date(to), progress, File_Printer(ctx));
    return Finish_Reception(ctx, Ledger_Road::Pack, source, outcome);
}

constexpr const char* kReceiveUsbUsage =
    "usage: vexcli receive usb --model 130|250|260 [--medium DIR] [--from YYMMDD --to YYMMDD]\n";

int Receive_Usb(Context& ctx)
{
    const QString model = Option(ctx.args, QStringLiteral("--model"));
    // Named before the start-up moves into the application folder.
    QString folder = Option(ctx.args, QStringLiteral("--medium"));
    if (!folder.isEmpty())
        folder = QFileInfo(folder).absoluteFilePath();
    const QString from = Option(ctx.args, QStringLiteral("--from"));
    const QString to = Option(ctx.args, QStringLiteral("--to"));
    if (model != QLatin1String("130") && model != QLatin1String("250") && model != QLatin1String("260")) {
        ctx.err << "vexcli: --model takes 130, 250 or 260\n" << kReceiveUsbUsage;
        return 2;
    }
    if (from.isEmpty() != to.isEmpty() || (!from.isEmpty() && (!Valid_Day(from) || !Valid_Day(to) || from > to))) {
        ctx.err << "vexcli: --from and --to go together, as YYMMDD days, the first not after the second\n";
        return 2;
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;

    // Info step: the medium, its model, its identity, the last reception
    // and the days it holds.
    const Usb_Medium medium = Find_Usb_Medium(folder);
    if (medium.root.isEmpty()) {
        ctx.err << "vexcli: " << medium.message << "\n";
        return 2;
    }
    const auto master = Read_Master(medium.Master());
    if (!master) {
        ctx.err << "vexcli: USB가 없읍니다!\n";
        return 2;
    }
    if (model == QLatin1String("260")) {
        // No reception of this model: its identity only.
        ctx.out << "medium " << medium.root << "  model 260  car " << master->car << "  driver " << master->driver
                << "  stamps " << master->start << " " << master->end << "\n";
        return 0;
    }
    const QString refusal = Usb_Model_Refusal(model, medium.Log());
    if (!refusal.isEmpty()) {
        ctx.err << "vexcli: " << refusal << "\n";
        return 2;
    }
    ctx.out << "medium " << medium.root << "  model " << model << "  car " << master->car << "  driver "
            << master->driver << "  stamps " << master->start << " " << master->end << "\n";
    const QString last = Last_Reception_Day(*G().DB, master->car);
    ctx.out << "last reception " << last.left(2) << "-" << last.mid(2, 2) << "-" << last.mid(4, 2) << "\n";

    QString oldest = master->start.left(6), newest = master->end.left(6);
    if (!Is_Day(oldest) || !Is_Day(newest) || oldest == newest) {
        const Usb_Days_Held held = Usb_Log_Days(medium.Log(), model, G().IO->Today_Date().year() % 100);
        oldest = held.oldest;
        newest = held.newest;
    }
    ctx.out << "days " << (oldest.isEmpty() ? QStringLiteral("-") : oldest) << " to "
            << (newest.isEmpty() ? QStringLiteral("-") : newest) << "\n";

    // Receive step: the chosen dates, else the days the medium holds.
    const Filing_Note who = Usb_Reception_Note(*master, from.isEmpty() ? oldest : from, to.isEmpty() ? newest : to);
    const QString source = QStringLiteral("medium %1, model %2, car %3, driver %4")
                               .arg(QDir::toNativeSeparators(medium.root), model, master->car, master->driver);
    return Finish_Reception(ctx, Ledger_Road::Usb, source,
                  Receive_Usb_Log(*G().DB, model, medium.Log(), who, {}, File_Printer(ctx)));
}

} // namespace

int Cmd_Receive(Context& ctx)
{
    const QString source = ctx.args.value(0);
    if (source == QLatin1String("pack"))
        return Receive_Pack(ctx);
    if (source == QLatin1String("usb"))
        return Receive_Usb(ctx);
    if (source == QLatin1String("inbox")) {
        if (!Start_App(ctx) || !Load_App_Settings(ctx))
            return 2;
        Reception_Outcome outcome;
        outcome.failure = Reception_Precheck(G().DB.get());
        if (outcome.failure.isEmpty())
            Run_Inbox(*G().DB, outcome, {}, 0, File_Printer(ctx));
        return Finish_Reception(ctx, Ledger_Road::Inbox, QStringLiteral("\\new"), outcome);
    }
    ctx.err << "vexcli: receive pack|usb|inbox\n";
    return 2;
}

} // namespace vex::cli
