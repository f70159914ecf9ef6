#include "exchange/Row_Checks.h"

#include "core/Codes.h"
#include "core/Printable.h"
#include "exchange/Exchange_Tables.h"
#include "store/Schema.h"

#include <cmath>

namespace vex {

namespace {

// No count, distance, time or mark of one day comes near: a day has 86,400
// seconds and a recorder's speed stays under 256 km/h.
constexpr double kDay_Number_Limit = 1e6;

QString Cell_Text(const Source_Table& rows, const QVariantList& row, const QString& column)
{
    return rows.Value(row, column).toString();
}

} // namespace

QString Row_Refusal(const Table& def, const Source_Table& rows, const QVariantList& row)
{
    const QString key = Cell_Text(rows, row, QStringLiteral("D_F1"));
    if (Day_Tables().contains(def.name)) {
        if (key.size() != 18 || !Is_Code(key.left(6)) || !Is_Code(key.mid(6, 6)) || !Is_Day(key.right(6)))
            return QStringLiteral("the key is no car, driver and day");
        if (def.name == QLatin1String("D_D1")) {
            const auto differs = [&](const QString& column, const QString& expected) {
                const QVariant v = rows.Value(row, column);
                return !v.isNull() && v.toString() != expected;
            };
            if (differs(QStringLiteral("D_F2"), key.left(6)) || differs(QStringLiteral("D_F3"), key.mid(6, 6))
                || differs(QStringLiteral("D_F4"), key.right(6)))
                return QStringLiteral("car, driver or day differ from the key");
            const QString end = Cell_Text(rows, row, QStringLiteral("D_F6"));
            if (!end.isEmpty() && !Is_Day(end))
                return QStringLiteral("the end day is no day");
        }
    } else if ((def.name == QLatin1String("S_D1") || def.name == QLatin1String("S_D2")) && !Is_Code(key)) {
        return QStringLiteral("the key is no code");
    }
    for (const Column& c : def.columns) {
        if (c.type == ColType::Text)
            continue;
        const QString text = Cell_Text(rows, row, c.name).trimmed();
        if (text.isEmpty())
            continue;
        bool ok = false;
        const double value = text.toDouble(&ok);
        if (!ok || !std::isfinite(value) || value < 0 || value > kDay_Number_Limit)
            return QStringLiteral("%1 is out of range: %2").arg(c.name, Printable(text, 40));
    }
    return {};
}

} // namespace vex
