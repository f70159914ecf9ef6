#pragma once
// Where things are on a memory pack and in its page texts.
//
// A pack byte is two hexadecimal characters of text, so a field is a fixed
// run of characters of a page text: column (1-based) and width in
// characters. Byte offset = (column - 1) / 2. Most numeric fields are
// binary-coded decimal and read as digits as they stand.
#include <QDate>
#include <QString>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace vex {

struct Field {
    const char* name;  // "reserved" for runs the system only carries
    int column;        // 1-based character position
    int width;         // characters
};

// Day page of a date: bank = month, page = day of month; 2,047 bytes.
namespace DayPage {
inline constexpr Field CheckPack{"CheckPack", 1, 2};          // "AA" when valid
inline constexpr Field CheckPack1{"CheckPack1", 3, 2};        // "AA" when valid
inline constexpr Field CarCode{"CarCode", 5, 4};              // replaced by SysCarCode on reading
inline constexpr Field DriveCode{"DriveCode", 9, 4};          // replaced by SysDriveCode on reading
inline constexpr Field StartDay{"StartDay", 17, 6};           // YYMMDD
inline constexpr Field StartTime{"StartTime", 23, 4};         // HHMM
inline constexpr Field EndDay{"EndDay", 27, 6};
inline constexpr Field EndTime{"EndTime", 33, 4};
inline constexpr Field Distance{"Distance", 37, 6};           // tenths of a km, that day
inline constexpr Field LastDistance{"LastDistance", 43, 6};
inline constexpr Field Engin{"Engin", 49, 8};
inline constexpr Field Acceleration{"Acceleration", 61, 4};   // quick accelerations
inline constexpr Field Brack{"Brack", 65, 2};                 // quick brakings
inline constexpr Field LKEngin{"LKEngin", 67, 2};
inline constexpr Field LastLKEngin{"LastLKEngin", 69, 2};
inline constexpr Field LastBrack{"LastBrack", 77, 2};
inline constexpr Field Reserved79{"reserved", 79, 4};         // normalised to digits by the decoder
inline constexpr Field LastEnginOver{"LastEnginOver", 83, 2};
inline constexpr Field Brack_Data{"Brack_Data", 129, 100};    // 10 records of 10
inline constexpr Field Brack_Buffer_Data{"Brack_Buffer_Data", 229, 480};  // 4 buffers of 120
inline constexpr Field LkEngin_Data{"LkEngin_Data", 709, 120};
inline constexpr Field Brack_Time_Data{"Brack_Time_Data", 949, 40};
inline constexpr Field Speed_Dist_Data{"Speed_Dist_Data", 999, 72};
inline constexpr Field Sec_Data{"Sec_Data", 1185, 2880};      // speed by the minute, hex km/h

inline constexpr Field Last_Reserved{"reserved", 4065, 30};   // ends the page at column 4094

// Every run of the page in order, reserved ones included.
inline constexpr std::array kFields{
    CheckPack, CheckPack1, CarCode, DriveCode, Field{"reserved", 13, 4},
    StartDay, StartTime, EndDay, EndTime, Distance, LastDistance, Engin,
    Field{"reserved", 57, 2}, Field{"reserved", 59, 2},
    Acceleration, Brack, LKEngin, LastLKEngin, Field{"reserved", 71, 6},
    LastBrack, Reserved79, LastEnginOver,
    Field{"reserved", 85, 6}, Field{"reserved", 91, 2}, Field{"reserved", 93, 2},
    Field{"reserved", 95, 2}, Field{"reserved", 97, 20}, Field{"reserved", 117, 8},
    Field{"reserved", 125, 2}, Field{"reserved", 127, 2},
    Brack_Data, Brack_Buffer_Data, LkEngin_Data, Field{"reserved", 829, 120},
    Brack_Time_Data, Field{"reserved", 989, 10}, Speed_Dist_Data,
    Field{"reserved", 1071, 114}, Sec_Data, Last_Reserved,
};
} // namespace DayPage

// Distance page (bank 0D) and third page (bank 0F) share this layout; only
// the first 2,944 characters are read.
namespace DistPage {
inline constexpr Field CheckPack{"CheckPack", 1, 2};
inline constexpr Field CheckPack1{"CheckPack1", 3, 2};
inline constexpr Field CarCode{"CarCode", 5, 4};
inline constexpr Field DriveCode{"DriveCode", 9, 4};
inline constexpr Field StartDay{"StartDay", 17, 6};
inline constexpr Field StartTime{"StartTime", 23, 4};
inline constexpr Field EndDay{"EndDay", 27, 6};
inline constexpr Field EndTime{"EndTime", 33, 4};
inline constexpr Field Sec_Data{"Sec_Data", 65, 2880};  // distance: BCD tenths of a km, top bit a flag

// The header runs (widths 2,2,4,4,4,6,4,6,4,28) and the series.
inline constexpr std::array kFields{
    CheckPack, CheckPack1, CarCode, DriveCode, Field{"reserved", 13, 4},
    StartDay, StartTime, EndDay, EndTime, Field{"reserved", 37, 28}, Sec_Data,
};
} // namespace DistPage

// System page: bank 00, page 00, 77 bytes.
namespace SysPage {
inline constexpr Field SysCheckPack{"SysCheckPack", 1, 2};
inline constexpr Field SysCheckPack1{"SysCheckPack1", 3, 2};
inline constexpr Field SysCarCode{"SysCarCode", 5, 4};            // "0000" when unset
inline constexpr Field SysDriveCode{"SysDriveCode", 9, 4};        // "0000" when unset
inline constexpr Field SysWarehouse{"SysWarehouse", 47, 6};       // YYMMDD
inline constexpr Field SysSerialNumber{"SysSerialNumber", 53, 8};
inline constexpr Field SysPackInsert{"SysPackInsert", 65, 10};    // YYMMDDHHMM
inline constexpr Field SysPackLastWrite{"SysPackLastWrite", 75, 10};
inline constexpr Field SysTotalDistance{"SysTotalDistance", 85, 6};
inline constexpr Field SysTotalEngin{"SysTotalEngin", 97, 8};
inline constexpr Field SysDBWriteDate{"SysDBWriteDate", 143, 10};  // bytes 0047..004B

// Every run of the page in order; the last byte isn't read.
inline constexpr std::array kFields{
    SysCheckPack, SysCheckPack1, SysCarCode, SysDriveCode, Field{"reserved", 13, 34},
    SysWarehouse, SysSerialNumber, Field{"reserved", 61, 4},
    SysPackInsert, SysPackLastWrite, SysTotalDistance, Field{"reserved", 91, 6},
    SysTotalEngin, Field{"reserved", 105, 4}, Field{"reserved", 109, 4},
    Field{"reserved", 113, 2}, Field{"reserved", 115, 2}, Field{"reserved", 117, 2},
    Field{"reserved", 119, 6}, Field{"reserved", 125, 6}, Field{"reserved", 131, 6},
    Field{"reserved", 137, 6}, SysDBWriteDate, Field{"not read", 153, 2},
};
} // namespace SysPage

// Page lengths in characters.
inline constexpr int kPageChars = 4094;     // a day, distance or third page (07FF bytes)
inline constexpr int kSysPageChars = 154;   // the system page (004D bytes)
inline constexpr int kDistReadChars = 2944; // what is read of a distance or third page

// True when the fields follow each other without gap or overlap from column 1
// and end at column lastColumn.
template <std::size_t N>
constexpr bool Tiles(const std::array<Field, N>& fields, int lastColumn)
{
    int next = 1;
    for (const Field& f : fields) {
        if (f.column != next || f.width <= 0)
            return false;
        next += f.width;
    }
    return next == lastColumn + 1;
}
static_assert(Tiles(DayPage::kFields, kPageChars));
static_assert(Tiles(DistPage::kFields, kDistReadChars));
static_assert(Tiles(SysPage::kFields, kSysPageChars));

// Read-only view of a page text. A field beyond the end of a short text gives
// the part that exists, possibly empty; never anything out of range.
class PageText {
public:
    PageText() = default;
    explicit PageText(QString text) : m_text(std::move(text)) {}

    QString field(const Field& f) const;
    const QString& text() const { return m_text; }
    qsizetype size() const { return m_text.size(); }

private:
    QString m_text;
};

// Writes value into the field's columns of page, blank-padded on the right or
// cut to the field's width. Columns beyond the end of page are left out: the
// page never changes length.
void Put_Field(QString& page, const Field& f, const QString& value);

// A pack location: bank, page, offset in the page and count of bytes.
struct PackAddress {
    int bank;
    int page;
    int offset;
    int count;

    QString bankText() const;    // two capital hexadecimal digits
    QString pageText() const;    // two
    QString offsetText() const;  // four
    QString countText() const;   // four
    // bank, page, offset and count joined: the body of an analyzer read command.
    QString text() const;
};

inline constexpr PackAddress kSystemPageAddress{0x00, 0x00, 0x0000, 0x004D};
// The pack's car and driver codes, one byte each, high byte first.
inline constexpr PackAddress kCarCodeHigh{0x0E, 0x01, 0x07E0, 1};
inline constexpr PackAddress kCarCodeLow{0x0E, 0x01, 0x07E1, 1};
inline constexpr PackAddress kDriveCodeHigh{0x0E, 0x01, 0x07E2, 1};
inline constexpr PackAddress kDriveCodeLow{0x0E, 0x01, 0x07E3, 1};
// Where older packs keep the car code.
inline constexpr PackAddress kAltCarCodeHigh{0x0E, 0x00, 0x0002, 1};
inline constexpr PackAddress kAltCarCodeLow{0x0E, 0x00, 0x0003, 1};

// The three pages of a recording day. The day page has a place for each date
// of the year; the distance and third pages are indexed by the day of month
// alone and so may hold last month's day.
struct DayAddresses {
    PackAddress day;       // bank = month 01..0C, page = day 01..1F
    PackAddress distance;  // bank 0D
    PackAddress third;     // bank 0F
};

// Empty for an invalid date.
std::optional<DayAddresses> Date_Addresses(const QDate& date);

} // namespace vex
