#include "acquisition/DumpView.h"

#include "acquisition/Cls_IO.h"

#include <QFile>

namespace vex {

namespace {

const char kHeader[] =
    "         0  1  2  3  4  5  6  7  8  9  A  B  C  D  E  F"
    " 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F";
constexpr int kRulerWidth = 103;
constexpr int kBlockChars = 64;     // 32 pack bytes
constexpr int kAddressStep = 32;
constexpr int kAddressLimit = 2017; // rows stop here: 64 rows, one page and its line end
// The rows are for a text control on this platform, where a line ends in "\n".
constexpr char kLineEnd[] = "\n";

} // namespace

QString Make_Space(const QString& text)
{
    QString out;
    for (qsizetype i = 0; i <= text.size(); i += 2)
        out += text.mid(i, 2) + QLatin1Char(' ');
    return out;
}

QString Make_32Line(const QString& filePath)
{
    QFile f(filePath);
    if (!f.open(QIODevice::ReadOnly))
        return QString();
    const QLatin1String lineEnd(kLineEnd);
    QString out = QLatin1String(kHeader) + lineEnd + QString(kRulerWidth, QLatin1Char('-')) + lineEnd;
    int address = 0;
    QString block = QString::fromLatin1(f.read(kBlockChars));
    while (address < kAddressLimit && !block.isEmpty()) {
        out += Cls_IO::Dec_4Hex(address) + QStringLiteral(" :  ") + Make_Space(block) + lineEnd;
        address += kAddressStep;
        block = QString::fromLatin1(f.read(kBlockChars));
    }
    return out;
}

} // namespace vex
