// vexcli report KIND ...: every printed report of the program through the
// same routines, into a PDF file or onto a printer of the system.
#include "cli/Commands.h"
#include "cli/Graph_Output.h"

#include "analysis/Operation_Graph.h"
#include "analysis/Quick_Brake_Chart.h"
#include "analysis/Trip_Fields.h"
#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "registers/Register_Lookup.h"
#include "reports/Cls_Report.h"
#include "reports/Printer_Device.h"
#include "reports/Report_Printer.h"
#include "reports/Report_Trust.h"
#include "store/Cls_DB.h"

#include <QPrinter>
#include <QPrinterInfo>
#include <functional>
#include <memory>

namespace vex::cli {

namespace {

int Report_Usage(Context& ctx, const QString& what)
{
    ctx.err << "vexcli: " << what << "\n"
            << "  report drive-day|inspection-day|sections CAR DRIVER YYMMDD\n"
            << "  report operation CAR DRIVER YYMMDD [--zoom 1|2|6|12|24 --hour H]\n"
            << "  report operation-360 CAR DRIVER YYMMDD HH [--zoom 1|2|15|30|60 --minute M]\n"
            << "  report quick-brake CAR [--driver CODE] [--slot 1..4]\n"
            << "  report avg-day --from YYMMDD --to YYMMDD\n"
            << "  report day-avg --car CODE --driver CODE --from YYMMDD --to YYMMDD\n"
            << "  report mark-explanation CAR DRIVER YYMMDD\n"
            << "  report driver-trend --from YYMM --to YYMM [--driver CODE]\n"
            << "  each with --out FILE.pdf or --printer NAME\n";
    return 2;
}

bool Trip_Args(const QStringList& a, int n)
{
    return a.size() == n && a[0].size() == 6 && a[1].size() == 6 && Day_Word(a[2]);
}

// The selection of a trip as the report forms hand it over: codes, day,
// the driver's name and the car's number.
void Select_Trip(Cls_Report& r, Cls_DB& db, const QString& car, const QString& driver, const QString& day)
{
    r.Car_Code = car;
    r.Driver_Code = driver;
    r.Start_Date = day;
    r.End_Date = day;
    r.Driver_Name = Driver_Name_Of(db, driver);
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1 = ?"), {car});
    r.Car_Government = rs.RecordCount() > 0 ? rs.Text(QStringLiteral("D_F3")) : QString();
}

bool Stored_Day(Cls_DB& db, const QString& key)
{
    return db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F1=?"), {key}).RecordCount() > 0;
}

} // namespace

int Cmd_Report(Context& ctx)
{
    QStringList args = ctx.args;
    const QString kind = args.isEmpty() ? QString() : args.takeFirst();
    const QString out = Take_Out_Path(args);
    const QString printerName = Take_Option(args, QStringLiteral("--printer"));
    if (out.isEmpty() == printerName.isEmpty())
        return Report_Usage(ctx, QStringLiteral("give --out FILE.pdf or --printer NAME"));
    if (!out.isEmpty() && !out.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive))
        return Report_Usage(ctx, QStringLiteral("--out names a .pdf file"));

    // The words of each kind, checked before anything opens.
    int zoom = 0, first = 0, slot = 1;
    QString car, driver, from, to;
    bool ok = true;
    if (kind == QLatin1String("drive-day") || kind == QLatin1String("inspection-day") ||
        kind == QLatin1String("sections")) {
        ok = Trip_Args(args, 3);
    } else if (kind == QLatin1String("operation")) {
        ok = Number_Option(args, QStringLiteral("--zoom"), 24, 1, 24, zoom, {1, 2, 6, 12, 24}) &&
             Number_Option(args, QStringLiteral("--hour"), 0, 0, 23, first) && Trip_Args(args, 3);
    } else if (kind == QLatin1String("operation-360")) {
        ok = Number_Option(args, QStringLiteral("--zoom"), 60, 1, 60, zoom, {1, 2, 15, 30, 60}) &&
             Number_Option(args, QStringLiteral("--minute"), 0, 0, 59, first) && Trip_Args(args, 4) &&
             All_Digits(args[3]) && args[3].toInt() <= 23;
    } else if (kind == QLatin1String("quick-brake")) {
        driver = Take_Option(args, QStringLiteral("--driver"));
        ok = Number_Option(args, QStringLiteral("--slot"), 1, 1, 4, slot) && args.size() == 1 && args[0].size() == 6;
    } else if (kind == QLatin1String("avg-day") || kind == QLatin1String("day-avg")) {
        car = Take_Option(args, QStringLiteral("--car"));
        driver = Take_Option(args, QStringLiteral("--driver"));
        from = Take_Option(args, QStringLiteral("--from"));
        to = Take_Option(args, QStringLiteral("--to"));
        ok = args.isEmpty() && Day_Word(from) && Day_Word(to) && from <= to &&
             (kind == QLatin1String("avg-day") || (car.size() == 6 && driver.size() == 6));
    } else if (kind == QLatin1String("mark-explanation")) {
        ok = args.size() == 3 && Is_Code(args[0]) && Is_Code(args[1]) && Is_Day(args[2]);
    } else if (kind == QLatin1String("driver-trend")) {
        driver = Take_Option(args, QStringLiteral("--driver"));
        from = Take_Option(args, QStringLiteral("--from"));
        to = Take_Option(args, QStringLiteral("--to"));
        ok = args.isEmpty() && from.size() == 4 && to.size() == 4 && Is_Day(from + QStringLiteral("01"))
             && Is_Day(to + QStringLiteral("01")) && from <= to && (driver.isEmpty() || Is_Code(driver));
    } else {
        return Report_Usage(ctx, QStringLiteral("report drive-day|inspection-day|sections|operation|operation-360|"
                                               "quick-brake|avg-day|day-avg|mark-explanation|driver-trend"));
    }
    if (!ok)
        return Report_Usage(ctx, QStringLiteral("wrong words for report ") + kind);
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;

    // Where the pages go.
    std::unique_ptr<QPrinter> qprinter;
    std::unique_ptr<Report_Printer> printer;
    if (!out.isEmpty()) {
        printer = std::make_unique<Pdf_Printer>(out);
    } else {
        const QStringList names = QPrinterInfo::availablePrinterNames();
        if (!names.isEmpty() && !names.contains(printerName)) {
            ctx.err << "vexcli: no printer " << printerName << "; the system has " << names.join(QStringLiteral(", "))
                    << "\n";
            return 2;
        }
        qprinter = std::make_unique<QPrinter>(QPrinter::HighResolution);
        qprinter->setPrinterName(printerName);
        printer = std::make_unique<Printer_Device>(*qprinter);
    }

    Cls_DB& db = *G().DB;
    Cls_Report report;
    report.Msg_Box = [&](const QString& text, const QString& title) { ctx.err << title << ": " << text << "\n"; };
    int rc = 0;
    bool printed = false;
    Guarded(1157, [&] {
        if (kind == QLatin1String("avg-day") || kind == QLatin1String("day-avg")) {
            report.Start_Date = from;
            report.End_Date = to;
            report.Car_Code = car;
            report.Driver_Code = driver;
            printed = kind == QLatin1String("avg-day") ? report.Report_Avg_Day_G(*printer, db)
                                                        : report.Report_Day_AVG_G(*printer, db);
            return;
        }
        if (kind == QLatin1String("mark-explanation")) {
            const Trip_Explanation e = Explain_Trip(db, *G().Config, args[0], args[1], args[2]);
            if (!e.found) {
                ctx.err << "vexcli: no stored trip " << args[0] + args[1] + args[2] << "\n";
                rc = 1;
                return;
            }
            printed = Report_Mark_Explanation(*printer, db, e);
            return;
        }
        if (kind == QLatin1String("driver-trend")) {
            printed = Report_Driver_Trend(*printer, db, Driver_Trends(db, from, to, driver), from, to);
            return;
        }
        if (kind == QLatin1String("quick-brake")) {
            report.Car_Code = args[0];
            report.Driver_Code = driver;
            report.Driver_Name = driver.isEmpty() ? QString() : Driver_Name_Of(db, driver);
            Quick_Brake_Chart chart;
            if (!chart.Load(db, args[0])) {
                ctx.err << "vexcli: no quick-brake buffers stored for car " << args[0] << "; the frame alone\n";
                rc = 1;
            }
            printed = report.Report_Quick_Brake(*printer, db, chart, slot);
            return;
        }
        Select_Trip(report, db, args[0], args[1], args[2]);
        if (!Stored_Day(db, args[0] + args[1] + args[2])) {
            ctx.err << "vexcli: no stored day " << args[0] + args[1] + args[2] << "\n";
            rc = 1;
        }
        Operation_Graph og(db);
        if (kind == QLatin1String("drive-day")) {
            printed = report.Report_Drive_Day(*printer, db);
        } else if (kind == QLatin1String("inspection-day")) {
            printed = report.Report_inspection_Day(*printer, db);
        } else if (kind == QLatin1String("sections")) {
            printed = report.Report_Drive_Sections(*printer, db);
        } else if (kind == QLatin1String("operation")) {
            og.Set_Zoom_Window(int16_t(zoom), first, 24);
            og.DB_Search_Data(nullptr, args[0], args[1], args[2]);
            printed = report.Report_Operation(*printer, og, Minute_Field_Captions(), Opening_Fields(og));
        } else {
            og.Set_Zoom_Window(int16_t(zoom), first, 60);
            QString hour = args[3].rightJustified(2, QLatin1Char('0'));
            if (og.DB_Search_SecData2(nullptr, args[0], args[1], args[2], hour).isEmpty()) {
                ctx.err << "vexcli: no second data of " << args[0] << " " << args[1] << " " << args[2] << "\n";
                rc = 1;
            }
            printed = report.Report_Operation_360(*printer, og, Second_Field_Captions(),
                                                  Second_Fields(og, args[0], args[1], 0));
        }
    });
    if (!printed) {
        ctx.err << "vexcli: nothing printed: " << (printer->Error.isEmpty() ? Err_Last() : printer->Error) << "\n";
        return 2;
    }
    ctx.out << (out.isEmpty() ? QStringLiteral("sent to ") + printerName : QStringLiteral("wrote ") + out) << "\n";
    return rc;
}

} // namespace vex::cli
