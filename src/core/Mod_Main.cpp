#include "core/Mod_Main.h"

#include "core/VbText.h"

namespace vex {

Globals& G()
{
    static Globals globals;
    return globals;
}

void Status_Text(QString& text)
{
    Globals& g = G();
    if (text.isEmpty())
        text = g.Prog_Title;
    if (g.Status_Sink)
        g.Status_Sink(text);
}

namespace {

QString Dashed(const QString& yyyy, const QString& mm, const QString& dd)
{
    return yyyy + QLatin1Char('-') + mm + QLatin1Char('-') + dd;
}

} // namespace

QDate Zero_Date()
{
    return QDate(1899, 12, 30);
}

QDate Date8_To_Date(const QString& yyyymmdd)
{
    if (yyyymmdd.size() != 8 || !All_Digits(yyyymmdd))
        return Zero_Date();
    const QDate d(yyyymmdd.left(4).toInt(), yyyymmdd.mid(4, 2).toInt(), yyyymmdd.mid(6, 2).toInt());
    return d.isValid() ? d : Zero_Date();
}

QString Time4_To_Text(const QString& hhmm)
{
    if (hhmm.size() != 4 || !All_Digits(hhmm))
        return {};
    return hhmm.left(2) + QLatin1Char(':') + hhmm.mid(2, 2);
}

QString Date6_To_Date8(const QString& text)
{
    if (text.size() == 6)
        return QStringLiteral("20") + text;
    if (text.size() == 8)
        return text;
    return {};
}

QString Date_Dash(const QString& text)
{
    if (text.size() == 6)
        return Dashed(QStringLiteral("20") + text.left(2), text.mid(2, 2), text.mid(4, 2));
    if (text.size() == 8)
        return Dashed(text.left(4), text.mid(4, 2), text.mid(6, 2));
    return {};
}

QString Date_Dash10(const QString& text)
{
    if (text.size() == 10)
        return Date_Dash(text.left(6));
    return Date_Dash(text);
}

QString Min_To_HHMM(int16_t minutes)
{
    const QString hhmm = HHMM_Of_Minutes(minutes);
    return hhmm.left(2) + QLatin1Char(':') + hhmm.mid(2);
}

Form_Size Form_Place_Size(const QString& formName, bool captionOpen)
{
    struct Row {
        const char* names[2];
        Form_Size size;
    };
    static const Row rows[] = {
        {{"frmReport_Reference", "frmReport_Main"}, {11730, 5280}},
        {{"frmReport_Operation", nullptr}, {13560, 8925}},
        {{"frmReport_DriveDay1", nullptr}, {14820, 10215}},
        {{"frmReport_QuickBrake", nullptr}, {11880, 8160}},
        {{"frmReport_DayAVG", nullptr}, {11880, 8040}},
        {{"frmPack_Write", nullptr}, {5910, 3735}},
        {{"frm_Config", nullptr}, {7680, 7920}},
        {{"frmPack_Read", nullptr}, {5970, 6600}},
        {{"frmDB_Main", nullptr}, {7425, 3210}},
        {{"frm_About", nullptr}, {5220, 2745}},
        {{"frmReport_Minuteness", nullptr}, {13560, 8025}},
        {{"frm_Inspection", "frmRegister_Average"}, {9360, 7215}},
        {{"frmPack_Data", nullptr}, {9495, 6180}},
    };
    for (const Row& row : rows) {
        const bool inspectionRow = QLatin1String(row.names[0]) == QLatin1String("frm_Inspection");
        // With a window of the same caption open, the test of this row asks
        // for both names at once and never holds: these two take the last row.
        if (inspectionRow && captionOpen)
            continue;
        for (const char* name : row.names)
            if (name && formName == QLatin1String(name))
                return row.size;
    }
    return {8385, 6180};
}

} // namespace vex
