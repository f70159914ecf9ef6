// What the inbox trusts of a name. The input holds a file name, a root
// folder and a filing note, the first two ended by a zero byte. The rules
// are checked against definitions of their own here: a code is six of
// 0-9 A-F, a day six digits of a month 1-12 and a day 1-31.
#include "targets/Fuzz_Targets.h"

#include "acquisition/Inbox_Names.h"
#include "store/DayFile.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <filesystem>

namespace vex::fuzz {

namespace {

bool Hex(QChar c, bool small)
{
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F') || (small && c >= u'a' && c <= u'f');
}

bool Code(const QString& s, bool small = false)
{
    return s.size() == 6 && std::all_of(s.begin(), s.end(), [&](QChar c) { return Hex(c, small); });
}

bool Day(const QString& s)
{
    if (s.size() != 6 || !std::all_of(s.begin(), s.end(), [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return false;
    const int month = s.mid(2, 2).toInt(), day = s.mid(4, 2).toInt();
    return month >= 1 && month <= 12 && day >= 1 && day <= 31;
}

// "<car><yymmdd>.dat", the car in either case.
bool Dat130_Form(const QString& name)
{
    return name.size() == 16 && Code(name.left(6), true) && Day(name.mid(6, 6))
           && name.right(4).compare(QLatin1String(".dat"), Qt::CaseInsensitive) == 0;
}

bool Same(const Filing_Note& a, const Filing_Note& b)
{
    return a.car == b.car && a.driver == b.driver && a.from == b.from && a.to == b.to;
}

// Up to the next zero byte, which is passed over.
QByteArray Field(std::span<const uint8_t>& in)
{
    const size_t n = size_t(std::find(in.begin(), in.end(), uint8_t(0)) - in.begin());
    const QByteArray field = Bytes(in.first(n));
    in = in.subspan(std::min(in.size(), n + 1));
    return field;
}

void Check_Codes(Sandbox& box, const QString& s)
{
    if (Is_Code(s) != Code(s))
        box.Fault(QStringLiteral("Is_Code('%1') is %2").arg(s).arg(Is_Code(s)));
    if (Is_Day(s) != Day(s))
        box.Fault(QStringLiteral("Is_Day('%1') is %2").arg(s).arg(Is_Day(s)));
}

// Paths the inbox makes of a good name stay under the folder they are made under.
void Check_Paths(Sandbox& box, const QString& root, const QString& name, const Dat130_Name& parsed)
{
    // The program always works in a named folder; an empty root is none.
    if (root.isEmpty())
        return;
    const QString log = App_Path(root, QStringLiteral("\\new\\") + name);
    const QStringList inside = {log, Filing_Note_Path(log),
                                App_Path(root, Day_File_Name(parsed.car, QStringLiteral("000123"), parsed.day)),
                                App_Path(root, Ntd_File_Name(parsed.car, QStringLiteral("000123"), parsed.day))};
    for (const QString& path : inside)
        if (!Inside_Folder(root, path))
            box.Fault(QStringLiteral("'%1' is not inside '%2'").arg(path, root));
    // Above the folder, or beside it under a longer name, is outside; the
    // root of the file system has nothing above or beside it, and a climb
    // back into a root of the log's own name ends inside.
    // "/.." is the root as well: nothing climbs above it.
    const QString clean = QDir::cleanPath(QString::fromStdString(
        std::filesystem::path(QFileInfo(root).absoluteFilePath().toStdString()).lexically_normal().string()));
    if (clean == QLatin1String("/") || QFileInfo(clean).fileName() == name)
        return;
    for (const QString& path : {App_Path(root, QStringLiteral("\\new\\..\\..\\") + name), clean + QStringLiteral("2/") + name})
        if (Inside_Folder(root, path))
            box.Fault(QStringLiteral("'%1' is inside '%2'").arg(path, root));
}

void Check_Note(Sandbox& box, const Filing_Note& note)
{
    if (!Code(note.car) || !Code(note.driver) || !Day(note.from) || !Day(note.to) || note.from > note.to)
        box.Fault(QStringLiteral("note taken: %1 %2 %3-%4").arg(note.car, note.driver, note.from, note.to));
    const auto again = Parse_Filing_Note(Filing_Note_Text(note));
    if (!again || !Same(*again, note))
        box.Fault(QStringLiteral("note of %1 %2 %3-%4 doesn't come back from its text")
                      .arg(note.car, note.driver, note.from, note.to));
}

} // namespace

void Inbox_Names(Sandbox& box, std::span<const uint8_t> input)
{
    const QString name = QString::fromUtf8(Field(input));
    const QString root = QString::fromUtf8(Field(input));
    const QByteArray noteText = Bytes(input);

    for (const QString& s : {name.left(6), name.mid(6, 6)})
        Check_Codes(box, s);

    const auto parsed = Parse_Dat130_Name(name);
    if (parsed) {
        if (!Dat130_Form(name) || parsed->car != name.left(6).toUpper() || parsed->day != name.mid(6, 6))
            box.Fault(QStringLiteral("name '%1' taken as car %2 day %3").arg(name, parsed->car, parsed->day));
        Check_Paths(box, root, name, *parsed);
        // The note a reception of that car and day writes beside the log.
        Check_Note(box, Filing_Note{parsed->car, QStringLiteral("000123"), parsed->day, parsed->day});
    } else if (Dat130_Form(name)) {
        box.Fault(QStringLiteral("name '%1' refused").arg(name));
    }

    if (const auto note = Parse_Filing_Note(noteText))
        Check_Note(box, *note);
}

} // namespace vex::fuzz
