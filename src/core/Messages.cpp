// The message table is the delivered file "messages.tsv", one line an id:
// id<TAB>Korean<TAB>English<TAB>Chinese. An empty cell means that id has no
// row in that language, which is different from a row of empty text: the
// loader falls back only where a row is missing.
#include "core/Messages.h"

#include "platform/Resources.h"

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QLocale>
#include <QStringList>

#include <array>

namespace vex {

namespace {

// Column of each language in the file and in a table entry.
constexpr int kKorean = 0;
constexpr int kEnglish = 1;
constexpr int kChinese = 2;

using Row = std::array<QString, 3>;
using Table = QHash<int, Row>;

int Column(Lang lang)
{
    switch (lang) {
    case Lang::Korean: return kKorean;
    case Lang::Chinese: return kChinese;
    case Lang::English: break;
    }
    return kEnglish;
}

// Cells escape a tab, a line end and the backslash itself.
QString Unescape(const QString& cell)
{
    if (!cell.contains(QLatin1Char('\\')))
        return cell;
    QString out;
    out.reserve(cell.size());
    for (qsizetype i = 0; i < cell.size(); ++i) {
        const QChar c = cell.at(i);
        if (c != QLatin1Char('\\') || i + 1 == cell.size()) {
            out += c;
            continue;
        }
        const QChar next = cell.at(++i);
        if (next == QLatin1Char('t'))
            out += QLatin1Char('\t');
        else if (next == QLatin1Char('n'))
            out += QLatin1Char('\n');
        else if (next == QLatin1Char('\\'))
            out += QLatin1Char('\\');
        else {
            out += c;
            out += next;
        }
    }
    return out;
}

Table Load_Table()
{
    Table table;
    QFile file(Resource_Path(QStringLiteral("messages.tsv")));
    if (!file.open(QIODevice::ReadOnly))
        return table;
    const QString text = QString::fromUtf8(file.readAll());
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (QString line : lines) {
        // Only the line end is cut: blanks at the end of a text belong to it.
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList cells = line.split(QLatin1Char('\t'));
        bool ok = false;
        const int id = cells.at(0).toInt(&ok);
        if (!ok)
            continue;
        Row row;
        for (int col = 0; col < 3 && col + 1 < cells.size(); ++col)
            row[col] = Unescape(cells.at(col + 1));
        table.insert(id, row);
    }
    return table;
}

const Table& The_Table()
{
    static const Table table = Load_Table();
    return table;
}

} // namespace

Lang System_Lang()
{
    // VEX_LANG names a language by its code ("ko", "en", "zh", or any other,
    // which counts as a fourth language); without it the system decides.
    const QString wanted = qEnvironmentVariable("VEX_LANG").trimmed().toLower();
    const QLocale::Language language =
        wanted.isEmpty() ? QLocale::system().language() : QLocale(wanted).language();
    switch (language) {
    case QLocale::Korean: return Lang::Korean;
    case QLocale::Chinese: return Lang::Chinese;
    default: return Lang::English;
    }
}

QString Lang_Text(const QString& korean, const QString& english)
{
    return System_Lang() == Lang::Korean ? korean : english;
}

bool Has_Message(int id, Lang lang)
{
    const Table& table = The_Table();
    const auto it = table.constFind(id);
    return it != table.constEnd() && !it->at(Column(lang)).isEmpty();
}

QString LoadResString(int id, Lang lang)
{
    const Table& table = The_Table();
    const auto it = table.constFind(id);
    if (it == table.constEnd())
        return QString();
    for (int col : {Column(lang), kEnglish, kKorean}) {
        if (!it->at(col).isEmpty())
            return it->at(col);
    }
    return QString();
}

QString LoadResString(int id)
{
    return LoadResString(id, System_Lang());
}

} // namespace vex
