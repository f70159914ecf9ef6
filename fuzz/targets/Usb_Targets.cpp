// USB recorder files of any bytes. The files of the USB road are large and
// mostly erased (a "130" log is 2 MiB, a day file 175 kB), so two targets
// take a compact input that they lay out into the file at the places the
// decoders read, and keep a form that writes the bytes as they are.
#include "targets/Fuzz_Targets.h"

#include "acquisition/Inbox_Names.h"
#include "acquisition/UsbRecorder.h"
#include "acquisition/Usb_Days.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/EventDetector.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cstring>
#include <vector>

namespace vex::fuzz {

namespace {

// Takes the input from the front, a part at a time; a part is cut short
// when the input runs out.
class Parts {
public:
    explicit Parts(std::span<const uint8_t> input) : rest_(input) {}
    uint8_t Byte()
    {
        const auto b = Take(1);
        return b.empty() ? 0 : b[0];
    }
    std::span<const uint8_t> Take(size_t n)
    {
        const auto part = rest_.first(std::min(n, rest_.size()));
        rest_ = rest_.subspan(part.size());
        return part;
    }
    std::span<const uint8_t> Rest() { return Take(rest_.size()); }

private:
    std::span<const uint8_t> rest_;
};

// Bytes of the input and where they lie in the file.
struct Placed {
    qint64 at;
    std::span<const uint8_t> bytes;
};

// A file of a fixed name that the harness keeps from input to input,
// mapped into memory: all fill bytes but where the last input's parts were
// laid, which are filled again before the next input's are laid. An input
// costs its own size, not the 2 MiB of a whole log. Parts beyond the file's
// size are cut.
class Kept_File {
public:
    Kept_File(const char* rel, char fill) : rel_(QLatin1String(rel)), fill_(fill) {}

    QString Lay(Sandbox& box, qint64 size, const std::vector<Placed>& parts)
    {
        const QString path = box.Path(rel_);
        if (!map_ || size != size_ || path != file_.fileName() || !QFileInfo::exists(path))
            Open(box, path, size);
        for (const auto& [at, n] : laid_)
            std::memset(map_ + at, fill_, size_t(n));
        laid_.clear();
        for (const Placed& p : parts) {
            const qint64 n = std::min<qint64>(qint64(p.bytes.size()), size - p.at);
            if (n > 0) {
                std::memcpy(map_ + p.at, p.bytes.data(), size_t(n));
                laid_.emplace_back(p.at, n);
            }
        }
        return path;
    }

private:
    void Open(Sandbox& box, const QString& path, qint64 size)
    {
        if (map_)
            file_.unmap(map_);
        file_.close();
        box.Write(path, QByteArray(size, fill_));
        box.Keep(path);
        file_.setFileName(path);
        map_ = file_.open(QIODevice::ReadWrite) ? file_.map(0, size) : nullptr;
        if (!map_)
            box.Fault(QStringLiteral("the harness could not map ") + path);
        size_ = size;
        laid_.clear();
    }

    QString rel_;
    char fill_;
    QFile file_;
    uchar* map_ = nullptr;
    qint64 size_ = 0;
    std::vector<std::pair<qint64, qint64>> laid_; // at, length
};

// The compact "130" log: counts of hour blocks, event records and minute
// records of the first region (a byte each), then the blocks and records,
// and the minute records of the second region with the rest.
std::vector<Placed> Log_130(Parts in)
{
    const size_t hours = in.Byte(), events = in.Byte(), minutesA = in.Byte();
    return {{0, in.Take(hours * kBlock130)},
            {kEventRegion130, in.Take(events * kEventRecord130)},
            {kMinuteRegion130A, in.Take(minutesA * kMinuteRecord130)},
            {kMinuteRegion130B, in.Take(size_t(kMinuteRecords130B) * kMinuteRecord130)}};
}

// Where a day file's parts lie: the codes and the day (nine bytes), the
// speed and engine arrays (second s at s), the minute distance (minute m of
// 1 to 1,440 at 2m - 1 and 2m).
struct Day_Layout {
    qint64 size, codes, speed, engine, distance;
};
// A saved day: each array written one byte early over the last entry of the one before.
constexpr qint64 kSavedEngine = 9 + kDaySeconds;
constexpr Day_Layout kSavedDay{kSavedEngine + kDaySeconds + kNtdDistance, 0, 9, kSavedEngine,
                               kSavedEngine + kDaySeconds};
// The "250" road's day file: a zero, driver, car and day, the arrays whole.
constexpr Day_Layout kRoadDay{kNtdFile, 1, kNtdHeader, kNtdHeader + kDayArray, kNtdHeader + 2LL * kDayArray};

// The compact day: the nine bytes of codes and day, the first minute (two
// bytes, high first), then for each minute from there 60 speeds, 60 engine
// bytes and the two distance bytes.
std::vector<Placed> Day_File(Parts in, const Day_Layout& at)
{
    std::vector<Placed> parts{{at.codes, in.Take(9)}};
    const int first = ((in.Byte() << 8) | in.Byte()) % kDayMinutes;
    for (int m = first; m < kDayMinutes; ++m) {
        const auto speed = in.Take(60), engine = in.Take(60), distance = in.Take(2);
        if (speed.empty())
            break;
        parts.push_back({at.speed + 60LL * m, speed});
        parts.push_back({at.engine + 60LL * m, engine});
        parts.push_back({at.distance + 2LL * m + 1, distance});
    }
    return parts;
}

} // namespace

// First byte: bit 0 the bytes as they are (a log cut short anywhere), else
// the compact log; bit 1 a reception of the single day 261001, else of any day.
void Usb_130(Sandbox& box, std::span<const uint8_t> input)
{
    static Kept_File log("\\new\\12AB00261001.dat", char(0xFF));
    Parts in(input);
    const uint8_t form = in.Byte();
    const QString path = form & 1 ? box.Write(QStringLiteral("\\new\\12AB00261002.dat"), Bytes(in.Rest()))
                                  : log.Lay(box, kDat130Filed, Log_130(in));
    const bool oneDay = form & 2;
    const Filing_Note who{QStringLiteral("12AB00"), QStringLiteral("000123"),
                          oneDay ? QStringLiteral("261001") : QStringLiteral("000101"),
                          oneDay ? QStringLiteral("261001") : QStringLiteral("991231")};
    box.Write(Filing_Note_Path(path), Filing_Note_Text(who));
    Decode_Dat130(*G().DB, path);
}

// The bytes as they are: records of 512 bytes. The decoder alone first:
// each day it hands over lies in the dates asked for and is whole.
void Usb_250(Sandbox& box, std::span<const uint8_t> input)
{
    Dat250_Days days(QStringLiteral("261001"), QStringLiteral("261031"), [&](const Usb_Second_Day& d) {
        if (d.day < QLatin1String("261001") || d.day > QLatin1String("261031") || d.speed.size() != size_t(kDayArray)
            || d.engine.size() != size_t(kDayArray) || d.metres.size() != size_t(kDayMinutes + 1))
            box.Fault(QStringLiteral("day '%1' handed over out of its dates or cut").arg(d.day));
    });
    days.Feed(Bytes(input));
    days.Finish();

    const QString path = box.Write(QStringLiteral("\\usb\\SPDR0403.dat"), Bytes(input));
    Usb_State() = Usb_Reception{QStringLiteral("12AB00"), QStringLiteral("000123"), {}, {}, {}};
    Decode_Dat250(*G().DB, path);
}

// First byte: bits 0-1 the form (1 a saved day, 2 the "250" road's day
// file, each compact; else the bytes as they are), bits 4-7 a change of
// the file's length from -8 to 7 bytes.
void Ntd(Sandbox& box, std::span<const uint8_t> input)
{
    static Kept_File saved("\\new\\261001.NTD", '\0'), road("\\new\\261001000123.ntd", '\0');
    Parts in(input);
    const uint8_t form = in.Byte();
    const int sizeDelta = int8_t(form) >> 4;
    QString path;
    switch (form & 3) {
    case 1: path = saved.Lay(box, kSavedDay.size + sizeDelta, Day_File(in, kSavedDay)); break;
    case 2: path = road.Lay(box, kRoadDay.size + sizeDelta, Day_File(in, kRoadDay)); break;
    default: path = box.Write(QStringLiteral("\\new\\261002.NTD"), Bytes(in.Rest())); break;
    }
    Decode_Ntd(*G().DB, path);
}

} // namespace vex::fuzz
