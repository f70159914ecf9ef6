#include "core/Printable.h"

namespace vex {

QString Printable(const QString& text, int maxChars)
{
    QString shown;
    for (QChar c : text.left(maxChars))
        shown += c.unicode() < 0x20 || c.unicode() == 0x7f ? QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'))
                                                           : QString(c);
    return text.size() > maxChars ? shown + QStringLiteral("...") : shown;
}

} // namespace vex
