// vexcli [--app-dir DIR] COMMAND [ARGS...]
#include "app/Start_Up.h"
#include "cli/Commands.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTextStream>
#include <cstdio>
#include <memory>

using namespace vex::cli;

namespace {

const Command kCommands[] = {
    {"init", "init", "create the application folder if it is new and show where it is", Cmd_Init},
    {"show", "show", "show the database tables, their row counts and the settings row", Cmd_Show},
    {"dump", "dump FILE", "print a pack file (.Vex) as the dump view", Cmd_Dump},
    {"receive", "receive pack|usb|inbox ...",
     "pack [--port N] [--from YYMMDD --to YYMMDD]: read a memory pack through the analyzer; "
     "usb --model 130|250 [--medium DIR] [--from --to]: a USB medium; inbox: decode what waits in \\new",
     Cmd_Receive},
    {"day", "day CARCODE DRIVERCODE YYMMDD", "show what is stored of one day", Cmd_Day},
    {"sample", "sample pack|usb|ntd --out ... | sample fleet --cars N --days D", "write a sample memory pack image, USB medium or saved day",
     Cmd_Sample},
    {"graph", "graph day|hour|quickbrake|marks ...",
     "day CAR DRIVER YYMMDD [--zoom 1|2|6|12|24 --hour H]: the day; hour CAR DRIVER YYMMDD HH [--zoom 1|2|15|30|60 "
     "--minute M]: an hour of seconds; quickbrake CAR --slot 1..4: the seconds before a hard brake; marks --car CODE "
     "[--driver CODE]|--all --from YYMMDD --to YYMMDD: marks by day; each --out FILE.png|FILE.pdf [--size WxH]",
     Cmd_Graph},
    {"sections", "sections CARCODE DRIVERCODE YYMMDD", "the driving and standing sections of a day and their sums",
     Cmd_Sections},
    {"month", "month YYMM", "rebuild and print the month rows of D_M1 and D_Y1", Cmd_Month},
    {"standards", "standards [set N=VALUE...]", "print the evaluation standards, or set fields 1 to 13", Cmd_Standards},
    {"recalc", "recalc", "count every stored trip again under the standards (progress on stderr)", Cmd_Recalc},
    {"report", "report KIND ... --out FILE.pdf|--printer NAME",
     "drive-day|inspection-day|sections|operation CAR DRIVER YYMMDD; operation-360 CAR DRIVER YYMMDD HH; "
     "quick-brake CAR; avg-day --from --to; day-avg --car --driver --from --to; mark-explanation CAR DRIVER "
     "YYMMDD; driver-trend --from YYMM --to YYMM: a printed report",
     Cmd_Report},
    {"excel", "excel KIND [--car CODE] [--driver CODE] --from YYMMDD --to YYMMDD [--out FILE.xlsx]",
     "a spreadsheet report from its template; KIND is one of:", Cmd_Excel},
    {"fuel", "fuel day YYMMDD | fuel month YYMM --speed N --rates OVER,ACCEL,IDLE,BRAKE --price P",
     "the fuel estimate of a day's trips, or the excess fuel cost of a month by car", Cmd_Fuel},
    {"optimise", "optimise", "compact the database (in place at the next start; VACUUM ANALYZE on a server)",
     Cmd_Optimise},
    {"backup", "backup --from YYMMDD --to YYMMDD", "move a period out into \\exp\\FROMTO.zip and compact",
     Cmd_Backup},
    {"export", "export --from --to [--car CODE|ALL] [--driver CODE|ALL] [--delete] [--out FILE.zip]",
     "a package of a selection, with its day files", Cmd_Export},
    {"import", "import FILE.zip|FOLDER", "bring packages in; a row of the same key is overwritten", Cmd_Import},
    {"delete", "delete --from --to --car CODE|ALL [--driver CODE|ALL] --yes", "delete a selection's days",
     Cmd_Delete},
    {"rekey", "rekey --car --driver --from --to --new-driver", "move a driver's days to another driver code",
     Cmd_Rekey},
    {"rebuild", "rebuild FILE.vex --car CODE", "rebuild a day from its day file", Cmd_Rebuild},
    {"move", "move --source PATH --kind 1|2|3 --from YYMMDD",
     "bring an older installation's database (Jet or SQLite) over", Cmd_Move},
    {"dayfiles", "dayfiles to-database",
     "on a server: the day files under \\pack into the database, where every PC reads them", Cmd_Day_Files},
    {"agency", "agency --from YYMMDD --to YYMMDD [--company NAME --business NUMBER] [--check]",
     "the agency submission files under report/N, or with --check what a run passes over", Cmd_Agency},
    {"remote", "remote", "fetch the site's packages from its FTP server (two passes) and load them", Cmd_Remote},
    {"car", "car list|add|set|delete ...",
     "the car register: list [--search FIELD PATTERN]; add CODE [FIELD VALUE]...; set CODE FIELD VALUE...; "
     "delete CODE --yes",
     Cmd_Car},
    {"driver", "driver list|add|set|delete ...",
     "the driver register: list [--search FIELD PATTERN]; add CODE [FIELD VALUE]...; set CODE FIELD VALUE...; "
     "delete CODE --yes",
     Cmd_Driver},
    {"config", "config show|set FIELD VALUE...",
     "the settings row: company, login, FTP account and company code, graph axes, idle minutes", Cmd_Config},
    {"ledger", "ledger [--from YYMMDD --to YYMMDD] [--car CODE] [--driver CODE] [--kind KIND] [--findings]",
     "the receptions, what became of each day, and the notes on the days stored", Cmd_Ledger},
    {"marks", "marks explain CAR DRIVER YYMMDD | marks trend --from YYMM --to YYMM [--driver CODE]",
     "a trip's mark step by step with the events behind it; the drivers month by month", Cmd_Marks},
};

void Usage(QTextStream& s)
{
    s << "usage: vexcli [--app-dir DIR] COMMAND [ARGS...]\n\n"
      << "The application folder is --app-dir, else $VEX_HOME, else "
      << vex::Default_App_Dir() << ".\n\ncommands:\n";
    // A usage too long for its column leaves the summary to the next line.
    for (const auto& c : kCommands) {
        const QString usage = QString::fromLatin1(c.usage);
        s << "  " << (usage.size() < 40 ? usage.leftJustified(40) : usage + "\n" + QString(42, QLatin1Char(' ')))
          << c.summary;
        if (c.run == Cmd_Excel)
            s << " " << Excel_Kind_Names().join(QLatin1Char('|'));
        s << "\n";
    }
}

// Drawing needs the GUI part of Qt (fonts, printers), and without a
// display its offscreen platform.
bool Draws(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        if (QByteArray(argv[i]) == "graph" || QByteArray(argv[i]) == "report")
            return true;
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    std::unique_ptr<QCoreApplication> application;
    if (Draws(argc, argv)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
            qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        application = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        application = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication& app = *application;
    QTextStream out(stdout), err(stderr);
    QStringList words = app.arguments().mid(1);

    QString appDir;
    while (!words.isEmpty() && words.first().startsWith("--")) {
        const QString opt = words.takeFirst();
        if (opt == "--app-dir" && !words.isEmpty()) {
            appDir = words.takeFirst();
        } else if (opt.startsWith("--app-dir=")) {
            appDir = opt.mid(10);
        } else if (opt == "--help") {
            Usage(out);
            return 0;
        } else {
            err << "vexcli: unknown option " << opt << "\n";
            Usage(err);
            return 2;
        }
    }
    if (words.isEmpty()) {
        Usage(err);
        return 2;
    }
    const QString name = words.takeFirst();
    for (const auto& c : kCommands) {
        if (name == QLatin1String(c.name)) {
            Context ctx{vex::Resolve_App_Dir(appDir), words, out, err};
            const int rc = c.run(ctx);
            vex::Main_Shutdown(); // the connection closes while Qt still stands
            return rc;
        }
    }
    err << "vexcli: unknown command " << name << "\n";
    Usage(err);
    return 2;
}
