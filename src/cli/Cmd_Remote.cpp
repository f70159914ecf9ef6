// vexcli remote: the button "원격수신" without a window, for a nightly
// scheduler: the two passes over the site's FTP server and the loading step,
// each message printed.
#include "cli/Commands.h"

#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "exchange/Remote_Reception.h"
#include "store/Cls_DB.h"

namespace vex::cli {

int Cmd_Remote(Context& ctx)
{
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    const Remote_Outcome out = Remote_Reception(*G().DB, Ftp_Settings_Of(*G().Config), [&](const QString& name) {
        ctx.out << "fetch " << name << "\n";
        ctx.out.flush();
    });
    for (const QString& n : out.passedOver)
        ctx.out << "passed over " << n << "\n";
    for (const QString& n : out.refused)
        ctx.out << "left on the server " << n << "\n";
    for (const QString& m : out.messages)
        ctx.out << m << "\n";
    for (const QString& f : out.loaded)
        ctx.out << "loaded " << f << "\n";
    for (const QString& f : out.kept)
        ctx.out << "set aside " << f << "\n";
    for (const QString& row : out.rowsRefused)
        ctx.out << "refused row " << row << "\n";
    ctx.out << out.downloaded.size() << " file(s) fetched, " << out.loaded.size() << " loaded\n";
    // A failed connection or download, a damaged file or one set aside is no
    // success.
    const bool failed = !out.kept.isEmpty() || !out.refused.isEmpty() || !out.rowsRefused.isEmpty() || out.messages.contains(QStringLiteral("연결실패"))
                        || std::any_of(out.messages.begin(), out.messages.end(),
                                       [](const QString& m) { return m.startsWith(QStringLiteral("연결실패 (")); });
    return failed ? 1 : 0;
}

} // namespace vex::cli
