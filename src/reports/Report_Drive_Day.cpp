// The daily operation report ("운전일보") on one A4 page, its variant with
// the dispatch and cost blocks, and the attachment of the day's sections.
// The page is a frame of ruled rows over the upper part and the day's graph
// below 0.644 of the height; the row pitch is that of "AAA".
#include "registers/Register_Lookup.h"
#include "reports/Cls_Report.h"

#include "acquisition/Cls_IO.h"
#include "analysis/Cls_Inspection.h"
#include "analysis/Graph_Geometry.h"
#include "analysis/Operation_Graph.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "reports/Report_Page.h"
#include "reports/Report_Printer.h"
#include "reports/Report_Text.h"
#include "store/Cls_DB.h"

#include <algorithm>

namespace vex {

namespace {

constexpr int16_t kErrDrive_Day = 1157;
constexpr float kGraphTop = 0.644f; // the canvas of Out_Direction 1 starts here

QString M(int id)
{
    return LoadResString(id);
}

QString HHMM(int minutes)
{
    return QStringLiteral("%1:%2").arg(minutes / 60, 2, 10, QLatin1Char('0')).arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

// What the page shows of the day, read before anything is drawn.
struct Daily_Figures {
    QString car, driver, name, number, day;
    QString machine, serial;
    QString start, end, distance;
    int drive = 0, stop = 0, total = 0, highest = 0;
    double litres = 0;
    QString mark;
    int16_t overspeed = 0;
    std::vector<Day_Section> sections;
    std::vector<QStringList> equipment; // name, work, distance
    std::vector<Inspection_Share> shares; // of Share_Items(), in order
    bool distanceSeen = false, rpmSeen = false;
};

// The check block: three columns of rows, each an item with its share, a
// sensor with its check, or a figure of the trip.
enum Check_Row { kShare, kDistanceSensor, kRpmSensor, kMark, kOverspeedCount };
struct Check_Entry {
    int id;
    Check_Row kind;
};
const std::vector<std::vector<Check_Entry>>& Check_Columns()
{
    static const std::vector<std::vector<Check_Entry>> columns = {
        {{879, kShare}, {880, kShare}, {882, kShare}, {883, kShare}, {1205, kShare}, {1206, kShare}, {1207, kShare}},
        {{1208, kShare}, {1209, kShare}, {1210, kShare}, {889, kDistanceSensor}, {893, kRpmSensor}, {881, kMark},
         {824, kOverspeedCount}},
        {{884, kShare}, {885, kShare}, {886, kShare}, {887, kShare}, {888, kShare}, {892, kShare}},
    };
    return columns;
}

std::vector<int> Share_Items()
{
    std::vector<int> ids;
    for (const auto& column : Check_Columns())
        for (const Check_Entry& e : column)
            if (e.kind == kShare)
                ids.push_back(e.id);
    return ids;
}

bool Any_Cell_Above_Zero(const QString& cells)
{
    for (const QChar c : cells)
        if (c != u'0' && c != u' ')
            return true;
    return false;
}

// The recorder identity of the last pack read in this session; blank
// without one.
Pack_System_Page Last_System_Page()
{
    return G().IO ? G().IO->System_Page : Pack_System_Page{};
}

Daily_Figures Read_Daily(Cls_DB& db, Operation_Graph& og, const Cls_Report& r)
{
    Daily_Figures d;
    d.car = r.Car_Code;
    d.driver = r.Driver_Code;
    d.day = r.Start_Date;
    og.Set_Zoom_Window(24, 0, 24);
    og.DB_Search_Data(nullptr, r.Car_Code, r.Driver_Code, r.Start_Date);
    og.DB_Search_Data2(nullptr, r.Car_Code, r.Driver_Code, r.Start_Date);
    d.sections = og.Sections;
    d.name = r.Driver_Name.isEmpty() ? Driver_Name_Of(db, r.Driver_Code) : r.Driver_Name;
    d.number = Management_Number(db, r.Car_Code);
    const Pack_System_Page page = Last_System_Page();
    d.machine = page.machineNumber.trimmed();
    d.serial = page.serialNumber.trimmed();
    const Stored_Trip& trip = og.Trip;
    d.start = Hhmm_Text(trip.startTime);
    d.end = Hhmm_Text(trip.endTime);
    d.distance = Km_Text(Val(trip.distance));
    d.drive = og.Sum_DriveTime;
    d.stop = og.Sum_BDriveTime;
    d.total = og.Total_Time;
    for (int k = 1; k <= 1440; ++k)
        d.highest = std::max<int>(d.highest, og.Speed_Search(k));
    d.mark = QString::number(trip.mark);
    d.overspeed = trip.overspeedMinutes;
    d.litres = Rated_Litres(db, r.Car_Code, Val(trip.distance));
    d.distanceSeen = Any_Cell_Above_Zero(trip.distanceSeries);
    d.rpmSeen = Any_Cell_Above_Zero(trip.rpm);
    const Cls_Config* cfg = G().Config.get();
    if (cfg && cfg->C_Oil == 1) {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_M1 WHERE D_F1 = ?"), {r.Car_Code});
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            d.equipment.push_back({rs.Text(QStringLiteral("D_F2")), rs.Text(QStringLiteral("D_F4")),
                                   rs.Text(QStringLiteral("D_F5"))});
        d.shares = Inspection_Shares(db, r.Car_Code, Share_Items());
    }
    return d;
}

// The page of the daily report, laid from the top in rows of the body
// font; the font shrinks until the blocks fit above the graph.
class Daily_Page {
public:
    Daily_Page(Report_Page& page, const Daily_Figures& d, bool inspection) : p_(page), d_(d), inspection_(inspection) {}

    void Draw()
    {
        // Rows in units of the pitch: the header with its title about 6,
        // the running block 4, the table head and its rows, the total row,
        // the lower block 2 (5 with the fuel and cost blocks), the check
        // block 7, the gauge 1.
        const float rows = 6.2f + 4 * 1.15f + (Cls_Report::kDayTableRows + 1) * 1.1f + 1.15f +
                           (inspection_ ? 5 : 2) * 1.15f + 7 * 0.95f + 1.3f + 1.0f;
        for (double points = 9.5; points > 6; points -= 0.5) {
            p_.Font(points);
            if (rows * p_.Pitch() <= p_.H() * kGraphTop - p_.Pitch() * 0.3f)
                break;
        }
        const double body = p_.S().FontSize();
        float y = Header();
        p_.Font(body);
        y = Running_Block(y + p_.Pitch() * 0.3f);
        y = Section_Table(y + p_.Pitch() * 0.3f);
        y = Lower_Block(y);
        y = Check_Block(y + p_.Pitch() * 0.2f);
        Gauge(y + p_.Pitch() * 0.15f);
    }

private:
    // Title, approval box, car, driver, recorder and day.
    float Header()
    {
        const double body = p_.S().FontSize();
        const float W = p_.W();
        const float boxLeft = W * 0.62f;
        float y = p_.Title(M(627));
        p_.Font(body);
        const float pitch = p_.Pitch();
        // Approval: four columns, a head row and room to sign.
        const auto edges = Edges(boxLeft, W - boxLeft, {0, 0.25f, 0.5f, 0.75f, 1});
        p_.Row(0, pitch * 1.2f, edges, {M(833), M(834), M(835), M(836)});
        p_.Row(pitch * 1.2f, pitch * 2.6f, edges, {});
        const float left = W * 0.6f;
        p_.Print_Date(y, left);
        y += pitch * 1.1f;
        QString line = M(632) + QStringLiteral(" : ") + d_.car;
        if (!d_.number.isEmpty())
            line += QStringLiteral("    ") + M(809) + QStringLiteral(" : ") + d_.number;
        if (inspection_)
            line += QStringLiteral("    ") + M(831) + QStringLiteral(" : ");
        p_.Text(0, y, line);
        y += pitch;
        p_.Text(0, y, M(832) + QStringLiteral(" : ") + d_.name + QStringLiteral(" / ") + d_.driver);
        y += pitch;
        // The recorder's identity, each part only when it is known.
        QStringList ids;
        if (!d_.machine.isEmpty())
            ids << QStringLiteral("M - ") + d_.machine;
        if (!d_.serial.isEmpty())
            ids << QStringLiteral("P - ") + d_.serial;
        if (!ids.isEmpty()) {
            p_.Text(0, y, ids.join(QStringLiteral("    ")));
            y += pitch;
        }
        p_.Text(0, y, M(837) + QStringLiteral(" : ") + Day_Dots(d_.day));
        y += pitch;
        return std::max(y, pitch * 3.9f);
    }

    // "운행" with its state and distance at the left; the equipment (or
    // the dispatch) at the right.
    float Running_Block(float y)
    {
        const float W = p_.W(), h = p_.Pitch() * 1.15f;
        const float mid = W * 0.46f;
        const auto left = Edges(0, mid, {0, 0.18f, 0.5f, 1});
        p_.Row(y, h, left, {M(838), M(839), d_.start + QStringLiteral(" ~ ") + d_.end});
        p_.Row(y + h, h, left, {QString(), M(840), d_.distance + QStringLiteral(" km")});
        p_.Row(y + 2 * h, h, left, {QString(), M(861), HHMM(d_.drive)});
        p_.Row(y + 3 * h, h, left, {QString(), M(866), HHMM(d_.stop)});
        const auto right = Edges(mid + W * 0.02f, W - mid - W * 0.02f, {0, 0.28f, 0.58f, 0.8f, 1});
        if (inspection_) {
            const auto dispatch = Edges(mid + W * 0.02f, W - mid - W * 0.02f, {0, 0.34f, 0.67f, 1});
            p_.Row(y, h, dispatch, {M(841), M(842), M(844)});
            for (int i = 1; i < 4; ++i)
                p_.Row(y + i * h, h, dispatch, {});
        } else {
            p_.Row(y, h, right, {M(1183), M(1184), QStringLiteral("운행거리"), M(843)});
            for (int i = 0; i < 3; ++i) {
                QStringList cells;
                if (size_t(i) < d_.equipment.size())
                    cells = d_.equipment[size_t(i)];
                p_.Row(y + (i + 1) * h, h, right, cells);
            }
        }
        return y + 4 * h;
    }

    // One line a section; more sections than lines: the note on the last.
    float Section_Table(float y)
    {
        const float W = p_.W(), h = p_.Pitch() * 1.1f;
        std::vector<float> edges;
        QStringList head = {M(845), M(846), M(847), M(848), M(849), M(850), M(851), M(852)};
        if (inspection_) {
            head << M(853) << M(854) << M(855) << M(856) << M(857) << M(858);
            edges = Edges(0, W, {0, 0.08f, 0.15f, 0.22f, 0.28f, 0.34f, 0.40f, 0.46f, 0.52f, 0.60f, 0.69f, 0.78f,
                                 0.88f, 0.94f, 1});
        } else {
            edges = Edges(0, W, {0, 0.22f, 0.33f, 0.44f, 0.54f, 0.64f, 0.76f, 0.88f, 1});
        }
        p_.Row(y, h, edges, head);
        const int lines = Cls_Report::kDayTableRows;
        const bool attach = int(d_.sections.size()) > lines;
        const int shown = attach ? lines - 1 : int(d_.sections.size());
        for (int i = 0; i < lines; ++i) {
            const float top = y + (i + 1) * h;
            if (i < shown) {
                const Day_Section& s = d_.sections[size_t(i)];
                p_.Row(top, h, edges,
                       {QString(), s.Start, s.End, s.Kind, s.Length, QString(), QString(), Km_Text(s.Distance)});
            } else if (attach && i == lines - 1) {
                p_.Row(top, h, {edges.front(), edges.back()}, {});
                p_.Text(edges.front() + p_.S().TextWidth(QStringLiteral(" ")), top + (h - p_.Pitch()) / 2,
                        Attachment_Note());
            } else {
                p_.Row(top, h, edges, {});
            }
        }
        return y + (lines + 1) * h;
    }

    // Working time and its figures; the fuel and cost blocks of the
    // dispatch form; the total row.
    float Lower_Block(float y)
    {
        const float W = p_.W(), h = p_.Pitch() * 1.15f;
        if (inspection_) {
            const auto e = Edges(0, W, {0, 0.13f, 0.26f, 0.39f, 0.52f, 0.65f, 0.78f, 0.89f, 1});
            p_.Row(y, h, e, {M(859), M(861), M(866), M(821), M(822), M(820), M(1177), M(867)});
            p_.Row(y + h, h, e,
                   {M(1178), HHMM(d_.drive), HHMM(d_.stop), d_.start, d_.end, d_.distance,
                    QString::number(d_.highest), HHMM(d_.total)});
            const auto f = Edges(0, W, {0, 0.13f, 0.24f, 0.37f, 0.48f, 0.61f, 0.72f, 0.85f, 1});
            p_.Row(y + 2 * h, h, f, {M(860), M(862), QString(), M(863), QString(), M(864), QString(), M(865)});
            const auto c = Edges(0, W, {0, 0.16f, 0.26f, 0.35f, 0.44f, 0.53f, 0.62f, 0.72f, 0.81f, 0.9f, 1});
            p_.Font(p_.S().FontSize() - 0.5);
            p_.Row(y + 3 * h, h, c,
                   {M(868), M(869), M(870), M(871), M(872), M(873), M(874), M(875), M(876), M(878)});
            p_.Font(p_.S().FontSize() + 0.5);
            p_.Row(y + 4 * h, h, c, {}); // the costs, filled in by hand
            y += 5 * h;
        } else {
            const auto e = Edges(0, W, {0, 0.14f, 0.28f, 0.43f, 0.58f, 0.72f, 0.86f, 1});
            p_.Row(y, h, e, {M(1178), M(859), M(861), M(821), M(822), M(820), M(1177)});
            p_.Row(y + h, h, e,
                   {QString(), HHMM(d_.total), HHMM(d_.drive), d_.start, d_.end, d_.distance,
                    QString::number(d_.highest)});
            y += 2 * h;
        }
        const auto t = Edges(0, W, {0, 0.1f, 0.28f, 0.42f, 0.52f, 0.76f, 0.88f, 1});
        p_.Row(y, h, t,
               {M(867), QStringLiteral("연료소모량"), Litres_Text(d_.litres), M(843), QString(), M(877),
                d_.distance});
        return y + h;
    }

    // The maintenance check; its frame stands also when the check is off.
    float Check_Block(float y)
    {
        const float W = p_.W();
        const double body = p_.S().FontSize();
        p_.Font(body - 1);
        const float h = p_.Pitch() * 1.0f;
        const float height = h * 7 + p_.Pitch() * 0.4f;
        p_.Box(0, y, W, y + height);
        const Cls_Config* cfg = G().Config.get();
        if (cfg && cfg->C_Oil == 1) {
            size_t share = 0;
            const auto& columns = Check_Columns();
            for (size_t c = 0; c < columns.size(); ++c) {
                const float x = W * (0.02f + 0.33f * float(c));
                float row = y + p_.Pitch() * 0.2f;
                for (const Check_Entry& e : columns[c]) {
                    QString value;
                    switch (e.kind) {
                    case kShare: value = d_.shares.size() > share ? d_.shares[share++].share : QString(); break;
                    case kDistanceSensor: value = Sensor_Text(d_.distanceSeen); break;
                    case kRpmSensor:
                        if (!Rpm_Input())
                            continue; // no RPM input, no RPM sensor to check
                        value = Sensor_Text(d_.rpmSeen);
                        break;
                    case kMark: value = d_.mark; break;
                    case kOverspeedCount: value = QString::number(d_.overspeed); break;
                    }
                    p_.Text(x, row, M(e.id));
                    p_.Text(x + W * 0.17f, row, QStringLiteral("= ") + value);
                    row += h;
                }
            }
        }
        p_.Font(body);
        return y + height;
    }

    // The fuel gauge: a bar from 0% to 100% and the consumption.
    void Gauge(float y)
    {
        const float W = p_.W(), pitch = p_.Pitch();
        const float x1 = W * 0.12f, x2 = W * 0.62f;
        p_.Text(0, y, QStringLiteral("0%"));
        p_.Box(x1, y + pitch * 0.15f, x2, y + pitch * 0.85f);
        p_.Text(x2 + pitch * 0.3f, y, QStringLiteral("100%"));
        p_.Text(W * 0.72f, y, M(894) + QStringLiteral("= ") + Litres_Text(d_.litres));
    }

    static QString Sensor_Text(bool seen) { return seen ? QStringLiteral("정상") : QStringLiteral("점검"); }

    Report_Page& p_;
    const Daily_Figures& d_;
    bool inspection_;
};

// The attachment: every section, page after page, from y on the page in hand.
void Section_Pages(Report_Page& page, const std::vector<Day_Section>& sections, const QString& machine,
                   const QString& serial, float y)
{
    const float W = page.W();
    page.Font(10);
    page.Text_Centre(0, W, y, M(1132));
    y += page.Pitch() * 1.2f;
    QString ids = QStringLiteral("M-") + machine + QStringLiteral(" / P-") + serial + QStringLiteral(" / ");
    page.Text(0, y, ids);
    y += page.Pitch() * 1.2f;
    page.Font(9);
    const float h = page.Pitch() * 1.1f;
    const auto edges = Edges(0, W, {0, 0.16f, 0.28f, 0.40f, 0.51f, 0.62f, 0.75f, 0.88f, 1});
    const QStringList head = {M(845), M(846), M(847), M(848), M(849), M(1036), M(1134), M(843)};
    page.Row(y, h, edges, head);
    y += h;
    double driven = 0, standing = 0;
    for (const Day_Section& s : sections) {
        if (y + 2 * h > page.H()) {
            // The row count has reached the page: the head again on the next.
            page.New_Page();
            y = 0;
            page.Row(y, h, edges, head);
            y += h;
        }
        const bool driving = s.Kind == kDriving;
        (driving ? driven : standing) += s.Distance;
        page.Row(y, h, edges,
                 {QString(), s.Start, s.End, s.Kind, s.Length, driving ? Km_Text(s.Distance) : QString(),
                  driving ? QString() : Km_Text(s.Distance), QString()});
        y += h;
    }
    page.Row(y, h, edges, {M(877), QString(), QString(), QString(), QString(), Km_Text(driven), Km_Text(standing)});
}

} // namespace

bool Cls_Report::Daily(Report_Printer& printer, Cls_DB& db, bool inspection, int16_t errCode)
{
    if (No_Printer(printer))
        return false;
    bool ok = false;
    Operation_Graph og(db);
    Guarded(errCode, [&] {
        const Daily_Figures d = Read_Daily(db, og, *this);
        Report_Page page(printer, M(627), false);
        Daily_Page(page, d, inspection).Draw();
        // The day's graph under the blocks, at paper proportions.
        og.Out_Direction = 1;
        og.Draw_Day(page.S());
        og.Out_Direction = 0;
        if (int(d.sections.size()) > kDayTableRows) {
            page.New_Page();
            float y = page.Title(M(1132));
            Section_Pages(page, d.sections, d.machine, d.serial, y);
        }
        ok = page.Finish();
    });
    og.Out_Direction = 0;
    return ok;
}

bool Cls_Report::Report_Drive_Day(Report_Printer& printer, Cls_DB& db)
{
    return Daily(printer, db, false, kErrDrive_Day);
}

bool Cls_Report::Report_inspection_Day(Report_Printer& printer, Cls_DB& db)
{
    return Daily(printer, db, true, kErrDrive_Day);
}

bool Cls_Report::Report_Drive_Sections(Report_Printer& printer, Cls_DB& db)
{
    if (No_Printer(printer))
        return false;
    bool ok = false;
    Guarded(kErrDrive_Day, [&] {
        Operation_Graph og(db);
        og.DB_Search_Data(nullptr, Car_Code, Driver_Code, Start_Date);
        og.DB_Search_Data2(nullptr, Car_Code, Driver_Code, Start_Date);
        Report_Page page(printer, M(1132), false);
        const float y = page.Title(M(1132));
        page.Print_Date(y);
        const Pack_System_Page system = Last_System_Page();
        Section_Pages(page, og.Sections, system.machineNumber.trimmed(), system.serialNumber.trimmed(),
                      y + page.Pitch() * 1.3f);
        ok = page.Finish();
    });
    return ok;
}

} // namespace vex
