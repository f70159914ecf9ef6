// vexcli config show|set FIELD VALUE...: the settings row (S_D14) without a
// window, through the Save of the settings window: the same fields, the
// same conversions and checks, the same messages. The company code, which
// the window hides behind Ctrl+V, is an ordinary field here.
#include "cli/Commands.h"

#include "core/Cls_Config.h"
#include "registers/Config_Rules.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

namespace vex::cli {

namespace {

// The window's fields by the names of the settings they hold; a check box
// is a field whose index is negative (-1 for box 1). U_Pass fills the
// password and its confirmation.
struct Config_Name {
    const char* name;
    int field;
    const char* meaning;
};

constexpr Config_Name kNames[] = {
    {"U_Name", 1, "firm name; also the company's folder on the FTP server"},
    {"U_Tel", 2, "telephone"},
    {"U_Fax", 3, "fax"},
    {"U_Business", 4, "business registration number"},
    {"U_UserID", 5, "login user id"},
    {"U_Pass", 6, "login password"},
    {"U_PackDir", 7, "folder of pack data"},
    {"U_Port", 9, "status value"},
    {"S_IP", 10, "FTP server address"},
    {"S_Port", 11, "FTP port (shown and stored)"},
    {"S_User", 12, "FTP user"},
    {"S_Password", 13, "FTP password"},
    {"S_CompanyCode", 14, "company code, 8 digits; 00000000 = no remote account"},
    {"Max_Speed_Axis", 15, "graph speed axis top (km/h)"},
    {"Max_RPM_Axis", 16, "graph RPM axis top"},
    {"RPM_Marks", 17, "graph RPM marks (at most 9)"},
    {"Idle_Minutes", 18, "minutes taken as not driving"},
    {"S_Email", 19, "e-mail address of the site"},
    {"C_Oil", -1, "1 = print the maintenance check on the daily report"},
    {"C_RPM", -2, "1 = cars have an RPM input"},
    {"C_VAL", -3, "1 = apply the previous driving habit to the latest marks code"},
    {"Car_VAL", -4, "FTP passive mode box (stored; the transfer is always passive)"},
};

const Config_Name* Find(const QString& name)
{
    for (const Config_Name& n : kNames)
        if (name.compare(QLatin1String(n.name), Qt::CaseInsensitive) == 0)
            return &n;
    return nullptr;
}

QString Value_Of(const Config_Fields& f, const Config_Name& n)
{
    // Passwords are set, never printed.
    if (n.field == 6 || n.field == 13)
        return f.text[size_t(n.field)].isEmpty() ? QString() : QStringLiteral("********");
    return n.field > 0 ? f.text[size_t(n.field)] : QString::number(f.check[size_t(-n.field)] ? 1 : 0);
}

int Config_Usage(Context& ctx, const QString& why)
{
    ctx.err << "vexcli: " << why << "\n"
            << "  config show\n"
            << "  config set FIELD VALUE [FIELD VALUE]...\n"
            << "fields:\n";
    for (const Config_Name& n : kNames)
        ctx.err << "  " << QString::fromLatin1(n.name).leftJustified(16) << n.meaning << "\n";
    return 2;
}

} // namespace

int Cmd_Config(Context& ctx)
{
    QStringList args = ctx.args;
    const QString verb = args.isEmpty() ? QString() : args.takeFirst();
    const bool set = verb == QLatin1String("set");
    if (!set && verb != QLatin1String("show"))
        return Config_Usage(ctx, QStringLiteral("config takes show or set"));
    if ((set && (args.isEmpty() || args.size() % 2 != 0)) || (!set && !args.isEmpty()))
        return Config_Usage(ctx, QStringLiteral("config set takes FIELD VALUE pairs, config show nothing"));
    for (int i = 0; i < args.size(); i += 2) {
        const Config_Name* n = Find(args[i]);
        if (!n)
            return Config_Usage(ctx, QStringLiteral("\"%1\" is no field of the settings").arg(args[i]));
        const QString& v = args[i + 1];
        if (n->field < 0 && v != QLatin1String("0") && v != QLatin1String("1"))
            return Config_Usage(ctx, QStringLiteral("%1 is 0 or 1").arg(QLatin1String(n->name)));
        if (n->field == 14 && (v.size() != 8 || !std::all_of(v.begin(), v.end(), [](QChar c) { return c.isDigit(); })))
            return Config_Usage(ctx, QStringLiteral("S_CompanyCode is 8 digits"));
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    Globals& g = G();
    Config_Fields f = Config_Show(*g.Config, g);
    if (set) {
        for (int i = 0; i < args.size(); i += 2) {
            const Config_Name& n = *Find(args[i]);
            if (n.field > 0)
                f.text[size_t(n.field)] = args[i + 1];
            else
                f.check[size_t(-n.field)] = args[i + 1] == QLatin1String("1");
            if (n.field == 6)
                f.text[8] = args[i + 1]; // the confirmation field
        }
        switch (Config_Save(f, *g.Config, g, *g.DB)) {
        case Config_Save_Result::Saved:
            ctx.out << LoadResString(150) << "\n";
            break;
        case Config_Save_Result::Count_Too_High:
            ctx.err << "vexcli: " << LoadResString(1143) << "\n";
            return 1;
        case Config_Save_Result::Bad_Number:
            ctx.err << "vexcli: Max_Speed_Axis, Max_RPM_Axis, RPM_Marks and Idle_Minutes are numbers; nothing was "
                       "stored\n";
            return 1;
        case Config_Save_Result::Failed:
            ctx.err << "vexcli: " << LoadResString(151) << "\n";
            return 1;
        }
        f = Config_Show(*g.Config, g);
    }
    for (const Config_Name& n : kNames)
        ctx.out << QString::fromLatin1(n.name).leftJustified(16) << Value_Of(f, n) << "\n";
    return 0;
}

} // namespace vex::cli
