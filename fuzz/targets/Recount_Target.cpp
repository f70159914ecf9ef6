// A stored trip whose day file holds any bytes (a package brings day files
// as they are), counted again under standards of any values. The recount
// reads the head of the day file, checks its size and walks its seconds;
// nothing of it may fail but as the trip's note or failure.
#include "targets/Fuzz_Targets.h"

#include "analysis/New_Standards.h"
#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/Day_Store.h"
#include "store/EventDetector.h"

#include <algorithm>

namespace vex::fuzz {

// The input: five standards (limit, quick brake and acceleration as signed
// bytes, long overspeed and idle minutes), a size (0: two arrays, 1: three,
// else that many bytes, scaled), the first second of the laid part (two
// bytes, high first, in steps of two seconds), then speed and engine bytes
// in turn from there.
void Recount(Sandbox& box, std::span<const uint8_t> input)
{
    (void)box;
    auto Byte = [&input](size_t at) { return at < input.size() ? input[at] : uint8_t(0); };
    Cls_Config standards = *G().Config;
    standards.B_Val3 = Byte(0);
    standards.B_Val9 = int8_t(Byte(1));
    standards.B_Val10 = int8_t(Byte(2));
    standards.B_Val11 = Byte(3) % 16;
    standards.B_Val12 = int16_t(1 + Byte(4) % 16);
    const uint8_t form = Byte(5);
    const qsizetype size = form == 0 ? kDayFileTwo : form == 1 ? kDayFileFull : qsizetype(form) * 1400;
    QByteArray day(size, '\0');
    const int first = (((Byte(6) << 8) | Byte(7)) * 2) % kDayArray;
    for (size_t k = 8; k + 1 < input.size(); k += 2) {
        const qsizetype s = first + qsizetype(k - 8) / 2;
        if (s < size)
            day[s] = char(input[k]);
        if (kDayArray + s < size)
            day[kDayArray + s] = char(input[k + 1]);
    }
    Cls_DB& db = *G().DB;
    const QString key = QStringLiteral("12AB00000123261001");
    db.Execute(QStringLiteral("INSERT INTO D_D1 (D_F1, D_F2, D_F3, D_F4, D_F8) VALUES (?, ?, ?, ?, 100)"),
               {key, key.left(6), key.mid(6, 6), key.right(6)});
    Store_Day_Bytes(db, Day_File_Path_Of_Key(key), day);
    Apply_New_Standards(db, standards, {});
}

} // namespace vex::fuzz
