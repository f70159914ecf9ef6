// vexcli dump FILE: a pack file (.Vex) as the dump view shows it.
#include "acquisition/DumpView.h"
#include "cli/Commands.h"

#include <QFileInfo>

namespace vex::cli {

int Cmd_Dump(Context& ctx)
{
    if (ctx.args.size() != 1) {
        ctx.err << "usage: vexcli dump FILE\n";
        return 2;
    }
    const QString path = ctx.args.first();
    const QFileInfo info(path);
    if (!info.exists()) {
        ctx.err << "vexcli dump: no such file: " << path << "\n";
        return 2;
    }
    const QString text = info.isFile() ? Make_32Line(path) : QString();
    if (text.isEmpty()) {
        ctx.err << "vexcli dump: cannot read " << path << "\n";
        return 2;
    }
    ctx.out << text;
    return 0;
}

} // namespace vex::cli
