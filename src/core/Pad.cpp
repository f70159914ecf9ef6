#include "core/Pad.h"

namespace vex {

QString Pad2(const QString& text)
{
    return text.size() == 1 ? QStringLiteral("0") + text : text;
}

QString Pad4(const QString& text)
{
    if (text.size() > 4)
        return QString();
    return text.rightJustified(4, QLatin1Char('0'));
}

} // namespace vex
