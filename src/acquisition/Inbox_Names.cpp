#include "acquisition/Inbox_Names.h"

#include <QFile>
#include <QList>

namespace vex {

std::optional<Dat130_Name> Parse_Dat130_Name(const QString& fileName)
{
    if (fileName.size() != 16 || !fileName.endsWith(QLatin1String(".dat"), Qt::CaseInsensitive))
        return std::nullopt;
    Dat130_Name name{fileName.left(6).toUpper(), fileName.mid(6, 6)};
    if (!Is_Code(name.car) || !Is_Day(name.day))
        return std::nullopt;
    return name;
}

QString Speed_File_Name(const QString& car, const QString& driver, const QString& from, const QString& to)
{
    return QStringList{car, driver, from, to}.join(QLatin1Char('_')) + QStringLiteral(".dat");
}

bool Is_Speed_File_Name(const QString& fileName)
{
    if (!fileName.endsWith(QLatin1String(".dat"), Qt::CaseInsensitive))
        return false;
    const QStringList parts = fileName.chopped(4).split(QLatin1Char('_'));
    return parts.size() == 4 && parts[0].size() == 6 && parts[1].size() == 6 && Is_Day(parts[2]) && Is_Day(parts[3]);
}

QByteArray Filing_Note_Text(const Filing_Note& note)
{
    return QStringLiteral("car=%1\ndriver=%2\nfrom=%3\nto=%4\n").arg(note.car, note.driver, note.from, note.to).toLatin1();
}

std::optional<Filing_Note> Parse_Filing_Note(const QByteArray& text)
{
    Filing_Note note;
    int seen = 0;
    for (const QByteArray& line : text.split('\n')) {
        const int eq = line.indexOf('=');
        if (eq < 0)
            continue;
        const QByteArray key = line.left(eq).trimmed();
        const QString value = QString::fromLatin1(line.mid(eq + 1).trimmed());
        QString* field = key == "car" ? &note.car : key == "driver" ? &note.driver
                       : key == "from" ? &note.from : key == "to" ? &note.to : nullptr;
        if (!field)
            continue;
        *field = value;
        seen |= key == "car" ? 1 : key == "driver" ? 2 : key == "from" ? 4 : 8;
    }
    if (seen != 15 || !Is_Code(note.car) || !Is_Code(note.driver) || !Is_Day(note.from) || !Is_Day(note.to)
        || note.from > note.to)
        return std::nullopt;
    return note;
}

QString Filing_Note_Path(const QString& logPath)
{
    return logPath + QStringLiteral(".id");
}

std::optional<Filing_Note> Read_Filing_Note(const QString& logPath)
{
    QFile f(Filing_Note_Path(logPath));
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    return Parse_Filing_Note(f.read(4096));
}

} // namespace vex
