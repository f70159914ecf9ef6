#include "exchange/Reception_Ledger.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"
#include "store/Day_Store.h"
#include "store/DayFile.h"
#include "store/Trip_Columns.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
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
        // Two digits, as nearly every cell is; anything else as toInt reads it.
        const QChar a = series[2 * m], b = series[2 * m + 1];
        const int hi = Hex_Digit(a), lo = Hex_Digit(b);
        const int quick = base == 16 ? (hi < 0 || lo < 0 ? -1 : hi * 16 + lo) : Two_Digits(a.unicode(), b.unicode());
        if (quick >= 0) {
            out[size_t(m)] = quick;
            continue;
        }
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

// What a reception's checks look up once: each car's stored trips, each
// driver's name and a day's minute speeds. Read before the ledger writes
// anything, so it stays true for the whole check.
class Ledger_Lookups {
public:
    struct Trip {
        QString key, startDay, startTime, endDay, endTime;
    };
    // ignoring: the keys of the reception itself, which are no earlier
    // knowledge of their car.
    explicit Ledger_Lookups(const QSet<QString>& ignoring) : ignoring_(ignoring) {}

    const Trip* Find(Cls_DB& db, const QString& key)
    {
        Load_Car(db, Car_Of(key));
        const auto it = trips_.constFind(key);
        return it == trips_.constEnd() ? nullptr : &*it;
    }
    // The car's trips that are not the reception's.
    const std::vector<Trip>& Others(Cls_DB& db, const QString& car)
    {
        Load_Car(db, car);
        return others_[car];
    }
    const QString& Driver_Name(Cls_DB& db, const QString& driver)
    {
        auto it = driverNames_.find(driver);
        if (it == driverNames_.end())
            it = driverNames_.insert(driver, First_Text(db, QStringLiteral("SELECT D_F2 FROM S_D2 WHERE D_F1 = ?"),
                                                        {driver}, QStringLiteral("D_F2"))
                                                 .trimmed());
        return *it;
    }
    // A stored day of an earlier reception: its entry, first and last minute.
    struct Earlier {
        QString entry, first, last;
    };
    // The minute distance of a key and its days in earlier receptions, read
    // for many keys at once by Prefetch, else one key at a time.
    QString Distance(Cls_DB& db, const QString& key)
    {
        if (const auto it = distance_.constFind(key); it != distance_.constEnd())
            return *it;
        return First_Text(db, QStringLiteral("SELECT D_F2 FROM D_D7 WHERE D_F1 = ?"), {key}, QStringLiteral("D_F2"));
    }
    std::vector<Earlier> Earlier_Days(Cls_DB& db, const QString& key)
    {
        if (const auto it = earlier_.constFind(key); it != earlier_.constEnd())
            return *it;
        std::vector<Earlier> days;
        Recordset rs = db.DB_RSet_D_D(
            QStringLiteral("SELECT D_F2, D_F6, D_F7 FROM X_LEDGER_DAY WHERE D_F3 = ? AND D_F4 = 'stored'"), {key});
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            days.push_back({rs.Text(QStringLiteral("D_F2")), rs.Text(QStringLiteral("D_F6")), rs.Text(QStringLiteral("D_F7"))});
        return days;
    }
    // Reads both for the keys, a statement a table for up to 200 keys; what
    // was read before goes.
    void Prefetch(Cls_DB& db, const QStringList& keys)
    {
        distance_.clear();
        earlier_.clear();
        constexpr int kKeys = 200;
        for (int from = 0; from < keys.size(); from += kKeys) {
            const QStringList part = keys.mid(from, kKeys);
            QVariantList values;
            for (const QString& k : part) {
                values << k;
                distance_.insert(k, QString());
                earlier_.insert(k, {});
            }
            const QString marks = QStringList(part.size(), QStringLiteral("?")).join(QLatin1Char(','));
            Recordset d = db.DB_RSet_D_D(QStringLiteral("SELECT D_F1, D_F2 FROM D_D7 WHERE D_F1 IN (%1)").arg(marks), values);
            for (d.MoveFirst(); !d.EOF_(); d.MoveNext()) // one row a key: D_F1 is D_D7's key
                distance_.insert(d.Text(QStringLiteral("D_F1")), d.Text(QStringLiteral("D_F2")));
            Recordset e = db.DB_RSet_D_D(
                QStringLiteral("SELECT D_F2, D_F3, D_F6, D_F7 FROM X_LEDGER_DAY WHERE D_F3 IN (%1) AND D_F4 = 'stored'")
                    .arg(marks),
                values);
            for (e.MoveFirst(); !e.EOF_(); e.MoveNext())
                earlier_[e.Text(QStringLiteral("D_F3"))].push_back(
                    {e.Text(QStringLiteral("D_F2")), e.Text(QStringLiteral("D_F6")), e.Text(QStringLiteral("D_F7"))});
        }
    }

    // The minute speeds (key, cells) of every car on a day, the last day
    // asked for kept: the days of a reception are checked in order.
    const std::vector<std::pair<QString, QString>>& Day_Series(Cls_DB& db, const QString& day)
    {
        if (day == seriesDay_ && !seriesDay_.isEmpty())
            return daySeries_;
        daySeries_.clear();
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT D_F1, D_F2 FROM D_D3 WHERE RIGHT(D_F1,6) = ?"), {day});
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
            daySeries_.emplace_back(rs.Text(QStringLiteral("D_F1")), rs.Text(QStringLiteral("D_F2")));
        seriesDay_ = day;
        return daySeries_;
    }

private:
    void Load_Car(Cls_DB& db, const QString& car)
    {
        if (others_.contains(car))
            return;
        std::vector<Trip>& others = others_[car];
        Recordset rs = db.DB_RSet_D_D(
            QStringLiteral("SELECT D_F1, D_F4, D_F5, D_F6, D_F7 FROM D_D1 WHERE LEFT(D_F1,6) = ?"), {car});
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
            Trip t{rs.Text(trip_col::Key), rs.Text(trip_col::Start_Day), rs.Text(trip_col::Start_Time),
                   rs.Text(trip_col::End_Day), rs.Text(trip_col::End_Time)};
            if (!ignoring_.contains(t.key))
                others.push_back(t);
            if (!trips_.contains(t.key))
                trips_.insert(t.key, std::move(t));
        }
    }

    const QSet<QString>& ignoring_;
    QHash<QString, Trip> trips_;
    QHash<QString, std::vector<Trip>> others_;
    QHash<QString, QString> driverNames_;
    QString seriesDay_;
    std::vector<std::pair<QString, QString>> daySeries_;
    QHash<QString, QString> distance_;
    QHash<QString, std::vector<Earlier>> earlier_;
};

// What the store knew of the car and its day apart from this reception's days.
void Car_Days(Cls_DB& db, const QString& key, Day_Context& c, Ledger_Lookups& lookups)
{
    for (const Ledger_Lookups::Trip& t : lookups.Others(db, Car_Of(key))) {
        const QString& other = t.key;
        if (other == key)
            continue;
        const QString day = Day_Of(other);
        if (c.carFirstDay.isEmpty() || day < c.carFirstDay)
            c.carFirstDay = day;
        if (day > c.day)
            c.carHasNewerDays = true;
        if (day == c.day && Driver_Of(other) != c.driver)
            c.neighbours.push_back({Driver_Of(other), t.startTime, t.endTime, {}});
    }
}

// The same key stored before by a reception from another source.
void Earlier_Receptions(Cls_DB& db, const QString& key, const QString& source, Day_Context& c,
                        Ledger_Lookups& lookups)
{
    for (const Ledger_Lookups::Earlier& e : lookups.Earlier_Days(db, key)) {
        const QString from = First_Text(db, QStringLiteral("SELECT D_F4 FROM X_LEDGER WHERE D_F1 = ?"), {e.entry},
                                        QStringLiteral("D_F4"));
        if (from.isEmpty() || from == source)
            continue;
        c.neighbours.push_back({c.driver, e.first.mid(6, 4), e.last.mid(6, 4), from});
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

namespace {

std::vector<Finding> Check_Day_With(Cls_DB& db, const QString& key, const QString& source, Ledger_Lookups& lookups)
{
    Day_Evidence evidence;
    Day_Context context;
    context.day = Day_Of(key);
    context.driver = Driver_Of(key);
    context.today = QDate::currentDate().toString(QStringLiteral("yyMMdd"));

    if (const Ledger_Lookups::Trip* trip = lookups.Find(db, key)) {
        evidence.startDay = trip->startDay;
        evidence.startTime = trip->startTime;
        evidence.endDay = trip->endDay;
        evidence.endTime = trip->endTime;
    }
    const auto& series = lookups.Day_Series(db, context.day);
    const auto own = std::find_if(series.begin(), series.end(), [&](const auto& row) { return row.first == key; });
    const QString speeds = own == series.end() ? QString() : own->second;
    evidence.minuteSpeed = Cells(speeds, 16);
    evidence.minuteTenths = Cells(lookups.Distance(db, key), 10);

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

    Car_Days(db, key, context, lookups);
    Earlier_Receptions(db, key, source, context, lookups);
    if (std::any_of(evidence.minuteSpeed.begin(), evidence.minuteSpeed.end(), [](int v) { return v > 0; })) {
        for (const auto& [other, cells] : series) {
            if (cells != speeds)
                continue;
            const QString car = Car_Of(other);
            if (car != Car_Of(key) && !context.carsWithSameSeries.contains(car))
                context.carsWithSameSeries << car;
        }
    }
    const QString& name = lookups.Driver_Name(db, context.driver);
    context.driverNamed = !name.isEmpty() && name != context.driver;
    return Check_Day(evidence, context);
}

} // namespace

std::vector<Finding> Check_Stored_Day(Cls_DB& db, const QString& key, const QString& source,
                                      const QSet<QString>& ignoring)
{
    Ledger_Lookups lookups(ignoring);
    return Check_Day_With(db, key, source, lookups);
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
    // Checked a day of the calendar after another, so that each day's
    // minute speeds of all cars are read once.
    std::vector<Ledger_Day*> checking;
    for (Ledger_Day& d : days)
        if (d.outcome == QLatin1String("stored"))
            checking.push_back(&d);
    std::stable_sort(checking.begin(), checking.end(),
                     [](const Ledger_Day* a, const Ledger_Day* b) { return Day_Of(a->what) < Day_Of(b->what); });
    Ledger_Lookups lookups(stored);
    for (size_t i = 0; i < checking.size(); ++i) {
        Ledger_Day& d = *checking[i];
        if (i == 0 || Day_Of(d.what) != Day_Of(checking[i - 1]->what)) {
            QStringList sameDay;
            for (size_t j = i; j < checking.size() && Day_Of(checking[j]->what) == Day_Of(d.what); ++j)
                sameDay << checking[j]->what;
            lookups.Prefetch(db, sameDay);
        }
        if (const Ledger_Lookups::Trip* trip = lookups.Find(db, d.what)) {
            d.first = trip->startDay + trip->startTime;
            d.last = trip->endDay + trip->endTime;
        }
        d.findings = Check_Day_With(db, d.what, source, lookups);
    }
    entry.days = std::move(days);

    Cls_DB::Transaction transaction(db);
    // Statements prepared once for the many rows of a large import.
    auto Insert = [&db](const QString& sql, const QVariantList& values) { db.Run_Prepared(sql, values).finish(); };
    Insert(QStringLiteral("INSERT INTO X_LEDGER (D_F1, D_F2, D_F3, D_F4, D_F5, D_F6, D_F7) VALUES (?, ?, ?, ?, ?, ?, ?)"),
               {entry.id, entry.when, Road_Name(road), source, entry.pc, QString::number(entry.Stored()), summary});
    int n = 0;
    for (const Ledger_Day& d : entry.days) {
        const QString dayId = entry.id + QStringLiteral("/%1").arg(++n, 4, 10, QLatin1Char('0'));
        Insert(QStringLiteral("INSERT INTO X_LEDGER_DAY (D_F1, D_F2, D_F3, D_F4, D_F5, D_F6, D_F7, D_F8) "
                                  "VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
                   {dayId, entry.id, d.what, d.outcome, d.why, d.first, d.last, QString::number(d.findings.size())});
        int k = 0;
        for (const Finding& f : d.findings)
            Insert(QStringLiteral("INSERT INTO X_FINDING (D_F1, D_F2, D_F3, D_F4, D_F5, D_F6, D_F7, D_F8) "
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
