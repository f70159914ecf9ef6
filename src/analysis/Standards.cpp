#include "analysis/Standards.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "registers/Settings_Load.h"
#include "store/Cls_DB.h"

namespace vex {

namespace {

const char* const kCaptions[kStandards] = {
    "기준점수",          "기준거리",          "기준속도",          "과속 공제점수",     "급제동 공제점수",
    "급가속 공제점수",   "장기과속 공제점수", "IDLE 공제점수",     "급제동 기준(km/h)", "급가속 기준(km/h)",
    "장기 과속 기준(분)", "IDLE 기준(분)",     nullptr, // message 1071
};

QString Column(int i)
{
    return QStringLiteral("D_F%1").arg(i);
}

// A whole number as the column holds it: 100 and 100.0 read alike.
QString Whole_Text(const QVariant& v)
{
    if (v.isNull())
        return {};
    bool ok = false;
    const double d = v.toDouble(&ok);
    if (ok && d == qint64(d))
        return QString::number(qint64(d));
    return v.toString().trimmed();
}

} // namespace

QString Standard_Caption(int i)
{
    if (i < 1 || i > kStandards)
        return {};
    return kCaptions[i - 1] ? QString::fromUtf8(kCaptions[i - 1]) : LoadResString(1071);
}

Standard_Values Standards_Load(Cls_DB& db)
{
    Standard_Values values;
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D10"));
    if (rs.RecordCount() > 0)
        for (int i = 1; i <= kStandards; ++i)
            values[size_t(i - 1)] = Whole_Text(rs.Field(Column(i)));
    return values;
}

QString Standard_Error(int i, const QString& text)
{
    const QString t = text.trimmed();
    bool ok = !t.isEmpty();
    for (const QChar c : t)
        ok = ok && c.isDigit() && c.unicode() < 0x80;
    const qint64 high = i == 5 ? 2147483647LL : 32767LL;
    if (ok) {
        const qint64 v = t.toLongLong(&ok);
        ok = ok && v <= high;
    }
    if (ok)
        return {};
    return QStringLiteral("%1 : \"%2\" - 0 ~ %3 의 정수만 입력할 수 있습니다.").arg(Standard_Caption(i), text).arg(high);
}

void Standards_Save(Cls_DB& db, Cls_Config& cfg, const Standard_Values& values)
{
    for (int i = 1; i <= kStandards; ++i) {
        const QString why = Standard_Error(i, values[size_t(i - 1)]);
        if (!why.isEmpty())
            throw RunTimeError(QStringLiteral("Type mismatch: ") + why);
    }
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D10"));
    if (rs.RecordCount() < 1)
        rs.AddNew();
    auto number = [&](int i) { return values[size_t(i - 1)].trimmed().toLongLong(); };
    // The first column is text, the others numbers.
    rs.Set(Column(1), values[0].trimmed());
    for (int i = 2; i <= kStandards; ++i)
        rs.Set(Column(i), number(i));
    rs.Update();
    rs.Close();
    // The program counts with the new numbers from now on.
    cfg.B_Val1 = values[0].trimmed();
    cfg.B_Val2 = int16_t(number(2));
    cfg.B_Val3 = int16_t(number(3));
    cfg.B_Val4 = int16_t(number(4));
    cfg.B_Val5 = int32_t(number(5));
    int16_t* rest[] = {&cfg.B_Val6, &cfg.B_Val7, &cfg.B_Val8, &cfg.B_Val9,
                       &cfg.B_Val10, &cfg.B_Val11, &cfg.B_Val12, &cfg.B_Val13};
    for (int k = 0; k < 8; ++k)
        *rest[k] = int16_t(number(6 + k));
}

Standard_Values Standards_In_Force(const Cls_Config& c)
{
    const qint64 numbers[] = {c.B_Val2, c.B_Val3, c.B_Val4,  c.B_Val5,  c.B_Val6,  c.B_Val7,
                              c.B_Val8, c.B_Val9, c.B_Val10, c.B_Val11, c.B_Val12, c.B_Val13};
    Standard_Values values;
    values[0] = c.B_Val1;
    for (int k = 0; k < 12; ++k)
        values[size_t(k + 1)] = QString::number(numbers[k]);
    return values;
}

Cls_Config Standards_Stored(Cls_DB& db, const Cls_Config& config)
{
    Cls_Config standards = config;
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D10 ORDER BY D_F1 DESC"));
    if (rs.RecordCount() > 0)
        Read_S_D10(rs, standards);
    return standards;
}

QString Standards_Missing(Cls_DB& db)
{
    const Standard_Values stored = Standards_Load(db);
    for (int i = 1; i <= kStandards; ++i)
        if (stored[size_t(i - 1)].isEmpty())
            return QStringLiteral("평가기준이 저장되어 있지 않습니다 (%1). 기준을 먼저 저장하십시오.")
                .arg(Standard_Caption(i));
    return {};
}

} // namespace vex
