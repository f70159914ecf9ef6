// Memory pack files of any bytes. The inputs are the text files as they lie
// on disk: a pack day is the three page lines of Read.Vex (hexadecimal text
// with CR LF), the system page the 154 characters of SysRead.Vex.
#include "targets/Fuzz_Targets.h"

#include "acquisition/Cls_IO.h"
#include "acquisition/Inbox.h"
#include "acquisition/Pack_Decoder.h"
#include "core/Mod_Main.h"

namespace vex::fuzz {

namespace {

// A stamp the decoder repaired: ten characters, the first six digits.
bool Repaired_Stamp(const QString& s)
{
    if (s.size() != 10)
        return false;
    for (int i = 0; i < 6; ++i)
        if (s[i] < u'0' || s[i] > u'9')
            return false;
    return true;
}

} // namespace

// The decoder alone on the bytes, then the same bytes as a file of the
// inbox through the storing step.
void Pack_File(Sandbox& box, std::span<const uint8_t> input)
{
    const Pack_Decode_Inputs inputs{[](const QString&) { return 80; }, [](int bound) { return bound - 1; }};
    const Pack_Decoding decoded = Decode_Pack_Day(Bytes(input), inputs);
    // A decoded day is a key of the store with whole minute series.
    const Pack_Day& day = decoded.day;
    if (decoded.verdict == Pack_Decoding::Verdict::Decoded
        && (day.Key().size() != 18 || day.speed.size() != 2880 || day.distanceSeries.size() != 2880))
        box.Fault(QStringLiteral("decoded day '%1' with series of %2 and %3 characters")
                      .arg(day.Key())
                      .arg(day.speed.size())
                      .arg(day.distanceSeries.size()));

    const QString path = box.Write(QStringLiteral("\\new\\00010002261015.Vex"), Bytes(input));
    G().IO->Pack_File_Read1(*G().DB, path);
}

void Pack_Filing(Sandbox& box, std::span<const uint8_t> input)
{
    const QString path = box.Write(QStringLiteral("\\Dat\\Read.Vex"), Bytes(input));
    Cls_IO& io = *G().IO;
    io.Read_Day = QStringLiteral("261015"); // the day the reception asked the pack for
    io.Pack_File_Read(path);
    Inbox_Pass(*G().DB);
}

void Sys_File(Sandbox& box, std::span<const uint8_t> input)
{
    box.Write(QStringLiteral("\\Dat\\SysRead.Vex"), Bytes(input));
    if (!G().IO->Pack_SysFile_Read())
        return;
    // An accepted page has its stamps repaired to dates, whatever it held.
    const Pack_System_Page& page = G().IO->System_Page;
    for (const QString* s : {&page.packLastWrite, &page.dbWriteDate})
        if (!Repaired_Stamp(*s))
            box.Fault(QStringLiteral("system page accepted with the stamp '%1'").arg(*s));
}

} // namespace vex::fuzz
