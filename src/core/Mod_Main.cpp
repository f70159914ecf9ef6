#include "core/Mod_Main.h"

#include "acquisition/AnalyzerLink.h"
#include "acquisition/Cls_IO.h"
#include "acquisition/UsbRecorder.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/VbText.h"
#include "platform/AppFolder.h"
#include "platform/FileSystem.h"
#include "platform/IniFile.h"
#include "platform/SerialPort.h"
#include "store/Cls_DB.h"

#include <QDir>

namespace vex {

Globals::Globals() = default;
Globals::~Globals() = default;
Globals::Globals(Globals&&) noexcept = default;
Globals& Globals::operator=(Globals&&) noexcept = default;

Globals& G()
{
    static Globals globals;
    return globals;
}

void Main_Start(const QString& appDir)
{
    Globals& g = G();
    Guarded(1161, [&] {
        g.Graph_Minutes = 1440.0f;
        g.Graph_Seconds = 3600.0f;
        g.Pack_Mark1 = QStringLiteral("AA");
        g.Pack_Mark2 = QStringLiteral("AA");
        g.Pack_Mark3 = QStringLiteral("11");
        g.Pack_Mark4 = QStringLiteral("5A");
        g.Pack_Mark5 = QStringLiteral("A5");
        g.Pack_Mark6 = QStringLiteral("00");

        g.App_Dir = appDir;
        const QString ini = App_Path(appDir, QStringLiteral("\\MORIX.INI"));
        QDir::setCurrent(appDir);
        g.DB_Server = Read_INI(QStringLiteral("MAIN"), QStringLiteral("MAIN SERVER"), ini);
        g.FS = std::make_unique<FileSystem>(appDir);
        g.Port = std::make_unique<SerialPort>();
        g.Link = std::make_unique<AnalyzerLink>(*g.Port);
        g.Prog_Title = QStringLiteral("VEX");

        // Without a data source none of the shared objects exists, and the
        // login cannot succeed.
        if (g.DB_Server.isEmpty()) {
            Err_Proc(1161, QStringLiteral("no data source: key MAIN SERVER of section MAIN is missing or empty in ") + ini);
            return;
        }
        g.DB_Conn = QStringLiteral("DSN=") + g.DB_Server;
        g.IO = std::make_unique<Cls_IO>();
        g.IO->Link = g.Link.get();
        Register_Usb_Decoders(); // the inbox pass knows every recording
        g.Config = std::make_unique<Cls_Config>();
    });
}

void Main_Shutdown()
{
    Globals& g = G();
    if (g.Port && g.Port->isOpen())
        g.Port->close();
    g.IO.reset();
    g.DB.reset();
    g.Config.reset();
    g.Link.reset();
    g.Port.reset();
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
