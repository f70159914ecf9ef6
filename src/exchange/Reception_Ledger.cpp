#include "exchange/Reception_Ledger.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "store/Cls_DB.h"
#include "store/Day_Store.h"
#include "store/DayFile.h"
#include "store/Trip_Columns.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSysInfo>
#include <QUuid>
#include <algorithm>
#include <map>
#include <optional>

namespace vex {

namespace {

constexpr int kTextLedgerLine = 5112;

QString Car_Of(const QString& key) { return key.left(6); }
QString Driver_Of(const QString& key) { return key.mid(6, 6); }
QString Day_Of(const QString& key) { return key.right(6); }

// Cells of two characters, minute m at 2m: hexadecimal speeds or decimal
// tenths of a km; a cell that is no number reads 0.
std::vector<int> Cells(const QString& series, int base)
{
    if (series.size() < 2 * 1440)
        return {};
    std::vector<int> out(1440);
    for (int m = 0; m < 1440; ++m) {
        bool ok = false;
        const int v = series.mid(2 * m, 2).toInt(&ok, base);
        out[size_t(m)] = ok ? v : 0;
    }
    return out;
}

QString First_Text(Cls_DB& db, const QString& sql, const QVariantList& values, const QString& column)
{
    Recordset rs = db.DB_RSet_D_D(sql, values);
    return rs.RecordCount() > 0 ? rs.Text(column) : QString();
}

// What the store knew of the car and its day apart from this reception's days.
void Car_Days(Cls_DB& db, const QString& key, const QSet<QString>& ignoring, Day_Context& c)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT D_F1, D_F3, D_F5, D_F7 FROM D_D1 WHERE LEFT(D_F1,6) = ?"),
                                  {Car_Of(key)});
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        const QString other = rs.Text(trip_col::Key);
        if (other == key || ignoring.contains(other))
            continue;
        const QString day = Day_Of(other);
        if (c.carFirstDay.isEmpty() || day < c.carFirstDay)
            c.carFirstDay = day;
        if (day > c.day)
            c.carHasNewerDays = true;
        if (day == c.day && Driver_Of(other) != c.driver)
            c.neighbours.push_back({Driver_Of(other), rs.Text(trip_col::Start_Time), rs.Text(trip_col::End_Time), {}});
    }
}

// The same key stored before by a reception from another source.
void Earlier_Receptions(Cls_DB& db, const QString& key, const QString& source, Day_Context& c)
{
    Recordset days = db.DB_RSet_D_D(
        QStringLiteral("SELECT D_F2, D_F6, D_F7 FROM X_LEDGER_DAY WHERE D_F3 = ? AND D_F4 = 'stored'"), {key});
    for (days.MoveFirst(); !days.EOF_(); days.MoveNext()) {
        const QString from = First_Text(db, QStringLiteral("SELECT D_F4 FROM X_LEDGER WHERE D_F1 = ?"),
                                        {days.Text(QStringLiteral("D_F2"))}, QStringLiteral("D_F4"));
        if (from.isEmpty() || from == source)
            continue;
        c.neighbours.push_back({c.driver, days.Text(QStringLiteral("D_F6")).mid(6, 4),
                                days.Text(QStringLiteral("D_F7")).mid(6, 4), from});
    }
}

std::optional<Finding_Kind> Kind_Named(const QString& name)
{
    for (int k = 0; k <= int(Finding_Kind::Unknown_Driver); ++k)
        if (Finding_Kind_Name(Finding_Kind(k)) == name)
            return Finding_Kind(k);
    return std::nullopt;
}

QString New_Id()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmsszzz")) + QLatin1Char('-')
           + QUuid::createUuid().toString(QUuid::Id128).left(8);
}

} // namespace

QString Road_Name(Ledger_Road road)
{
    switch (road) {
    case Ledger_Road::Pack: return QStringLiteral("pack");
    case Ledger_Road::Usb: return QStringLiteral("usb");
    case Ledger_Road::Inbox: return QStringLiteral("inbox");
    case Ledger_Road::Import: return QStringLiteral("import");
    case Ledger_Road::Remote: return QStringLiteral("remote");
    }
    return {};
}

int Ledger_Entry::Stored() const
{
    return int(std::count_if(days.begin(), days.end(), [](const Ledger_Day& d) { return d.outcome == QLatin1String("stored"); }));
}

int Ledger_Entry::Stored_With_Findings() const
{
    return int(std::count_if(days.begin(), days.end(), [](const Ledger_Day& d) {
        return d.outcome == QLatin1String("stored") && !d.findings.empty();
    }));
}

std::vector<Ledger_Day> Ledger_Days(const Reception_Outcome& outcome)
{
    std::vector<Ledger_Day> days;
    for (const QString& key : outcome.stored)
        days.push_back({key, QStringLiteral("stored"), {}, {}, {}, {}});
    for (const Cls_IO::Skipped_Day& s : outcome.skipped)
        days.push_back({s.day.toString(QStringLiteral("yyMMdd")), QStringLiteral("skipped"), s.why, {}, {}, {}});
    auto named = [&](const QStringList& lines, const char* what) {
        for (const QString& line : lines) {
            const int colon = line.indexOf(QStringLiteral(": "));
            days.push_back({line.left(colon), QLatin1String(what), colon < 0 ? QString() : line.mid(colon + 2), {}, {}, {}});
        }
    };
    named(outcome.kept, "kept");
    named(outcome.refused, "refused");
    for (const QString& day : outcome.undriven)
        days.push_back({day, QStringLiteral("undriven"), {}, {}, {}, {}});
    return days;
}

std::vector<Ledger_Day> Ledger_Days(const Exchange_Report& report)
{
    std::vector<Ledger_Day> days;
    for (const QString& key : report.trips)
        days.push_back({key, QStringLiteral("stored"), {}, {}, {}, {}});
    for (const QString& line : report.refused) {
        const int colon = line.indexOf(QStringLiteral(": "));
        days.push_back({line.left(colon), QStringLiteral("refused"), colon < 0 ? QString() : line.mid(colon + 2), {}, {}, {}});
    }
    return days;
}

std::vector<Finding> Check_Stored_Day(Cls_DB& db, const QString& key, const QString& source,
                                      const QSet<QString>& ignoring)
{
    Day_Evidence evidence;
    Day_Context context;
    context.day = Day_Of(key);
    context.driver = Driver_Of(key);
    context.today = QDate::currentDate().toString(QStringLiteral("yyMMdd"));

    Recordset trip = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F1 = ?"), {key});
    if (trip.RecordCount() > 0) {
        evidence.startDay = trip.Text(trip_col::Start_Day);
        evidence.startTime = trip.Text(trip_col::Start_Time);
        evidence.endDay = trip.Text(trip_col::End_Day);
        evidence.endTime = trip.Text(trip_col::End_Time);
    }
    const QString speeds = First_Text(db, QStringLiteral("SELECT D_F2 FROM D_D3 WHERE D_F1 = ?"), {key}, QStringLiteral("D_F2"));
    evidence.minuteSpeed = Cells(speeds, 16);
    evidence.minuteTenths = Cells(
        First_Text(db, QStringLiteral("SELECT D_F2 FROM D_D7 WHERE D_F1 = ?"), {key}, QStringLiteral("D_F2")), 10);

    DayFile file;
    const Day_File_Ref ref = Find_Day_File(db, Day_File_Name(Car_Of(key), Driver_Of(key), Day_Of(key)));
    if (ref.Found()) {
        try {
            file = Read_Day_File(db, ref);
            evidence.speed = file.speed;
            evidence.engine = file.engine;
        } catch (const RunTimeError&) {
            // a day file that can't be read is checked by its minutes alone
        }
    }

    Car_Days(db, key, ignoring, context);
    Earlier_Receptions(db, key, source, context);
    if (std::any_of(evidence.minuteSpeed.begin(), evidence.minuteSpeed.end(), [](int v) { return v > 0; })) {
        Recordset same = db.DB_RSet_D_D(
            QStringLiteral("SELECT D_F1 FROM D_D3 WHERE RIGHT(D_F1,6) = ? AND D_F2 = ?"), {context.day, speeds});
        for (same.MoveFirst(); !same.EOF_(); same.MoveNext()) {
            const QString car = Car_Of(same.Text(QStringLiteral("D_F1")));
            if (car != Car_Of(key) && !context.carsWithSameSeries.contains(car))
                context.carsWithSameSeries << car;
        }
    }
    const QString name = First_Text(db, QStringLiteral("SELECT D_F2 FROM S_D2 WHERE D_F1 = ?"), {context.driver},
                                    QStringLiteral("D_F2"))
                             .trimmed();
    context.driverNamed = !name.isEmpty() && name != context.driver;
    return Check_Day(evidence, context);
}

Ledger_Entry Record_Reception(Cls_DB& db, Ledger_Road road, const QString& source, const QString& summary,
                              std::vector<Ledger_Day> days)
{
    Ledger_Entry entry;
    entry.id = New_Id();
    entry.when = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    entry.road = road;
    entry.source = source;
    entry.pc = QSysInfo::machineHostName();
    entry.summary = summary;
    // Looked up for every stored day of every car the entry holds.
    QSet<QString> stored;
    for (const Ledger_Day& d : days)
        if (d.outcome == QLatin1String("stored"))
            stored.insert(d.what);
    for (Ledger_Day& d : days) {
        if (d.outcome != QLatin1String("stored"))
            continue;
        Recordset trip = db.DB_RSet_D_D(QStringLiteral("SELECT D_F4, D_F5, D_F6, D_F7 FROM D_D1 WHERE D_F1 = ?"), {d.what});
        if (trip.RecordCount() > 0) {
            d.first = trip.Text(trip_col::Start_Day) + trip.Text(trip_col::Start_Time);
            d.last = trip.Text(trip_col::End_Day) + trip.Text(trip_col::End_Time);
        }
        d.findings = Check_Stored_Day(db, d.what, source, stored);
    }
    entry.days = std::move(days);

    Cls_DB::Transaction transaction(db);
    db.Execute(QStringLiteral("INSERT INTO X_LEDGER (D_F1, D_F2, D_F3, D_F4, D_F5, D_F6, D_F7) VALUES (?, ?, ?, ?, ?, ?, ?)"),
               {entry.id, entry.when, Road_Name(road), source, entry.pc, QString::number(entry.Stored()), summary});
    int n = 0;
    for (const Ledger_Day& d : entry.days) {
        const QString dayId = entry.id + QStringLiteral("/%1").arg(++n, 4, 10, QLatin1Char('0'));
        db.Execute(QStringLiteral("INSERT INTO X_LEDGER_DAY (D_F1, D_F2, D_F3, D_F4, D_F5, D_F6, D_F7, D_F8) "
                                  "VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
                   {dayId, entry.id, d.what, d.outcome, d.why, d.first, d.last, QString::number(d.findings.size())});
        int k = 0;
        for (const Finding& f : d.findings)
            db.Execute(QStringLiteral("INSERT INTO X_FINDING (D_F1, D_F2, D_F3, D_F4, D_F5, D_F6, D_F7, D_F8) "
                                      "VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
                       {dayId + QStringLiteral("/%1").arg(++k, 4, 10, QLatin1Char('0')), entry.id, d.what, f.second, f.measured,
                        f.reference, Finding_Kind_Name(f.kind), f.other});
    }
    transaction.Commit();
    return entry;
}

std::vector<Finding> Notes_Of_Day(Cls_DB& db, const QString& key)
{
    std::vector<Finding> notes;
    const QString dayId = First_Text(
        db, QStringLiteral("SELECT D_F1 FROM X_LEDGER_DAY WHERE D_F3 = ? AND D_F4 = 'stored' ORDER BY D_F1 DESC"), {key},
        QStringLiteral("D_F1"));
    if (dayId.isEmpty())
        return notes;
    // The day's findings by their key: "<day id>/0001" and on, below "<day id>0"
    // ('0' follows '/').
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM X_FINDING WHERE D_F1 > ? AND D_F1 < ? ORDER BY D_F1"),
                                  {dayId + QLatin1Char('/'), dayId + QLatin1Char('0')});
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        const auto kind = Kind_Named(rs.Text(QStringLiteral("D_F7")));
        if (kind)
            notes.push_back({*kind, rs.Field(QStringLiteral("D_F4")).toInt(), rs.Field(QStringLiteral("D_F5")).toDouble(),
                             rs.Field(QStringLiteral("D_F6")).toDouble(), rs.Text(QStringLiteral("D_F8"))});
    }
    return notes;
}

QString Ledger_Line(const Ledger_Entry& entry)
{
    return LoadResString(kTextLedgerLine).arg(entry.Stored()).arg(entry.Stored_With_Findings());
}

namespace {

bool Day_Passes(const Ledger_Day& d, const Ledger_Filter& f)
{
    const bool keyed = d.outcome == QLatin1String("stored");
    if (!f.car.isEmpty() && (!keyed || Car_Of(d.what) != f.car))
        return false;
    if (!f.driver.isEmpty() && (!keyed || Driver_Of(d.what) != f.driver))
        return false;
    const QString day = keyed ? Day_Of(d.what) : d.what.left(6);
    if (!f.from.isEmpty() && (day.size() != 6 || day < f.from))
        return false;
    if (!f.to.isEmpty() && (day.size() != 6 || day > f.to))
        return false;
    return !(f.findingsOnly || !f.kind.isEmpty()) || !d.findings.empty();
}

} // namespace

std::vector<Ledger_Entry> Read_Ledger(Cls_DB& db, const Ledger_Filter& filter)
{
    std::vector<Ledger_Entry> entries;
    std::map<QString, size_t> byId;
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM X_LEDGER ORDER BY D_F1 DESC"));
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        Ledger_Entry e;
        e.id = rs.Text(QStringLiteral("D_F1"));
        e.when = rs.Text(QStringLiteral("D_F2"));
        const QString road = rs.Text(QStringLiteral("D_F3"));
        for (Ledger_Road r : {Ledger_Road::Pack, Ledger_Road::Usb, Ledger_Road::Inbox, Ledger_Road::Import, Ledger_Road::Remote})
            if (Road_Name(r) == road)
                e.road = r;
        e.source = rs.Text(QStringLiteral("D_F4"));
        e.pc = rs.Text(QStringLiteral("D_F5"));
        e.summary = rs.Text(QStringLiteral("D_F7"));
        byId[e.id] = entries.size();
        entries.push_back(std::move(e));
    }
    std::map<QString, std::pair<size_t, size_t>> dayAt; // day id -> entry, day
    Recordset days = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM X_LEDGER_DAY ORDER BY D_F1"));
    for (days.MoveFirst(); !days.EOF_(); days.MoveNext()) {
        const auto e = byId.find(days.Text(QStringLiteral("D_F2")));
        if (e == byId.end())
            continue;
        Ledger_Entry& entry = entries[e->second];
        const QString dayId = days.Text(QStringLiteral("D_F1"));
        dayAt[dayId] = {e->second, entry.days.size()};
        entry.days.push_back({days.Text(QStringLiteral("D_F3")), days.Text(QStringLiteral("D_F4")),
                              days.Text(QStringLiteral("D_F5")), days.Text(QStringLiteral("D_F6")),
                              days.Text(QStringLiteral("D_F7")), {}});
    }
    Recordset found = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM X_FINDING ORDER BY D_F1"));
    for (found.MoveFirst(); !found.EOF_(); found.MoveNext()) {
        const QString id = found.Text(QStringLiteral("D_F1"));
        const auto at = dayAt.find(id.left(id.lastIndexOf(QLatin1Char('/'))));
        const auto kind = Kind_Named(found.Text(QStringLiteral("D_F7")));
        if (at == dayAt.end() || !kind)
            continue;
        if (!filter.kind.isEmpty() && found.Text(QStringLiteral("D_F7")) != filter.kind)
            continue;
        entries[at->second.first].days[at->second.second].findings.push_back(
            {*kind, found.Field(QStringLiteral("D_F4")).toInt(), found.Field(QStringLiteral("D_F5")).toDouble(),
             found.Field(QStringLiteral("D_F6")).toDouble(), found.Text(QStringLiteral("D_F8"))});
    }
    const bool narrowed = !filter.from.isEmpty() || !filter.to.isEmpty() || !filter.car.isEmpty()
                          || !filter.driver.isEmpty() || !filter.kind.isEmpty() || filter.findingsOnly;
    std::vector<Ledger_Entry> out;
    for (Ledger_Entry& e : entries) {
        std::vector<Ledger_Day> kept;
        for (Ledger_Day& d : e.days)
            if (Day_Passes(d, filter))
                kept.push_back(std::move(d));
        if (narrowed && kept.empty())
            continue;
        e.days = std::move(kept);
        out.push_back(std::move(e));
    }
    return out;
}

} // namespace vex
