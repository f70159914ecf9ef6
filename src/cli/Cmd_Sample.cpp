// vexcli sample MEDIUM ...: writes sample recorder media for trying the
// reception without a vehicle. Each medium is a sub-command of its own.
#include "cli/Commands.h"

#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "exchange/Reception_Ledger.h"
#include "samples/Fleet_Sampler.h"
#include "samples/PackSampler.h"
#include "samples/UsbSampler.h"
#include "store/Cls_DB.h"

#include <QFile>
#include <QRegularExpression>

namespace vex::cli {

namespace {

constexpr const char* kPackUsage =
    "usage: vexcli sample pack --out IMAGE --car CCCC --driver DDDD --from YYMMDD --days N\n"
    "                          [--damage KIND]... [--seed S] [--last-read YYMMDDHHMM] [--cycles DIR]\n";

constexpr const char* kUsbUsage =
    "usage: vexcli sample usb --model 130|250 --out DIR --car CCCCCC --driver DDDDDD --from YYMMDD --days N\n"
    "                         [--damage KIND]... [--seed S] [--cycles DIR]\n"
    "       vexcli sample ntd --out FILE --car CCCCCC --driver DDDDDD --day YYMMDD [--seed S] [--cycles DIR]\n";

// Options of the form "--name value" or "--name=value"; a name may repeat.
class Options {
public:
    // False, with the reason, on a word that isn't an option of `known` or
    // an option without its value.
    bool Parse(const QStringList& words, const QStringList& known, QString* why)
    {
        for (int i = 0; i < words.size(); ++i) {
            QString name = words[i];
            QString value;
            bool hasValue = false;
            if (!name.startsWith(QLatin1String("--"))) {
                *why = "unexpected word " + name;
                return false;
            }
            const qsizetype eq = name.indexOf(QLatin1Char('='));
            if (eq > 0) {
                value = name.mid(eq + 1);
                name = name.left(eq);
                hasValue = true;
            }
            name = name.mid(2);
            if (!known.contains(name)) {
                *why = "unknown option --" + name;
                return false;
            }
            if (!hasValue) {
                if (i + 1 >= words.size()) {
                    *why = "--" + name + " needs a value";
                    return false;
                }
                value = words[++i];
            }
            values_.append({name, value});
        }
        return true;
    }
    bool Has(const QString& name) const { return !All(name).isEmpty(); }
    QString Last(const QString& name) const
    {
        const QStringList all = All(name);
        return all.isEmpty() ? QString() : all.last();
    }
    QStringList All(const QString& name) const
    {
        QStringList out;
        for (const auto& [n, v] : values_)
            if (n == name)
                out << v;
        return out;
    }

private:
    QList<std::pair<QString, QString>> values_;
};

// YYMMDD of 2000 to 2099.
QDate Parse_Day(const QString& text)
{
    static const QRegularExpression digits(QStringLiteral("^\\d{6}$"));
    if (!digits.match(text).hasMatch())
        return QDate();
    return QDate(2000 + text.left(2).toInt(), text.mid(2, 2).toInt(), text.mid(4, 2).toInt());
}

// YYMMDDHHMM.
QDateTime Parse_Stamp(const QString& text)
{
    static const QRegularExpression digits(QStringLiteral("^\\d{10}$"));
    if (!digits.match(text).hasMatch())
        return QDateTime();
    const QDate day = Parse_Day(text.left(6));
    const QTime time(text.mid(6, 2).toInt(), text.mid(8, 2).toInt());
    if (!day.isValid() || !time.isValid())
        return QDateTime();
    return QDateTime(day, time);
}

QString Hh_Mm(int minute)
{
    return QStringLiteral("%1:%2").arg(minute / 60, 2, 10, QLatin1Char('0')).arg(minute % 60, 2, 10, QLatin1Char('0'));
}

int Bad(Context& ctx, const QString& why)
{
    ctx.err << "vexcli sample pack: " << why << "\n" << kPackUsage;
    return 2;
}

int Sample_Pack(Context& ctx, const QStringList& words)
{
    Options o;
    QString why;
    if (!o.Parse(words, {"out", "car", "driver", "from", "days", "damage", "seed", "last-read", "cycles"}, &why))
        return Bad(ctx, why);
    for (const char* required : {"out", "car", "driver", "from", "days"})
        if (!o.Has(QLatin1String(required)))
            return Bad(ctx, QStringLiteral("--%1 is required").arg(QLatin1String(required)));

    PackSampleRequest r;
    r.car = o.Last("car");
    r.driver = o.Last("driver");
    if (r.car.size() != 4)
        return Bad(ctx, "--car must be 4 characters: " + r.car);
    if (r.driver.size() != 4)
        return Bad(ctx, "--driver must be 4 characters: " + r.driver);
    r.first = Parse_Day(o.Last("from"));
    if (!r.first.isValid())
        return Bad(ctx, "--from must be a date YYMMDD: " + o.Last("from"));
    bool ok = false;
    r.days = o.Last("days").toInt(&ok);
    if (!ok || r.days < 1 || r.days > 31)
        return Bad(ctx, "--days must be a number from 1 to 31: " + o.Last("days"));
    if (o.Has("seed")) {
        r.seed = o.Last("seed").toULongLong(&ok);
        if (!ok)
            return Bad(ctx, "--seed must be a whole number: " + o.Last("seed"));
    }
    for (const QString& name : o.All("damage")) {
        const auto kind = Pack_Damage_From_Name(name);
        if (!kind) {
            QStringList names;
            for (const PackDamageInfo& d : Pack_Damage_Kinds())
                names << QLatin1String(d.name);
            return Bad(ctx, "unknown damage " + name + "; one of: " + names.join(", "));
        }
        r.damage << *kind;
    }
    if (o.Has("last-read")) {
        const QDateTime stamp = Parse_Stamp(o.Last("last-read"));
        if (!stamp.isValid())
            return Bad(ctx, "--last-read must be a stamp YYMMDDHHMM: " + o.Last("last-read"));
        r.lastRead = stamp;
    }
    r.cyclesDir = o.Last("cycles");

    QString error;
    const auto sample = Make_Sample_Pack(r, &error);
    if (!sample)
        return Bad(ctx, error);
    const QString out = o.Last("out");
    if (!sample->image.Save(out))
        return Bad(ctx, "cannot write " + out);

    for (const PackSampleDay& d : sample->days) {
        ctx.out << d.date.toString(QStringLiteral("yyMMdd")) << "  " << Hh_Mm(d.startMinute) << "-"
                << Hh_Mm(d.endMinute) << "  " << QString::number(d.distanceTenths / 10.0, 'f', 1).rightJustified(6)
                << " km  brakes " << d.brakes << "  accelerations " << d.accelerations;
        if (!d.damage.isEmpty())
            ctx.out << "  damage " << d.damage.join(QLatin1Char(','));
        if (d.pagesOverwritten)
            ctx.out << "  distance page overwritten by a later day";
        ctx.out << "\n";
    }
    return 0;
}

int Bad_Usb(Context& ctx, const char* medium, const QString& why)
{
    ctx.err << "vexcli sample " << medium << ": " << why << "\n" << kUsbUsage;
    return 2;
}

int Sample_Usb(Context& ctx, const QStringList& words)
{
    Options o;
    QString why;
    if (!o.Parse(words, {"model", "out", "car", "driver", "from", "days", "damage", "seed", "cycles"}, &why))
        return Bad_Usb(ctx, "usb", why);
    for (const char* required : {"model", "out", "car", "driver", "from", "days"})
        if (!o.Has(QLatin1String(required)))
            return Bad_Usb(ctx, "usb", QStringLiteral("--%1 is required").arg(QLatin1String(required)));
    UsbSampleRequest r;
    r.model = o.Last("model");
    r.car = o.Last("car").toUpper();
    r.driver = o.Last("driver").toUpper();
    r.first = Parse_Day(o.Last("from"));
    if (!r.first.isValid())
        return Bad_Usb(ctx, "usb", "--from must be a date YYMMDD: " + o.Last("from"));
    bool ok = false;
    r.days = o.Last("days").toInt(&ok);
    if (!ok)
        return Bad_Usb(ctx, "usb", "--days must be a number from 1 to 31: " + o.Last("days"));
    if (o.Has("seed")) {
        r.seed = o.Last("seed").toULongLong(&ok);
        if (!ok)
            return Bad_Usb(ctx, "usb", "--seed must be a whole number: " + o.Last("seed"));
    }
    for (const QString& name : o.All("damage")) {
        const auto kind = Usb_Damage_From_Name(name);
        if (!kind) {
            QStringList names;
            for (const UsbDamageInfo& d : Usb_Damage_Kinds())
                names << QLatin1String(d.name);
            return Bad_Usb(ctx, "usb", "unknown damage " + name + "; one of: " + names.join(", "));
        }
        r.damage << *kind;
    }
    r.cyclesDir = o.Last("cycles");
    QString error;
    const auto sample = Make_Sample_Usb(r, &error);
    if (!sample)
        return Bad_Usb(ctx, "usb", error);
    if (!Write_Usb_Medium(*sample, o.Last("out"), &error))
        return Bad_Usb(ctx, "usb", error);
    ctx.out << "model " << r.model << "  SPDR0403.dat " << sample->log.size() << " bytes\n";
    for (const UsbSampleDay& d : sample->days)
        ctx.out << d.date.toString(QStringLiteral("yyMMdd")) << "  " << Hh_Mm(d.startMinute) << "-"
                << Hh_Mm(d.endMinute) << "  " << QString::number(d.metres / 1000.0, 'f', 1).rightJustified(6)
                << " km  accelerations " << d.accelerations << "\n";
    return 0;
}

int Sample_Ntd(Context& ctx, const QStringList& words)
{
    Options o;
    QString why;
    if (!o.Parse(words, {"out", "car", "driver", "day", "seed", "cycles"}, &why))
        return Bad_Usb(ctx, "ntd", why);
    for (const char* required : {"out", "car", "driver", "day"})
        if (!o.Has(QLatin1String(required)))
            return Bad_Usb(ctx, "ntd", QStringLiteral("--%1 is required").arg(QLatin1String(required)));
    const QDate day = Parse_Day(o.Last("day"));
    if (!day.isValid())
        return Bad_Usb(ctx, "ntd", "--day must be a date YYMMDD: " + o.Last("day"));
    uint64_t seed = 1;
    if (o.Has("seed")) {
        bool ok = false;
        seed = o.Last("seed").toULongLong(&ok);
        if (!ok)
            return Bad_Usb(ctx, "ntd", "--seed must be a whole number: " + o.Last("seed"));
    }
    QString error;
    const auto bytes = Make_Sample_Ntd(o.Last("car"), o.Last("driver"), day, seed, o.Last("cycles"), &error);
    if (!bytes)
        return Bad_Usb(ctx, "ntd", error);
    QFile f(o.Last("out"));
    if (!f.open(QIODevice::WriteOnly) || f.write(*bytes) != bytes->size())
        return Bad_Usb(ctx, "ntd", "cannot write " + o.Last("out"));
    ctx.out << "saved day " << day.toString(QStringLiteral("yyMMdd")) << "  car " << o.Last("car").toUpper()
            << "  driver 00" << o.Last("driver").toUpper().right(4) << "  " << bytes->size() << " bytes\n";
    return 0;
}

struct Medium {
    const char* name;
    int (*run)(Context&, const QStringList&);
};

constexpr const char* kFleetUsage =
    "usage: vexcli sample fleet --cars N --days D [--from YYMMDD] [--drivers K] [--cycles DIR]\n";

// A whole fleet into the application folder, received as a reception would
// receive it, each week's pass in the ledger.
int Sample_Fleet(Context& ctx, const QStringList& words)
{
    Options o;
    QString why;
    if (!o.Parse(words, {"cars", "days", "from", "drivers", "cycles"}, &why)) {
        ctx.err << "vexcli sample fleet: " << why << "\n" << kFleetUsage;
        return 2;
    }
    Fleet_Request r;
    bool okCars = false, okDays = false, okDrivers = true;
    r.cars = o.Last("cars").toInt(&okCars);
    r.days = o.Last("days").toInt(&okDays);
    if (o.Has("drivers"))
        r.driversPerCar = o.Last("drivers").toInt(&okDrivers);
    if (o.Has("from"))
        r.first = Parse_Day(o.Last("from"));
    r.cyclesDir = o.Last("cycles");
    if (!okCars || !okDays || !okDrivers || r.cars < 1 || r.cars > 4096 || r.days < 1 || r.days > 3660
        || r.driversPerCar < 1 || r.driversPerCar > 16 || !r.first.isValid()) {
        ctx.err << "vexcli sample fleet: --cars 1 to 4096, --days 1 to 3660, --drivers 1 to 16, --from YYMMDD\n"
                << kFleetUsage;
        return 2;
    }
    if (!Start_App(ctx) || !Load_App_Settings(ctx))
        return 2;
    int notes = 0;
    const Fleet_Result result = Fill_Fleet(
        *G().DB, r,
        [&](int done, int all) {
            ctx.err << "fleet " << done << "/" << all << "\n";
            ctx.err.flush();
        },
        [&](const Reception_Outcome& outcome) {
            try {
                notes += Record_Reception(*G().DB, Ledger_Road::Inbox, QStringLiteral("sample fleet"),
                                          outcome.Summary(), Ledger_Days(outcome))
                             .Stored_With_Findings();
            } catch (const RunTimeError& e) {
                ctx.err << "vexcli: the ledger could not be written: " << e.what() << "\n";
            }
        });
    if (!result.error.isEmpty()) {
        ctx.err << "vexcli sample fleet: " << result.error << "\n";
        return 1;
    }
    ctx.out << r.cars << " cars, " << r.cars * r.driversPerCar << " drivers, " << result.trips << " trips stored, "
            << notes << " with a note";
    if (result.kept > 0)
        ctx.out << ", " << result.kept << " files left in \\new";
    ctx.out << "\n";
    return result.kept > 0 ? 1 : 0;
}

const Medium kMedia[] = {
    {"pack", Sample_Pack},
    {"usb", Sample_Usb},
    {"ntd", Sample_Ntd},
    {"fleet", Sample_Fleet},
};

} // namespace

int Cmd_Sample(Context& ctx)
{
    if (!ctx.args.isEmpty()) {
        for (const Medium& m : kMedia)
            if (ctx.args.first() == QLatin1String(m.name))
                return m.run(ctx, ctx.args.mid(1));
    }
    ctx.err << "vexcli sample: name a medium\n" << kPackUsage << "damage kinds:\n";
    for (const PackDamageInfo& d : Pack_Damage_Kinds())
        ctx.err << "  " << QString::fromLatin1(d.name).leftJustified(20) << d.what << "\n";
    ctx.err << kUsbUsage << "damage kinds:\n";
    for (const UsbDamageInfo& d : Usb_Damage_Kinds())
        ctx.err << "  " << QString::fromLatin1(d.name).leftJustified(20) << d.what << "\n";
    ctx.err << kFleetUsage;
    return 2;
}

} // namespace vex::cli
