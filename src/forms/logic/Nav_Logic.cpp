#include "forms/logic/Nav_Logic.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "platform/Resources.h"
#include "store/Cls_DB.h"

#include <QFileInfo>
#include <QLocale>

namespace vex::forms {

const std::vector<Tree_Node>& Tree_Nodes()
{
    static const std::vector<Tree_Node> nodes = {
        {1, "a", "", 700, ""},
        {2, "b", "", 701, ""},
        {3, "c", "", 702, ""},
        {4, "d", "", 703, ""},
        {5, "e", "", 1141, ""},
        {6, "f", "", 1142, ""},
        {7, "g", "", 705, ""},
        {8, "h", "", 706, ""},
        // Where the figures come from: the ledger of receptions, drivers
        // over time; a group of its own before the end of the program.
        {44, "j", "", 5113, ""},
        {9, "i", "", 710, ""},
        {10, "a1", "a", 707, ""},
        {11, "a2", "a", 1195, ""},
        {12, "a3", "a", 1197, ""},
        {13, "a4", "a", 1198, ""},
        {14, "b1", "b", 617, ""},
        {15, "b2", "b", 618, ""},
        {16, "b3", "b", 615, ""},
        {17, "b4", "b", 1187, ""},
        {18, "c1", "c", 0, "일일운행실태"},
        {19, "c2", "c", 0, "월간운행실태"},
        {20, "d1", "d", 0, "데이터 선택수신"},
        {21, "d2", "d", 0, "파일 수신"},
        {22, "e1", "e", 0, "초당 운행그래프"},
        {23, "e2", "e", 629, ""},
        {24, "e3", "e", 722, ""},
        {25, "e4", "e", 711, ""},
        {26, "e5", "e", 712, ""},
        {27, "e6", "e", 0, "급가속 분석"},
        {28, "e7", "e", 0, "IDLE 분석"},
        {29, "e8", "e", 0, "운전일보"},
        {30, "e9", "e", 0, "구간거리"},
        {31, "e10", "e", 0, "베터리전압 출력"},
        {32, "f1", "f", 716, ""},
        {33, "f2", "f", 717, ""},
        {34, "f3", "f", 0, "운전원별속도별 집계표"},
        {35, "f4", "f", 719, ""},
        {36, "f5", "f", 720, ""},
        {37, "f6", "f", 0, "일자별차량별집계"},
        {38, "g1", "g", 602, ""},
        {39, "g2", "g", 0, "디지털I/O설정"},
        {40, "g3", "g", 0, "노선설정"},
        {41, "g4", "g", 0, "DB정리"},
        {42, "h1", "h", 729, ""},
        {43, "h2", "h", 601, ""},
        {45, "j1", "j", 5114, ""},
        {46, "j2", "j", 5115, ""},
    };
    return nodes;
}

QString Node_Text(const Tree_Node& node)
{
    return node.msgId ? LoadResString(node.msgId) : QString::fromUtf8(node.fixedText);
}

namespace {

Nav_Action Open(const char* form)
{
    Nav_Action a;
    a.kind = Nav_Action::Open;
    a.form = QString::fromLatin1(form);
    return a;
}

Nav_Action Report(const char* form, int option, bool change = true)
{
    Nav_Action a = Open(form);
    a.option = option;
    a.optionChange = change;
    return a;
}

// The group procedures: each takes the node's place within its group.
Nav_Action File_Group(int i)
{
    Nav_Action a;
    switch (i) {
    case 0:
        a = Open("frmDB_Main");
        a.dbType = 0;
        a.captionId = 510;
        break;
    case 1: a = Open("frmPack_export"); break;
    case 2:
        a = Open("frmDB_Main");
        a.dbType = 2;
        a.captionId = 1197;
        break;
    case 3:
        a = Open("frmPack_delete");
        a.captionId = 1198;
        break;
    }
    return a;
}

Nav_Action Master_Group(int i)
{
    static const char* forms[] = {"frmRegister_Car", "frmRegister_Driver", "frmRegister_Average", "frm_Equipment"};
    return i >= 0 && i < 4 ? Open(forms[i]) : Nav_Action{};
}

Nav_Action Driving_Group(int i)
{
    static const char* forms[] = {"Frm_daydrive", "frm_CarCondition"};
    return i >= 0 && i < 2 ? Open(forms[i]) : Nav_Action{};
}

Nav_Action Reception_Group(int i)
{
    static const char* forms[] = {"frmPack_Read", "frmDB_Main1"};
    return i >= 0 && i < 2 ? Open(forms[i]) : Nav_Action{};
}

// Options 0 to 8 of frmReport_Main, 9 the section distance window; the
// battery voltage entry stands after it in the tree but is option 8.
Nav_Action Analysis_Group(int option)
{
    if (option >= 0 && option <= 8)
        return Report("frmReport_Main", option);
    if (option == 9) {
        Nav_Action a = Open("frm_dayreport");
        a.option = 9;
        return a;
    }
    return {};
}

Nav_Action Lookup_Group(int option)
{
    return option >= 0 && option <= 5 ? Report("frmReport_Reference", option) : Nav_Action{};
}

Nav_Action Tool_Group(int i)
{
    static const char* forms[] = {"frm_Config", "Form_regio", "frm_Nosun", "frm_DBk"};
    return i >= 0 && i < 4 ? Open(forms[i]) : Nav_Action{};
}

Nav_Action Help_Group(int i)
{
    Nav_Action a;
    if (i == 0)
        a.kind = Nav_Action::Help;
    else if (i == 1)
        a = Open("frm_About");
    return a;
}

} // namespace

Nav_Action Tree_Action(int index)
{
    if (index == 9) {
        Nav_Action a;
        a.kind = Nav_Action::Exit;
        return a;
    }
    if (index >= 10 && index <= 13)
        return File_Group(index - 10);
    if (index >= 14 && index <= 17)
        return Master_Group(index - 14);
    if (index >= 18 && index <= 19)
        return Driving_Group(index - 18);
    if (index >= 20 && index <= 21)
        return Reception_Group(index - 20);
    if (index >= 22 && index <= 31) {
        // e1..e8 are options 0..7, e9 the section distance (9), e10 option 8.
        static const int options[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 8};
        return Analysis_Group(options[index - 22]);
    }
    if (index >= 32 && index <= 37)
        return Lookup_Group(index - 32);
    if (index >= 38 && index <= 41)
        return Tool_Group(index - 38);
    if (index >= 42 && index <= 43)
        return Help_Group(index - 42);
    if (index == 45)
        return Open("frm_Ledger");
    if (index == 46)
        return Open("frm_DriverTrend");
    return {};
}

Nav_Action Button_Action(int button)
{
    switch (button) {
    case 1: return Report("frmReport_Main", 2);
    case 2: return Open("Frm_drv");
    case 3: return Open("frm_dbmove");
    case 4: return Report("frmReport_Main", 1, false); // Report_Kind only, no option change
    case 5: return Report("frmReport_Main", 0);
    case 6: return Open("Frm_daydrive");
    case 7: return Report("frmReport_Main", 5);
    case 8: return Open("frm_CarCondition");
    case 9: return Open("frmPack_Read1");
    case 10: {
        Nav_Action a;
        a.kind = Nav_Action::Open;
        a.form = QStringLiteral("Remote reception");
        a.remote = true;
        return a;
    }
    case 11: return Open("Frm_st");
    case 12: return Open("frmPack_export2");
    case 13: return Open("frm_overfuel");
    }
    return {};
}

QString Button_Caption(int button)
{
    switch (button) {
    case 1: return QStringLiteral("급제동분석");
    case 2: return QStringLiteral("운전원 번호 등록");
    case 3: return QStringLiteral("기존DB불러오기");
    case 4: return QStringLiteral("분당 운행그래프");
    case 5: return QStringLiteral("초당 운행그래프");
    case 6: return LoadResString(1256);
    case 7: return QStringLiteral("급가속분석");
    case 8: return LoadResString(1257);
    case 9: return QStringLiteral("데이터 수신");
    case 10: return QStringLiteral("원격수신");
    case 11: return QStringLiteral("공단제출배열");
    case 12: return QStringLiteral("운전자 변경");
    case 13: return QStringLiteral("연료과소모조회");
    }
    return {};
}

bool DB_Size_Fires(qint64 size)
{
    return size < 0 || size >= kDB_Size_Limit;
}

qint64 DB_File_Length(const QString& path)
{
    const QFileInfo fi(path);
    if (!fi.exists())
        return 0;
    // A length of 2 GB and more overflows the signed 32-bit value the test
    // was made on and reads as negative.
    return fi.size() >= (qint64(1) << 31) ? -1 : fi.size();
}

QString Live_DB_File()
{
    const Globals& g = G();
    if (g.DB && g.DB->Target().engine == Engine::Sqlite)
        return g.DB->Target().database;
    return App_Path(g.App_Dir, QStringLiteral("\\db\\morix.mdb"));
}

QString DB_Full_Text()
{
    return QStringLiteral("DB 용량이 가득차있읍니다. 데이터를 백업하고 압축 최적화를 시행합니다. 백업할 기간을 선택하세요 !");
}

QString Language_Name()
{
    const QString forced = qEnvironmentVariable("VEX_LANG").trimmed().toLower();
    if (forced == QLatin1String("ko"))
        return QStringLiteral("Korean");
    if (forced == QLatin1String("en"))
        return QStringLiteral("English");
    if (forced == QLatin1String("zh"))
        return QStringLiteral("Chinese");
    return QLocale::languageToString(QLocale::system().language());
}

QStringList Help_Paths(const QString& appDir)
{
    return {App_Path(appDir, QStringLiteral("\\Help\\VEX.html")),
            App_Path(appDir, QStringLiteral("\\Helpeng\\VEXeng.html")),
            App_Path(appDir, QStringLiteral("\\Helpchinese\\VEXchinese.html"))};
}

QString Help_File_For(const QString& appDir, const QString& languageName)
{
    const QStringList paths = Help_Paths(appDir);
    if (languageName == QLatin1String("Korean"))
        return paths[0];
    if (languageName == QLatin1String("Chinese"))
        return paths[2];
    return paths[1];
}

QString Help_Resource(const QString& appDir, const QString& helpPath)
{
    static const char* resources[] = {"Help/VEX.html", "Helpeng/VEXeng.html", "Helpchinese/VEXchinese.html"};
    const QStringList paths = Help_Paths(appDir);
    for (int i = 0; i < 3; ++i)
        if (paths[i] == helpPath)
            return Resource_Path(QString::fromLatin1(resources[i]));
    return {};
}

} // namespace vex::forms
