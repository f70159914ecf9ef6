// Sample packs and the driving days behind them: the pages must hold what a
// decoder expects of a healthy pack, and each kind of damage must touch
// exactly its own fields.
#include "samples/DrivingProfile.h"
#include "acquisition/PackLayout.h"
#include "samples/PackSampler.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace vex;

namespace {

const QDate kFirst(2024, 3, 11);

PackSampleRequest Request(QList<PackDamage> damage = {})
{
    PackSampleRequest r;
    r.car = "1234";
    r.driver = "0042";
    r.first = kFirst;
    r.days = 3;
    r.seed = 7;
    r.damage = damage;
    return r;
}

PackSample Make(const PackSampleRequest& r)
{
    QString error;
    auto s = Make_Sample_Pack(r, &error);
    if (!s)
        ADD_FAILURE() << error.toStdString();
    return s ? *s : PackSample{};
}

const PackSample& Clean()
{
    static const PackSample s = Make(Request());
    return s;
}

QString Day_Text(const PackImage& im, const QDate& d) { return im.Read_Hex(Date_Addresses(d)->day); }
QString Dist_Text(const PackImage& im, const QDate& d) { return im.Read_Hex(Date_Addresses(d)->distance); }
QString Third_Text(const PackImage& im, const QDate& d) { return im.Read_Hex(Date_Addresses(d)->third); }
QString Sys_Text(const PackImage& im) { return im.Read_Hex(kSystemPageAddress); }

int Num(const QString& digits)
{
    bool ok = false;
    const int v = digits.toInt(&ok, 10);
    EXPECT_TRUE(ok) << "not decimal: " << digits.toStdString();
    return v;
}

bool Decimal(const QString& s)
{
    return std::all_of(s.begin(), s.end(), [](QChar c) { return c.isDigit(); });
}

int Cell_Value(const QString& series, int minute, int base = 16)
{
    return series.mid(2 * minute, 2).toInt(nullptr, base);
}

// Tenths of a km of a distance cell, the flag bit taken off; -1 when the cell
// isn't two decimal digits.
int Dist_Cell(const QString& series, int minute)
{
    const QString c = series.mid(2 * minute, 2);
    const int hi = QString(c[0]).toInt(nullptr, 16), lo = QString(c[1]).toInt(nullptr, 16);
    if (hi > 9 || lo > 9)
        return -1;
    return (hi >= 8 ? hi - 8 : hi) * 10 + lo;
}

int Minute_Of(const QString& hhmm) { return Num(hhmm.left(2)) * 60 + Num(hhmm.mid(2)); }

// Fields of every page of the request's days and of the system page that
// differ between two images, as "YYMMDD page field" or "system field".
QStringList Changed_Fields(const PackImage& a, const PackImage& b)
{
    QStringList out;
    auto compare = [&](const QString& where, const QString& x, const QString& y, const auto& fields) {
        for (const Field& f : fields)
            if (PageText(x).field(f) != PageText(y).field(f))
                out << where + " " + QLatin1String(f.name) + (QLatin1String(f.name) == QLatin1String("reserved")
                                                                   ? QString::number(f.column)
                                                                   : QString());
    };
    for (int i = 0; i < 3; ++i) {
        const QDate d = kFirst.addDays(i);
        const QString tag = d.toString("yyMMdd");
        compare(tag + " day", Day_Text(a, d), Day_Text(b, d), DayPage::kFields);
        compare(tag + " distance", Dist_Text(a, d), Dist_Text(b, d), DistPage::kFields);
        compare(tag + " third", Third_Text(a, d), Third_Text(b, d), DistPage::kFields);
    }
    compare(QStringLiteral("system"), Sys_Text(a), Sys_Text(b), SysPage::kFields);
    // Nothing else of the image may move.
    std::set<std::pair<int, int>> pages{{0, 0}};
    for (int i = 0; i < 3; ++i) {
        const auto at = *Date_Addresses(kFirst.addDays(i));
        pages.insert({at.day.bank, at.day.page});
        pages.insert({at.distance.bank, at.distance.page});
        pages.insert({at.third.bank, at.third.page});
    }
    for (int i = 0; i < PackImage::kBytes; ++i) {
        const int page = i / PackImage::kPageBytes;
        if (a.Bytes()[i] != b.Bytes()[i] && !pages.count({page / PackImage::kPages, page % PackImage::kPages})) {
            out << QStringLiteral("byte %1").arg(i);
            break;
        }
    }
    return out;
}

} // namespace

TEST(PackSampler, ACleanPackHoldsConsistentDays)
{
    const PackSample& s = Clean();
    ASSERT_EQ(s.days.size(), 3);
    int totalTenths = 0;
    for (const PackSampleDay& day : s.days) {
        SCOPED_TRACE(day.date.toString().toStdString());
        const PageText p(Day_Text(s.image, day.date));
        ASSERT_EQ(p.size(), kPageChars);
        EXPECT_EQ(p.field(DayPage::CheckPack), "AA");
        EXPECT_EQ(p.field(DayPage::CheckPack1), "AA");
        EXPECT_EQ(p.field(DayPage::CarCode), "1234");
        EXPECT_EQ(p.field(DayPage::DriveCode), "0042");
        EXPECT_EQ(p.field(DayPage::StartDay), day.date.toString("yyMMdd"));
        EXPECT_EQ(p.field(DayPage::EndDay), day.date.toString("yyMMdd"));
        EXPECT_TRUE(QDate::fromString("20" + p.field(DayPage::StartDay), "yyyyMMdd").isValid());

        // The speed series: clean bytes, and the times are its first and last minute with speed.
        const QString speed = p.field(DayPage::Sec_Data);
        int first = -1, last = -1;
        for (int m = 0; m < 1440; ++m) {
            const int v = Cell_Value(speed, m);
            EXPECT_LT(v, 150) << "minute " << m;
            if (v > 0) {
                last = m;
                if (first < 0)
                    first = m;
            }
        }
        EXPECT_EQ(Minute_Of(p.field(DayPage::StartTime)), first);
        EXPECT_EQ(Minute_Of(p.field(DayPage::EndTime)), last);
        EXPECT_EQ(day.startMinute, first);
        EXPECT_GE(first, 6 * 60);
        EXPECT_LE(first, 9 * 60 + 30);
        EXPECT_LT(last, 22 * 60);

        // The distance page: same day, decimal cells adding up to Distance,
        // no minute farther than its highest speed allows (one tenth of carry).
        const PageText dp(Dist_Text(s.image, day.date));
        EXPECT_EQ(dp.field(DistPage::CheckPack), "AA");
        EXPECT_EQ(dp.field(DistPage::CheckPack1), "AA");
        EXPECT_EQ(dp.field(DistPage::StartDay), p.field(DayPage::StartDay));
        const QString dist = dp.field(DistPage::Sec_Data);
        int sum = 0;
        for (int m = 0; m < 1440; ++m) {
            const int tenths = Dist_Cell(dist, m);
            ASSERT_GE(tenths, 0) << "minute " << m;
            EXPECT_LE(tenths * 6, Cell_Value(speed, m) + 6) << "minute " << m;
            sum += tenths;
        }
        EXPECT_EQ(sum, Num(p.field(DayPage::Distance)));
        EXPECT_EQ(sum, day.distanceTenths);
        EXPECT_GT(sum, 500);
        EXPECT_LT(sum, 6000);
        EXPECT_EQ(Num(p.field(DayPage::LastDistance)), totalTenths);
        totalTenths += sum;
        int bands = 0;
        for (int b = 0; b < 12; ++b)
            bands += Num(p.field(DayPage::Speed_Dist_Data).mid(6 * b, 6));
        EXPECT_LE(bands, sum);
        EXPECT_GE(bands, sum - 12);

        // Quick brakes: Brack records of real falls, the rest of the field zeros.
        const QString brakes = p.field(DayPage::Brack_Data);
        const int count = Num(p.field(DayPage::Brack));
        EXPECT_EQ(count, day.brakes);
        EXPECT_GE(count, 1);
        for (int k = 0; k < 10; ++k) {
            const QString rec = brakes.mid(10 * k, 10);
            if (k >= count) {
                EXPECT_EQ(rec, "0000000000");
                continue;
            }
            EXPECT_TRUE(Decimal(rec.left(6))) << rec.toStdString();
            const int at = Minute_Of(rec.left(4));
            EXPECT_GE(at, first);
            EXPECT_LE(at, last);
            const int before = rec.mid(6, 2).toInt(nullptr, 16), after = rec.mid(8, 2).toInt(nullptr, 16);
            EXPECT_GE(before - after, 9) << rec.toStdString();
            EXPECT_LE(before, 140);
            // The first four brakes have a buffer and the time MMDDHHMMSS.
            const QString time = p.field(DayPage::Brack_Time_Data).mid(10 * k, 10);
            if (k < 4)
                EXPECT_EQ(time, day.date.toString("MMdd") + rec.left(6));
        }
        if (count < 4)
            EXPECT_EQ(p.field(DayPage::Brack_Time_Data).mid(10 * count), QString(10 * (4 - count), '0'));
        EXPECT_EQ(Num(p.field(DayPage::Acceleration)), day.accelerations);
        EXPECT_GE(day.accelerations, 1);
        EXPECT_TRUE(Decimal(p.field(DayPage::Engin)));
        EXPECT_EQ(p.field(DayPage::Reserved79), "0000");
    }

    // The system page: a normal pack, never read, its stamps in order.
    const PageText sys(Sys_Text(s.image));
    EXPECT_EQ(sys.field(SysPage::SysCheckPack), "AA");
    EXPECT_EQ(sys.field(SysPage::SysCheckPack1), "AA");
    EXPECT_EQ(sys.field(SysPage::SysCarCode), "1234");
    EXPECT_EQ(sys.field(SysPage::SysDriveCode), "0042");
    EXPECT_EQ(sys.field(SysPage::SysDBWriteDate), "FFFFFFFFFF");
    const QString firstStart = PageText(Day_Text(s.image, kFirst)).field(DayPage::StartDay) +
                               PageText(Day_Text(s.image, kFirst)).field(DayPage::StartTime);
    const PageText lastDay(Day_Text(s.image, kFirst.addDays(2)));
    const QString lastEnd = lastDay.field(DayPage::EndDay) + lastDay.field(DayPage::EndTime);
    EXPECT_LT(sys.field(SysPage::SysWarehouse) + "2359", sys.field(SysPage::SysPackInsert));
    EXPECT_LT(sys.field(SysPage::SysPackInsert), firstStart);
    EXPECT_GE(sys.field(SysPage::SysPackLastWrite), lastEnd);
    EXPECT_EQ(sys.field(SysPage::SysPackLastWrite).left(6), lastDay.field(DayPage::EndDay));
    EXPECT_TRUE(Decimal(sys.field(SysPage::SysPackInsert) + sys.field(SysPage::SysPackLastWrite)));
    EXPECT_EQ(Num(sys.field(SysPage::SysTotalDistance)), totalTenths);

    // The codes at bank 0E, high byte first; the older places stay erased.
    EXPECT_EQ(s.image.Byte(0x0E, 0x01, 0x07E0), 0x12);
    EXPECT_EQ(s.image.Byte(0x0E, 0x01, 0x07E1), 0x34);
    EXPECT_EQ(s.image.Byte(0x0E, 0x01, 0x07E2), 0x00);
    EXPECT_EQ(s.image.Byte(0x0E, 0x01, 0x07E3), 0x42);
    EXPECT_EQ(s.image.Byte(0x0E, 0x00, 0x0002), 0xFF);
    // A day after the last stays erased.
    EXPECT_EQ(Day_Text(s.image, kFirst.addDays(3)), QString(kPageChars, QLatin1Char('F')));
}

TEST(PackSampler, TheSameSeedGivesTheSameBytes)
{
    EXPECT_EQ(Make(Request()).image.Bytes(), Clean().image.Bytes());
    PackSampleRequest other = Request();
    other.seed = 8;
    EXPECT_NE(Make(other).image.Bytes(), Clean().image.Bytes());
    other = Request();
    other.car = "1235"; // another car drives another day
    EXPECT_NE(PageText(Day_Text(Make(other).image, kFirst)).field(DayPage::Sec_Data),
              PageText(Day_Text(Clean().image, kFirst)).field(DayPage::Sec_Data));
}

TEST(PackSampler, EachDamageTouchesOnlyItsFields)
{
    const QDate hit = kFirst.addDays(1); // the first kind goes to the second day
    const QString tag = hit.toString("yyMMdd") + " ";
    const PageText clean(Day_Text(Clean().image, hit));
    const QString cleanSpeed = clean.field(DayPage::Sec_Data);
    const QString cleanDist = PageText(Dist_Text(Clean().image, hit)).field(DistPage::Sec_Data);

    const std::map<PackDamage, QStringList> expected{
        {PackDamage::BadDate, {tag + "day StartDay", tag + "day EndDay"}},
        {PackDamage::BadCheck, {tag + "day CheckPack1"}},
        {PackDamage::GarbageSpeed, {tag + "day Sec_Data", tag + "distance Sec_Data"}},
        {PackDamage::NoisySpeed, {tag + "day Sec_Data"}},
        {PackDamage::BadDistanceStart, {tag + "distance StartDay", tag + "distance EndDay"}},
        {PackDamage::BadTime, {tag + "day StartTime", tag + "day EndTime"}},
        {PackDamage::BadDistance, {tag + "day Distance"}},
        {PackDamage::BadCounts, {tag + "day Acceleration", tag + "day Brack", tag + "day reserved79"}},
        {PackDamage::BadBrakeRecords, {tag + "day Brack", tag + "day Brack_Data"}},
        {PackDamage::BadStamps, {"system SysPackInsert", "system SysPackLastWrite"}},
    };
    for (const PackDamageInfo& info : Pack_Damage_Kinds()) {
        SCOPED_TRACE(info.name);
        const PackSample s = Make(Request({info.kind}));
        const PageText p(Day_Text(s.image, hit));
        const QStringList changed = Changed_Fields(Clean().image, s.image);
        if (info.kind != PackDamage::ErasedPage) {
            ASSERT_TRUE(expected.count(info.kind));
            EXPECT_EQ(changed, expected.at(info.kind));
        }
        if (info.kind != PackDamage::BadStamps) {
            EXPECT_EQ(s.days[1].damage, QStringList{QLatin1String(info.name)});
        }

        switch (info.kind) {
        case PackDamage::ErasedPage:
            EXPECT_EQ(p.text(), QString(kPageChars, QLatin1Char('F')));
            for (const QString& c : changed)
                EXPECT_TRUE(c.startsWith(tag + "day ")) << c.toStdString();
            break;
        case PackDamage::BadDate:
            EXPECT_EQ(p.field(DayPage::StartDay).mid(2, 2), "13");
            EXPECT_FALSE(Decimal(p.field(DayPage::EndDay)));
            break;
        case PackDamage::BadCheck:
            EXPECT_EQ(p.field(DayPage::CheckPack1), "55");
            break;
        case PackDamage::GarbageSpeed: {
            const QString speed = p.field(DayPage::Sec_Data);
            const QString dist = PageText(Dist_Text(s.image, hit)).field(DistPage::Sec_Data);
            int speedCells = 0, distCells = 0, above150 = 0;
            for (int m = 0; m < 1440; ++m) {
                if (Cell_Value(speed, m) > 150)
                    ++above150;
                if (speed.mid(2 * m, 2) != cleanSpeed.mid(2 * m, 2)) {
                    ++speedCells;
                    EXPECT_GE(Cell_Value(speed, m), 150);
                    EXPECT_GT(Cell_Value(cleanSpeed, m), 0); // in a driving minute
                }
                if (dist.mid(2 * m, 2) != cleanDist.mid(2 * m, 2)) {
                    ++distCells;
                    EXPECT_EQ(Dist_Cell(dist, m), -1);
                    EXPECT_EQ(speed.mid(2 * m, 2), cleanSpeed.mid(2 * m, 2)); // its speed intact
                }
            }
            EXPECT_EQ(speedCells, 12);
            EXPECT_EQ(distCells, 8);
            EXPECT_LE(above150, 40); // not enough to call the series garbage
            break;
        }
        case PackDamage::NoisySpeed: {
            int above150 = 0;
            for (int m = 0; m < 1440; ++m)
                above150 += Cell_Value(p.field(DayPage::Sec_Data), m) > 150;
            EXPECT_GT(above150, 40);
            break;
        }
        case PackDamage::BadDistanceStart:
            EXPECT_EQ(PageText(Dist_Text(s.image, hit)).field(DistPage::StartDay), "240212");
            break;
        case PackDamage::BadTime:
            EXPECT_FALSE(Decimal(p.field(DayPage::StartTime)));
            EXPECT_LT(p.field(DayPage::EndTime), clean.field(DayPage::StartTime));
            break;
        case PackDamage::BadDistance:
            EXPECT_GT(Num(p.field(DayPage::Distance)), 10000);
            break;
        case PackDamage::BadCounts:
            EXPECT_GT(Num(p.field(DayPage::Acceleration)), 300);
            EXPECT_FALSE(Decimal(p.field(DayPage::Brack)));
            EXPECT_FALSE(Decimal(p.field(DayPage::Reserved79)));
            break;
        case PackDamage::BadBrakeRecords: {
            // Under the decoder's filter exactly the recorded brakes remain.
            const QString recs = p.field(DayPage::Brack_Data);
            int kept = 0;
            for (int k = 0; k < 10; ++k) {
                const QString r = recs.mid(10 * k, 10);
                const int a = r.mid(6, 2).toInt(nullptr, 16), b = r.mid(8, 2).toInt(nullptr, 16);
                kept += Decimal(r.left(6)) && a != 0 && a <= 140 && b <= 140;
            }
            EXPECT_EQ(kept, std::min(Num(clean.field(DayPage::Brack)), 7));
            EXPECT_EQ(Num(p.field(DayPage::Brack)), Num(clean.field(DayPage::Brack)) + 3);
            break;
        }
        case PackDamage::BadStamps: {
            const PageText sys(Sys_Text(s.image));
            EXPECT_EQ(sys.field(SysPage::SysPackInsert).mid(6), "2561");
            EXPECT_EQ(sys.field(SysPage::SysPackLastWrite).mid(2, 2), "13");
            break;
        }
        }
    }

    // Several kinds go to the days in turn, from the second on.
    const PackSample two = Make(Request({PackDamage::BadTime, PackDamage::BadDate, PackDamage::BadTime}));
    EXPECT_EQ(two.days[0].damage, QStringList());
    EXPECT_EQ(two.days[1].damage, QStringList{"bad-time"});
    EXPECT_EQ(two.days[2].damage, QStringList{"bad-date"});
}

TEST(PackSampler, BadRequestsAreRefusedWithAReason)
{
    auto reason = [](auto change) {
        PackSampleRequest r = Request();
        change(r);
        QString error;
        EXPECT_FALSE(Make_Sample_Pack(r, &error));
        return error;
    };
    EXPECT_TRUE(reason([](auto& r) { r.car = "123"; }).contains("car"));
    EXPECT_TRUE(reason([](auto& r) { r.driver = "00G2"; }).contains("driver"));
    EXPECT_TRUE(reason([](auto& r) { r.days = 32; }).contains("1 to 31"));
    EXPECT_TRUE(reason([](auto& r) { r.days = 0; }).contains("1 to 31"));
    EXPECT_TRUE(reason([](auto& r) { r.first = QDate(); }).contains("date"));
    EXPECT_TRUE(reason([](auto& r) { r.cyclesDir = "/no/such/folder"; }).contains("udds.csv"));
}

TEST(PackSampler, ALongSpanOverwritesTheDistancePagesOfAShortMonth)
{
    PackSampleRequest r = Request();
    r.first = QDate(2024, 2, 1);
    r.days = 31; // February 1 .. March 2
    const PackSample s = Make(r);
    ASSERT_EQ(s.days.size(), 31);
    EXPECT_TRUE(s.days[0].pagesOverwritten);
    EXPECT_TRUE(s.days[1].pagesOverwritten);
    EXPECT_FALSE(s.days[2].pagesOverwritten);
    EXPECT_FALSE(s.days[30].pagesOverwritten);
    EXPECT_EQ(PageText(Dist_Text(s.image, QDate(2024, 2, 1))).field(DistPage::StartDay), "240301");
    EXPECT_EQ(PageText(Day_Text(s.image, QDate(2024, 2, 1))).field(DayPage::StartDay), "240201");
}

TEST(DrivingProfile, CycleFilesAreCheckedLineByLine)
{
    QTemporaryDir dir;
    auto write = [&](const QString& name, const QByteArray& text) {
        QFile f(dir.filePath(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
        return dir.filePath(name);
    };
    QString error;
    const auto good = Load_Cycle(write("good.csv", "t_s,speed_kmh\r\n0,0\r\n1,3.6\r\n2,7.25\r\n"), &error);
    ASSERT_TRUE(good) << error.toStdString();
    EXPECT_EQ(good->name, "good");
    EXPECT_EQ(good->speedKmh, (std::vector<double>{0, 3.6, 7.25}));

    const std::pair<QByteArray, QString> bad[] = {
        {"", "header"},
        {"time,speed\n0,0\n", "line 1"},
        {"t_s,speed_kmh\n0,0\n2,5\n", "line 3"},
        {"t_s,speed_kmh\n0,0\n1,-1\n", "line 3"},
        {"t_s,speed_kmh\n0,0\n1,300\n", "line 3"},
        {"t_s,speed_kmh\n0,0\n1,fast\n", "line 3"},
        {"t_s,speed_kmh\n0,0,1\n", "line 2"},
        {"t_s,speed_kmh\n0,0\n", "no samples"},
    };
    for (const auto& [text, where] : bad) {
        error.clear();
        const QString path = write("bad.csv", text);
        EXPECT_FALSE(Load_Cycle(path, &error)) << text.toStdString();
        EXPECT_TRUE(error.startsWith(path) && error.contains(where)) << error.toStdString();
    }
    EXPECT_FALSE(Load_Cycle(dir.filePath("missing.csv"), &error));
    EXPECT_TRUE(error.contains("missing.csv"));

    // The built-in copies unless VEX_CYCLES_DIR names a folder.
    const QByteArray saved = qgetenv("VEX_CYCLES_DIR");
    qunsetenv("VEX_CYCLES_DIR");
    EXPECT_EQ(Default_Cycles_Dir(), ":/cycles");
    ASSERT_TRUE(CycleSet::Load(QString()));
    qputenv("VEX_CYCLES_DIR", dir.path().toUtf8());
    EXPECT_EQ(Default_Cycles_Dir(), dir.path());
    EXPECT_FALSE(CycleSet::Load(QString(), &error));
    EXPECT_TRUE(error.contains("udds.csv"));
    if (saved.isEmpty())
        qunsetenv("VEX_CYCLES_DIR");
    else
        qputenv("VEX_CYCLES_DIR", saved);
}

TEST(DrivingProfile, AWorkingDayIsPlausibleSecondBySecond)
{
    // The recorder's engine byte is 170 rpm: idle and cruising by hand.
    EXPECT_EQ(Engine_Byte(700), 4);
    EXPECT_EQ(Engine_Byte(2000), 12);
    EXPECT_EQ(Engine_Byte(0), 0);
    EXPECT_EQ(Engine_Byte(60000), 254);
    const auto cycles = CycleSet::Load(":/cycles");
    ASSERT_TRUE(cycles);
    for (int i = 0; i < 4; ++i) {
        const QDate date = kFirst.addDays(i);
        SCOPED_TRACE(date.toString().toStdString());
        const DrivingDay d = Build_Driving_Day(*cycles, date, 11);
        ASSERT_EQ(d.seconds.size(), size_t(DrivingDay::kSeconds));
        int firstEngine = -1, lastEngine = -1, rises = 0, falls = 0, longestIdle = 0, idle = 0, previous = 0;
        double sum = 0;
        for (int t = 0; t < DrivingDay::kSeconds; ++t) {
            const DriveSecond& s = d.seconds[size_t(t)];
            if (!s.engineOn) {
                EXPECT_EQ(s.speed, 0);
                EXPECT_EQ(s.rpm, 0);
            } else {
                if (firstEngine < 0)
                    firstEngine = t;
                lastEngine = t;
                EXPECT_GE(s.rpm, 650);
                EXPECT_LE(s.rpm, 4500);
                // As the office reads the recorder's byte: byte x 4.25 x 40.
                const double shown = Engine_Byte(s.rpm) * 4.25 * 40;
                if (s.speed == 0)
                    EXPECT_NEAR(shown, 700, 100) << t;
                else if (s.speed >= 50 && s.speed <= 90)
                    EXPECT_TRUE(shown >= 1500 && shown <= 2600) << t << " " << s.speed << " " << shown;
            }
            EXPECT_LE(s.speed, 140);
            rises += s.speed - previous >= 8;
            falls += previous - s.speed >= 9;
            idle = s.engineOn && s.speed == 0 ? idle + 1 : 0;
            longestIdle = std::max(longestIdle, idle);
            sum += s.speed / 3600.0;
            EXPECT_NEAR(s.distanceKm, sum, 1e-6);
            previous = s.speed;
        }
        EXPECT_GE(firstEngine, 6 * 3600);
        EXPECT_LE(firstEngine, 9 * 3600);
        EXPECT_LT(lastEngine, 22 * 3600);
        EXPECT_GT(longestIdle, 5 * 60); // a wait long enough to count as idling
        EXPECT_GT(sum, 50);
        // The harsh events are those laid on top, and there are some.
        EXPECT_EQ(rises, d.injectedAccelerations);
        EXPECT_EQ(falls, d.injectedBrakes);
        EXPECT_GE(rises, 1);
        EXPECT_GE(falls, 1);
    }
    const DrivingDay again = Build_Driving_Day(*cycles, kFirst, 11);
    const DrivingDay other = Build_Driving_Day(*cycles, kFirst, 12);
    auto speeds = [](const DrivingDay& d) {
        std::vector<int> v;
        for (const DriveSecond& s : d.seconds)
            v.push_back(s.speed);
        return v;
    };
    EXPECT_EQ(speeds(again), speeds(Build_Driving_Day(*cycles, kFirst, 11)));
    EXPECT_NE(speeds(again), speeds(other));
}

TEST(CliSample, WritesAWholePackImageAndRefusesBadOptions)
{
    QTemporaryDir dir;
    auto run = [](const QStringList& args) {
        QProcess p;
        p.start(VEXCLI_PATH, args);
        p.waitForFinished(60000);
        return std::make_pair(p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
                              QString::fromUtf8(p.readAllStandardOutput() + p.readAllStandardError()));
    };
    const QString image = dir.filePath("pack.img");
    const QStringList base{"sample", "pack", "--out", image, "--car", "1234", "--driver", "0042"};
    const auto [code, out] = run(base + QStringList{"--from", "240311", "--days", "3", "--damage", "bad-date",
                                                    "--seed", "7"});
    ASSERT_EQ(code, 0) << out.toStdString();
    EXPECT_EQ(QFileInfo(image).size(), 1048576);
    const QStringList lines = out.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 3) << out.toStdString();
    EXPECT_TRUE(lines[0].startsWith("240311  "));
    EXPECT_TRUE(lines[1].contains("damage bad-date"));
    EXPECT_TRUE(lines[2].contains(" km  brakes "));
    // The same request gives the same image as the library.
    const auto loaded = PackImage::Load(image);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->Bytes(), Make(Request({PackDamage::BadDate})).image.Bytes());

    const QStringList bad[] = {
        base + QStringList{"--from", "241301", "--days", "3"},
        base + QStringList{"--from", "2403", "--days", "3"},
        base + QStringList{"--from", "240311", "--days", "0"},
        base + QStringList{"--from", "240311", "--days", "32"},
        base + QStringList{"--from", "240311", "--days", "x"},
        base + QStringList{"--from", "240311", "--days", "3", "--damage", "fire"},
        base + QStringList{"--from", "240311", "--days", "3", "--seed", "-"},
        base + QStringList{"--from", "240311"},
        {"sample", "pack", "--out", image, "--car", "123", "--driver", "0042", "--from", "240311", "--days", "1"},
        {"sample", "pack", "--out", image, "--car", "1234", "--driver", "00421", "--from", "240311", "--days", "1"},
        {"sample", "pack", "--out", dir.filePath("no/such/dir/p.img"), "--car", "1234", "--driver", "0042", "--from",
         "240311", "--days", "1"},
        {"sample", "disk"},
        {"sample"},
    };
    for (const QStringList& args : bad) {
        const auto [c, text] = run(args);
        EXPECT_EQ(c, 2) << args.join(' ').toStdString();
        EXPECT_FALSE(text.isEmpty());
    }
}
