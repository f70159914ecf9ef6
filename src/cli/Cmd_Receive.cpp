// vexcli receive pack|inbox: the reception road without a window.
#include "cli/Commands.h"

#include "acquisition/AnalyzerLink.h"
#include "acquisition/Cls_IO.h"
#include "acquisition/Inbox.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "platform/SerialPort.h"
#include "store/Cls_DB.h"

namespace vex::cli {

namespace {

// What a decoded day left in the record, one line.
QString Day_Line(const Cls_DB& db)
{
    return QStringLiteral("stored %1 car %2 driver %3  %4-%5  %6 km  accel %7  brakes %8  overspeed %9  long %10")
        .arg(db.StartDay, db.CarCode, db.DriveCode, Time4_To_Text(db.StartTime), Time4_To_Text(db.EndTime))
        .arg(Val(db.Distance) / 10, 0, 'f', 1)
        .arg(int(Val(db.Acceleration)))
        .arg(int(Val(db.Brack)))
        .arg(db.OverSpeed_Count)
        .arg(int(Val(db.LKEngin)));
}

void Print_Inbox(Context& ctx)
{
    const int n = Inbox_Pass([&](const Inbox_File& f) {
        if (f.kind == QLatin1String("Vex") && f.result == 0)
            ctx.out << Day_Line(*G().DB) << "\n";
        else if (f.kind == QLatin1String("Vex"))
            ctx.out << "refused " << f.name << " (check byte)\n";
        else
            ctx.out << (f.result == 0 ? "decoded " : "kept ") << f.name << "\n";
        ctx.out.flush();
    });
    ctx.out << n << " file(s) decoded\n";
}

// "--name value" of the arguments, or empty.
QString Option(const QStringList& args, const QString& name)
{
    const int i = args.indexOf(name);
    return i >= 0 && i + 1 < args.size() ? args[i + 1] : QString();
}

bool Valid_Day(const QString& yymmdd)
{
    return yymmdd.size() == 6 && All_Digits(yymmdd)
           && QDate(2000 + yymmdd.left(2).toInt(), yymmdd.mid(2, 2).toInt(), yymmdd.mid(4, 2).toInt()).isValid();
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
    io.Message = [&](int id) { ctx.err << LoadResString(id) << "\n"; };
    io.Progress = [&](int done, int all, const QDate& d) {
        ctx.out << "read " << d.toString(QStringLiteral("yyMMdd")) << " (" << done << "/" << all << ")\n";
        ctx.out.flush();
    };
    io.Range_Selected = false;
    link.Set_Pack_Car_Code(QStringLiteral("0000"));
    if (!link.SIO_PackCheck()) {
        ctx.err << "vexcli: 팩이 없거나 분석기 작동에 문제가 없습니다 \n";
        return 2;
    }
    ctx.out << "pack of car " << link.Pack_Car_Code() << "\n";
    if (!from.isEmpty()) {
        io.Range_Selected = true;
        g.DB->SysPackInsert = from + QStringLiteral("0000");
        g.DB->SysDBWriteDate = from + QStringLiteral("0000");
        g.DB->SysPackLastWrite = to + QStringLiteral("2359");
    }
    const int16_t code = io.Pack_Reads();
    ctx.out << "pack reading: code " << code << "\n";
    Print_Inbox(ctx);
    ctx.out << "수신완료\n";
    return 0;
}

} // namespace

int Cmd_Receive(Context& ctx)
{
    const QString source = ctx.args.value(0);
    if (source == QLatin1String("pack"))
        return Receive_Pack(ctx);
    if (source == QLatin1String("inbox")) {
        if (!Start_App(ctx) || !Load_App_Settings(ctx))
            return 2;
        Print_Inbox(ctx);
        return 0;
    }
    ctx.err << "vexcli: receive pack|inbox\n";
    return 2;
}

} // namespace vex::cli
