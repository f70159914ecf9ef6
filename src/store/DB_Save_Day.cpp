// The summary row of a day and the rows that hang on its key: the full path
// for days with minute series made from second data, the memory pack path
// from the decoded record, and the event rows alone.
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "core/Pack_Day.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"
#include "store/Minute_Series.h"
#include "store/Trip_Columns.h"

namespace vex {

namespace {

constexpr int16_t kErrSave_D_D1 = 1090;
constexpr int16_t kErrSave_D_D1_pack = 1091;
constexpr int16_t kErrSave_D_D2_pack = 1092;
constexpr int16_t kErrSave_D_D3_pack = 1093;
constexpr int16_t kErrSave_D_D5_pack = 1094;
constexpr int16_t kErrSave_D_D1_st = 1095;
constexpr int16_t kErrSave_UD_D2 = 1102;

// A text going into a number column: the engine refuses what isn't a number,
// and so does this, before the engine sees it.
double Number(const QString& text)
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok)
        throw RunTimeError(QStringLiteral("Type mismatch: \"%1\" is no number").arg(text));
    return v;
}

// One row of a series or event table: D_F1 the key, D_F2 the text.
void Save_Text_Row(Cls_DB& db, const QString& table, const QString& key, const QString& text)
{
    Recordset rs = Row_Or_New(db, table, key);
    rs.Set(QStringLiteral("D_F2"), text);
    rs.Update();
    rs.Close();
}

// Event rows of a key; a table without events of this save keeps its row.
void Save_Event_Rows(Cls_DB& db, const QString& key, int16_t idle, const QString& idleData,
                     const QString& brackData, const QString& accelData, int16_t lkEngin,
                     const QString& lkEnginData, const QString& overData)
{
    if (idle > 0)
        Save_Text_Row(db, QStringLiteral("D_DI"), key, idleData);
    if (lkEngin > 0)
        Save_Text_Row(db, QStringLiteral("D_D6"), key, lkEnginData);
    if (!brackData.isEmpty())
        Save_Text_Row(db, QStringLiteral("D_D2"), key, brackData);
    if (!accelData.isEmpty())
        Save_Text_Row(db, QStringLiteral("D_D4"), key, accelData);
    if (!overData.isEmpty())
        Save_Text_Row(db, QStringLiteral("D_D9"), key, overData);
}

// True when any cell of a minute series is above 0.
bool Any_Value(const QString& series)
{
    for (int i = 0; i + 1 < kSeriesChars; i += 2)
        if (Hex_Cell(series, i) > 0)
            return true;
    return false;
}

// The mark as CAL_AVG answers it, for the number column D_F14: an empty
// answer (its handler ran) is refused like any other text that isn't a number.
double Mark(Cls_DB& db, int16_t o, float a, float b, int16_t i, int16_t l, float d)
{
    return Number(db.CAL_AVG(o, a, b, i, l, d));
}

// A car with a standard speed of its own (S_D1.D_F10 above 0) leaves it in
// the configuration's B_Val3: the day being saved has already taken the
// limit as it stood, the saves after it take the car's. The system has always
// worked so, and the overspeed counts of a reception of several cars rest on
// that order; B_Val3 comes back when the standards are read again. True when
// the car has its register row.
bool Leave_Car_Speed_In_Standards(Cls_DB& db, const QString& car, Cls_Config& standards)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car});
    const bool known = rs.RecordCount() > 0;
    if (known) {
        const QVariant own = rs.Field(QStringLiteral("D_F10"));
        if (!own.isNull() && !own.toString().isEmpty() && Val(own.toString()) > 0)
            standards.B_Val3 = int16_t(Val(own.toString()));
    }
    rs.Close();
    return known;
}

} // namespace

int16_t Cls_DB::DB_Save_D_D1(QString& car, QString& driver, QString& secData, QString& day, int32_t& acceleration,
                             int32_t& brack, int16_t& idle, QString& idleData, QString& brackData, QString& accelData,
                             int16_t& lkEngin, QString& lkEnginData, QString& rpmData)
{
    int16_t flag = 0;
    Guarded(kErrSave_D_D1, [&] {
        Cls_Config& cfg = *G().Config;

        // 1-2. The engine series decides start and end when it has any value,
        // else the speed series; a day without either writes nothing.
        const bool engine = Any_Value(rpmData);
        const bool speed = Any_Value(secData);
        if (!engine && !speed)
            return;
        const QString& deciding = engine ? rpmData : secData;

        // 3. First and last minute with a value.
        int first = 0;
        while (first < kDayMinutes && Hex_Cell(deciding, 2 * first) == 0)
            ++first;
        int last = kDayMinutes - 1;
        while (last > 0 && Hex_Cell(deciding, 2 * last) == 0)
            --last;
        const QString startTime = Minute_Time(first);
        const QString endTime = Minute_Time(last);

        // 4. The day is counted against the standard speed as it stands.
        const int limit = cfg.B_Val3;
        const bool carKnown = Leave_Car_Speed_In_Standards(*this, car, cfg);

        // 5. Overspeed minutes, their bands and their list.
        const Overspeed_Minutes over = Count_Overspeed_Minutes(secData, limit);

        // 6. Distance: the sum of the minute distance cells already stored.
        float distance = 0;
        Recordset d7 = DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D7 WHERE D_F1=?"), {car + driver + day});
        if (d7.RecordCount() > 0)
            distance = float(Sum_Distance_Cells(d7.Text(QStringLiteral("D_F2"))));
        d7.Close();

        // 7. The summary row, every column of it.
        const QString key = car + driver + day;
        Recordset rs = Row_Or_New(*this, QStringLiteral("D_D1"), key);
        rs.Set(trip_col::Car, car);
        rs.Set(trip_col::Driver, driver);
        rs.Set(trip_col::Start_Day, day);
        rs.Set(trip_col::Start_Time, startTime);
        rs.Set(trip_col::End_Day, day);
        rs.Set(trip_col::End_Time, endTime);
        rs.Set(trip_col::Distance, double(distance));
        rs.Set(trip_col::Accelerations, acceleration);
        rs.Set(trip_col::Brakes, brack);
        rs.Set(trip_col::Overspeed_Minutes, over.count);
        rs.Set(trip_col::Idles, idle);
        rs.Set(trip_col::Long_Overspeeds, lkEngin);
        rs.Set(trip_col::Mark,
               Mark(*this, over.count, float(acceleration), float(brack), idle, lkEngin, distance));
        rs.Set(trip_col::Over_Band1, over.band1);
        rs.Set(trip_col::Over_Band2, over.band2);
        rs.Set(trip_col::Over_Band3, over.band3);
        rs.Update();
        rs.Close();

        // 8. Cars and drivers register themselves at first sight.
        if (!carKnown)
            Register_Car(car, cfg.B_Val3, QStringLiteral("250"));
        Register_Driver(driver);

        // 9. The series, replaced whole.
        Save_Text_Row(*this, QStringLiteral("D_D3"), key, secData);
        Save_Text_Row(*this, QStringLiteral("D_D8"), key, rpmData);

        // 10. Event rows, only where this save has events.
        Save_Event_Rows(*this, key, idle, idleData, brackData, accelData, lkEngin, lkEnginData, over.list);
        flag = -1;
    });
    return flag;
}

int16_t Cls_DB::DB_Save_D_D1_pack(const Pack_Day& day)
{
    return Saved(kErrSave_D_D1_pack, [&] {
        Recordset rs = Row_Or_New(*this, QStringLiteral("D_D1"), day.Key());
        rs.Set(trip_col::Car, day.car);
        rs.Set(trip_col::Driver, day.driver);
        rs.Set(trip_col::Start_Day, day.startDay);
        rs.Set(trip_col::Start_Time, day.startTime);
        rs.Set(trip_col::End_Day, day.endDay);
        rs.Set(trip_col::End_Time, day.endTime);
        rs.Set(trip_col::Distance, double(day.distance));
        rs.Set(trip_col::Accelerations, double(day.accelerations));
        rs.Set(trip_col::Brakes, double(day.brakes));
        rs.Set(trip_col::Overspeed_Minutes, day.overspeedMinutes);
        rs.Set(trip_col::Idles, 0);
        const auto longOver = int16_t(day.Stored_Long_Overspeeds());
        rs.Set(trip_col::Long_Overspeeds, double(longOver));
        rs.Set(trip_col::Mark, Mark(*this, day.overspeedMinutes, float(day.accelerations),
                                             float(day.brakes), 0, longOver, float(day.distance)));
        rs.Update();
        rs.Close();
    });
}

int16_t Cls_DB::DB_Save_D_D2_pack(const Pack_Day& day)
{
    return Saved(kErrSave_D_D2_pack, [&] {
        Recordset rs = Row_Or_New(*this, QStringLiteral("D_D2"), day.Key());
        rs.Set(QStringLiteral("D_F2"), day.brakeRecords);
        rs.Set(QStringLiteral("D_F3"), day.brakeBuffer);
        rs.Set(QStringLiteral("D_F4"), day.brakeTimes);
        rs.Update();
        rs.Close();
    });
}

int16_t Cls_DB::DB_Save_D_D3_pack(const Pack_Day& day)
{
    return Saved(kErrSave_D_D3_pack, [&] {
        Save_Text_Row(*this, QStringLiteral("D_D3"), day.Key(), day.speed);
        Save_Text_Row(*this, QStringLiteral("D_D6"), day.Key(), day.longOverspeedRecords);
    });
}

int16_t Cls_DB::DB_Save_D_D5_pack(const Pack_Day& day)
{
    int16_t flag = 0;
    Guarded(kErrSave_D_D5_pack, [&] {
        // A pack distance byte carries a flag in its first digit (8 added);
        // the stored series holds plain tenths of a kilometre.
        QString series = day.distanceSeries;
        if (series.size() == kSeriesChars)
            Clear_Pack_Distance_Flags(series);
        Save_Text_Row(*this, QStringLiteral("D_D7"), day.Key(), series);
        flag = -1;
    });
    return flag;
}

int16_t Cls_DB::DB_Save_D_D1_st(const QString& key, int16_t idle, const QString& idleData, const QString& brackData,
                                const QString& accelData, int16_t lkEngin, const QString& lkEnginData,
                                const QString& overData)
{
    return Saved(kErrSave_D_D1_st, [&] {
        Save_Event_Rows(*this, key, idle, idleData, brackData, accelData, lkEngin, lkEnginData, overData);
    });
}

int16_t Cls_DB::DB_Save_UD_D2(QString& car, QString& driver, QString& type, QString& day, QString& list)
{
    int16_t flag = 0;
    Guarded(kErrSave_UD_D2, [&] {
        const bool brake = type == QLatin1String("55");
        if (brake && list.size() < 10) {
            flag = -1;
            return;
        }
        const QString key = car + driver + day;
        Recordset rs = DB_RSet_D_D(brake ? QStringLiteral("SELECT * FROM D_D2 WHERE D_F1=?")
                                         : QStringLiteral("SELECT * FROM D_D4 WHERE D_F1=?"),
                                   {key});
        if (rs.RecordCount() < 1) {
            rs.AddNew();
            rs.Set(QStringLiteral("D_F1"), key);
            rs.Set(QStringLiteral("D_F2"), list);
        } else if (rs.Field(QStringLiteral("D_F2")).isNull()) {
            rs.Set(QStringLiteral("D_F2"), list);
        } else {
            // A time already stored is never added again, so a merge of the
            // same records twice changes nothing.
            QString merged = rs.Text(QStringLiteral("D_F2"));
            for (int i = 0; i < list.size(); i += 10) {
                const QString record = list.mid(i, 10);
                if (!merged.contains(record.left(6)))
                    merged += record;
            }
            rs.Set(QStringLiteral("D_F2"), merged);
        }
        rs.Update();
        rs.Close();
        flag = -1;
    });
    return flag;
}

} // namespace vex
