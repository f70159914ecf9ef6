#include "cli/Commands.h"

#include "core/VbText.h"

namespace vex::cli {

QString Option(const QStringList& args, const QString& name)
{
    const int i = args.indexOf(name);
    return i >= 0 && i + 1 < args.size() ? args[i + 1] : QString();
}

bool Day_Word(const QString& word)
{
    return word.size() == 6 && All_Digits(word);
}

} // namespace vex::cli
