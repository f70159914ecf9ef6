#include "core/Codes.h"

namespace vex {

bool Is_Code(const QString& code)
{
    if (code.size() != 6)
        return false;
    for (QChar c : code)
        if (!((c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F')))
            return false;
    return true;
}

bool Is_Day(const QString& yymmdd)
{
    if (yymmdd.size() != 6)
        return false;
    for (QChar c : yymmdd)
        if (c < u'0' || c > u'9')
            return false;
    const int month = yymmdd.mid(2, 2).toInt(), day = yymmdd.mid(4, 2).toInt();
    return month >= 1 && month <= 12 && day >= 1 && day <= 31;
}

} // namespace vex
