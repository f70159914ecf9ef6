#include "cli/Commands.h"

namespace vex::cli {

QString Option(const QStringList& args, const QString& name)
{
    const int i = args.indexOf(name);
    return i >= 0 && i + 1 < args.size() ? args[i + 1] : QString();
}

} // namespace vex::cli
