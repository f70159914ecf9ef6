#include "core/Failure_Text.h"

#include "core/Messages.h"

#include <QRegularExpression>

namespace vex {

namespace {

// Messages of the table: what failed and what to do.
enum : int {
    kDiskFull = 5060,
    kReadOnly = 5061,
    kLocked = 5062,
    kDamaged = 5063,
    kLoginRefused = 5064,
    kNoServer = 5065,
    kMissing = 5066,
    kFailed = 5067,
};

struct Cause {
    int message;
    const char* pattern; // in the reason, case-insensitive
};

// The first cause whose words stand in the reason decides.
constexpr Cause kCauses[] = {
    {kDiskFull, "no space left|disk is full|disk full|database or disk is full|quota exceeded"},
    {kReadOnly, "read-only|readonly|permission denied|access is denied|operation not permitted"},
    {kLocked, "database is locked|database table is locked|in use by another program|busy"},
    {kLoginRefused, "login denied|access denied: 530|not logged in|530 "},
    {kNoServer, "couldn't connect|could not connect|connection refused|couldn't resolve|timed out|"
                "no route to host|network is unreachable"},
    {kDamaged, "zip error|not a zip archive|zip archive inconsistent|damaged|malformed|not a database|"
               "file is not a database|corrupt"},
    {kMissing, "no such file|file not found|cannot open|database file not found"},
};

// "Object - Procedure: " of a handler's label, at the start of its text.
const QRegularExpression& Label_Pattern()
{
    static const QRegularExpression label(QStringLiteral("([A-Za-z_][A-Za-z0-9_]*) - ([A-Za-z_][A-Za-z0-9_ ]*): "));
    return label;
}

int Cause_Of(const QString& reason)
{
    for (const Cause& c : kCauses)
        if (reason.contains(QRegularExpression(QString::fromLatin1(c.pattern),
                                               QRegularExpression::CaseInsensitiveOption)))
            return c.message;
    return 0;
}

} // namespace

QString Plain_Failure(const QString& text)
{
    const QRegularExpressionMatch label = Label_Pattern().match(text);
    const QString head = label.hasMatch() ? text.left(label.capturedStart()).trimmed() : text.trimmed();
    const QString reason = label.hasMatch() ? text.mid(label.capturedEnd()).trimmed() : QString();
    int cause = Cause_Of(label.hasMatch() ? reason : text);
    if (!label.hasMatch() && cause == 0)
        return text; // the system's own words, nothing technical in them
    if (cause == 0)
        cause = kFailed;
    QString out = head.isEmpty() ? LoadResString(cause) : head + QLatin1Char('\n') + LoadResString(cause);
    if (!reason.isEmpty())
        out += QStringLiteral("\n(") + reason + QLatin1Char(')');
    return out;
}

} // namespace vex
