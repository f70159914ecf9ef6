#include "acquisition/PackLayout.h"

#include "acquisition/Cls_IO.h"
#include "core/Pad.h"

#include <algorithm>

namespace vex {

namespace {

QString Hex2(int v)
{
    return Pad2(Cls_IO::Dec_Hex(static_cast<int16_t>(v)));
}

QString Hex4(int v)
{
    return Pad4(Cls_IO::Dec_Hex(static_cast<int16_t>(v)));
}

constexpr int kPageBytes = 0x07FF;

} // namespace

QString PageText::field(const Field& f) const
{
    const qsizetype start = f.column - 1;
    if (start < 0 || start >= m_text.size())
        return QString();
    return m_text.mid(start, f.width);
}

void Put_Field(QString& page, const Field& f, const QString& value)
{
    const QString cell = value.leftJustified(f.width, QLatin1Char(' '), true);
    const qsizetype start = f.column - 1;
    const qsizetype n = std::min<qsizetype>(f.width, page.size() - start);
    if (start < 0 || n <= 0)
        return;
    page.replace(start, n, cell.left(n));
}

QString PackAddress::bankText() const { return Hex2(bank); }
QString PackAddress::pageText() const { return Hex2(page); }
QString PackAddress::offsetText() const { return Hex4(offset); }
QString PackAddress::countText() const { return Hex4(count); }

QString PackAddress::text() const
{
    return bankText() + pageText() + offsetText() + countText();
}

std::optional<DayAddresses> Date_Addresses(const QDate& date)
{
    if (!date.isValid())
        return std::nullopt;
    const int day = date.day();
    return DayAddresses{
        {date.month(), day, 0, kPageBytes},
        {0x0D, day, 0, kPageBytes},
        {0x0F, day, 0, kPageBytes},
    };
}

} // namespace vex
