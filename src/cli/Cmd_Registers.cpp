// vexcli car|driver list|add|set|delete: the car and driver registers
// without a window, through the rules of their windows (a code is required
// and unique, a new row takes the window's values, Save writes the same
// columns, a delete asks first) and with the windows' messages.
#include "cli/Commands.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "registers/Register_Rules.h"
#include "store/Cls_DB.h"

#include <QDate>
#include <optional>

namespace vex::cli {

namespace {

// The options that name the fields of a register, in field order after the
// code; an empty name is a field the command line leaves alone.
struct Register_Options {
    const Register_Def& def;
    QStringList names;
};

const Register_Options& Car_Options()
{
    static const Register_Options o{Car_Register(),
                                    {"", "--manage", "--plate", "--date", "--io", "--kind", "--rpm-factor",
                                     "--speed", "--fuel"}};
    return o;
}

const Register_Options& Driver_Options()
{
    static const Register_Options o{Driver_Register(),
                                    {"", "--name", "--employee", "--resident", "--licence", "--tel"}};
    return o;
}

int Register_Usage(Context& ctx, const QString& word, const Register_Options& o, const QString& why)
{
    QStringList fields;
    for (int i = 1; i < o.names.size(); ++i)
        if (!o.names[i].isEmpty())
            fields << o.names[i] + QStringLiteral(" (") + Field_Caption(o.def.fields[size_t(i)]) + QLatin1Char(')');
    ctx.err << "vexcli: " << why << "\n"
            << "  " << word << " list [--search FIELD PATTERN]\n"
            << "  " << word << " add CODE [FIELD VALUE]...\n"
            << "  " << word << " set CODE FIELD VALUE [FIELD VALUE]...\n"
            << "  " << word << " delete CODE --yes\n"
            << "fields: " << fields.join(QStringLiteral(", ")) << "\n";
    return 2;
}

// The --field value pairs after the code, into values (field order); false
// with why for a name that names no field.
bool Apply_Options(const QStringList& args, const Register_Options& o, QStringList& values, QString& why)
{
    for (int i = 0; i < args.size(); i += 2) {
        const int field = o.names.indexOf(args[i]);
        if (field < 1 || i + 1 >= args.size()) {
            why = QStringLiteral("\"%1\" is no field with a value").arg(args[i]);
            return false;
        }
        QString value = args[i + 1];
        // A date is typed YYYY-MM-DD, as the window's date control holds it.
        if (o.def.fields[size_t(field)].date && !QDate::fromString(value, Qt::ISODate).isValid()) {
            why = QStringLiteral("%1 takes a date YYYY-MM-DD").arg(args[i]);
            return false;
        }
        values[field] = value;
    }
    return true;
}

// The row of code as the window shows it: a Null takes the shown default.
std::optional<QStringList> Row_Values(Cls_DB& db, const Register_Def& def, const QString& code)
{
    const Register_Rows rows = Register_List(db, def, {}, QStringLiteral("D_F1"), code);
    for (const QVariantList& row : rows.rows) {
        if (row.value(rows.columns.indexOf(QStringLiteral("D_F1"))).toString() != code)
            continue;
        QStringList values;
        for (const Register_Field& f : def.fields) {
            const QVariant v = row.value(rows.columns.indexOf(f.column));
            values << (v.isNull() ? Null_Value(f) : v.toString());
        }
        return values;
    }
    return std::nullopt;
}

// The options a search may name: the code and the fields the window searches.
QStringList Search_Options(const Register_Options& o)
{
    QStringList names{QStringLiteral("--code")};
    for (size_t i = 1; i < o.def.fields.size(); ++i)
        if (o.def.searchColumns.contains(o.def.fields[i].column) && !o.names.value(int(i)).isEmpty())
            names << o.names[int(i)];
    return names;
}

int List(Context& ctx, Cls_DB& db, const Register_Options& o, const QStringList& args)
{
    QString column, pattern;
    if (args.size() == 3 && args[0] == QLatin1String("--search") && Search_Options(o).contains(args[1])) {
        column = args[1] == QLatin1String("--code") ? QStringLiteral("D_F1")
                                                     : o.def.fields[size_t(o.names.indexOf(args[1]))].column;
        pattern = args[2];
    } else if (!args.isEmpty()) {
        return Register_Usage(ctx, QStringLiteral("list"), o,
                     QStringLiteral("list takes nothing, or --search with one of %1 and a pattern (* and ? as wildcards)")
                         .arg(Search_Options(o).join(QStringLiteral(", "))));
    }
    const Register_Rows rows = Register_List(db, o.def, {}, column, pattern);
    std::vector<size_t> shown{0};
    for (size_t i = 1; i < o.def.fields.size(); ++i)
        if (!o.names.value(int(i)).isEmpty())
            shown.push_back(i);
    QStringList heads;
    for (size_t i : shown)
        heads << Field_Caption(o.def.fields[i]);
    ctx.out << heads.join(QLatin1Char('\t')) << "\n";
    for (const QVariantList& row : rows.rows) {
        QStringList cells;
        for (size_t i : shown)
            cells << row.value(rows.columns.indexOf(o.def.fields[i].column)).toString();
        ctx.out << cells.join(QLatin1Char('\t')) << "\n";
    }
    ctx.out << rows.rows.size() << " row(s)\n";
    return 0;
}

int Run(Context& ctx, const QString& word, const Register_Options& o)
{
    QStringList args = ctx.args;
    const QString verb = args.isEmpty() ? QString() : args.takeFirst();
    if (verb != QLatin1String("list") && verb != QLatin1String("add") && verb != QLatin1String("set")
        && verb != QLatin1String("delete"))
        return Register_Usage(ctx, word, o, word + QStringLiteral(" takes list, add, set or delete"));
    const QString code = verb == QLatin1String("list") || args.isEmpty() ? QString() : args.takeFirst();
    if (verb != QLatin1String("list") && code.isEmpty()) {
        ctx.err << "vexcli: " << LoadResString(152) << "\n";
        return 2;
    }
    if (verb == QLatin1String("delete") && args != QStringList{QStringLiteral("--yes")}) {
        ctx.err << "vexcli: " << LoadResString(1150) << " (add --yes)\n";
        return 2;
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    Cls_DB& db = *G().DB;
    if (verb == QLatin1String("list"))
        return List(ctx, db, o, args);
    if (verb == QLatin1String("delete")) {
        const bool gone = Register_Delete(db, o.def, code);
        ctx.out << LoadResString(gone ? 154 : 155) << "\n";
        return gone ? 0 : 1;
    }
    QStringList values;
    if (verb == QLatin1String("add")) {
        for (const Register_Field& f : o.def.fields)
            values << New_Value(f);
        values[0] = code;
    } else if (const auto row = Row_Values(db, o.def, code)) {
        values = *row;
    } else {
        ctx.err << "vexcli: " << word << " " << code << " is not in the register\n";
        return 1;
    }
    QString why;
    if (!Apply_Options(args, o, values, why))
        return Register_Usage(ctx, verb, o, why);
    const int message = Register_Save(db, o.def, verb == QLatin1String("add") ? Adding : Editing, values);
    (message == 150 ? ctx.out : ctx.err) << LoadResString(message) << "\n";
    return message == 150 ? 0 : 1;
}

} // namespace

int Cmd_Car(Context& ctx)
{
    return Run(ctx, QStringLiteral("car"), Car_Options());
}

int Cmd_Driver(Context& ctx)
{
    return Run(ctx, QStringLiteral("driver"), Driver_Options());
}

} // namespace vex::cli
