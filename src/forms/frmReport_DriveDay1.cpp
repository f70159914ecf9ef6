#include "forms/frmReport_DriveDay1.h"

#include "analysis/Cls_Inspection.h"
#include "analysis/Operation_Graph.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "forms/Msg_Box.h"
#include "forms/Report_Print.h"
#include "forms/frm_MarkExplain.h"
#include "forms/logic/View_Logic.h"
#include "reports/Cls_Report.h"
#include "reports/Report_Text.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <algorithm>

namespace vex::forms {

namespace {

constexpr int16_t kErrDriveDay_Load = 1054;
constexpr int16_t kErrDriveDay_Command2 = 1055;
constexpr int16_t kErrDriveDay_Grid_Draw = 1056;
constexpr int16_t kErrDriveDay_Data_View = 1057;
constexpr int16_t kErrDriveDay_DB_View = 1058;

QString M(int id)
{
    return LoadResString(id);
}

QString HHMM(int minutes)
{
    return QStringLiteral("%1:%2").arg(minutes / 60, 2, 10, QLatin1Char('0')).arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

QTableWidget* Grid(QWidget* parent, const char* name, const QStringList& heads)
{
    auto* g = new QTableWidget(0, int(heads.size()), parent);
    g->setObjectName(QLatin1String(name));
    g->setHorizontalHeaderLabels(heads);
    g->setEditTriggers(QAbstractItemView::NoEditTriggers);
    g->verticalHeader()->setVisible(false);
    g->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    g->horizontalHeader()->setStretchLastSection(true);
    return g;
}

void Add_Row(QTableWidget* g, const QStringList& cells)
{
    const int row = g->rowCount();
    g->insertRow(row);
    for (int c = 0; c < cells.size() && c < g->columnCount(); ++c)
        g->setItem(row, c, new QTableWidgetItem(cells[c]));
}

} // namespace

frmReport_DriveDay1::frmReport_DriveDay1(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(M(627));
    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Grid1 = Grid(this, "Grid1", {M(845), M(846), M(847), M(839), M(848), M(849), M(840), M(850), M(851), M(852), M(843)});
    Grid2 = Grid(this, "Grid2",
                 {M(859), M(1178), M(861), M(866), M(867), M(821), M(822), M(820), M(1177), QStringLiteral("연료소모량")});
    Grid3 = Grid(this, "Grid3", {M(1183), QStringLiteral("정비내역"), QStringLiteral("운행거리")});
    Grid4 = Grid(this, "Grid4", {M(881), M(824), M(825), M(827), M(826), M(828), M(829)});
    VSFlexGrid5 = Grid(this, "VSFlexGrid5", {M(1187), QStringLiteral("%")});
    const int choices[3] = {627, 841, 1132};
    auto* kinds = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
        Option1[i] = new QRadioButton(M(choices[i]), this);
        Option1[i]->setObjectName(QStringLiteral("Option1_%1").arg(i));
        kinds->addWidget(Option1[i]);
    }
    Option1[0]->setChecked(true);
    Command1 = new QPushButton(M(628), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(M(704), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command3 = new QPushButton(M(504), this);
    cmdMark = new QPushButton(Lang_Text(QStringLiteral("점수 산출 내역"), QStringLiteral("How the mark was counted")), this);
    cmdMark->setObjectName(QStringLiteral("cmdMark"));
    connect(cmdMark, &QPushButton::clicked, this, [this] {
        const Report_Selection& sel = Selection();
        Open<frm_MarkExplain>(parentWidget(), this)->Show_Trip(sel.Car_Code, sel.Driver_Code, sel.Start_Date);
    });
    connect(Command1, &QPushButton::clicked, this, [this] {
        Preview_Report(this, Selection(), [this](Cls_Report& r, Report_Printer& p) { return Routine(r, p); });
    });
    connect(Command2, &QPushButton::clicked, this, [this] {
        Print_Report(this, Selection(), [this](Cls_Report& r, Report_Printer& p) { return Routine(r, p); });
    });
    connect(Command3, &QPushButton::clicked, this, &QWidget::close);
    kinds->addStretch();
    kinds->addWidget(cmdMark);
    kinds->addWidget(Command1);
    kinds->addWidget(Command2);
    kinds->addWidget(Command3);

    auto* lower = new QGridLayout;
    lower->addWidget(Grid2, 0, 0, 1, 2);
    lower->addWidget(Grid3, 1, 0);
    lower->addWidget(Grid4, 2, 0);
    lower->addWidget(VSFlexGrid5, 1, 1, 2, 1);
    auto* box = new QVBoxLayout(this);
    box->addWidget(Label1);
    box->addWidget(Grid1, 3);
    box->addLayout(lower, 2);
    box->addLayout(kinds);
    if (G().DB)
        og_ = std::make_unique<Operation_Graph>(*G().DB);
}

frmReport_DriveDay1::~frmReport_DriveDay1() = default;

bool frmReport_DriveDay1::Show_Day()
{
    bool found = false;
    Guarded(kErrDriveDay_Load, [&] {
        for (QTableWidget* g : {Grid1, Grid2, Grid3, Grid4, VSFlexGrid5})
            g->setRowCount(0);
        if (!og_)
            return;
        found = Data_View();
        const Cls_Report& sel = Selection();
        Label1->setText(M(632) + QStringLiteral(" : ") + sel.Car_Code + QStringLiteral("    ") + M(633) +
                        QStringLiteral(" : ") + sel.Driver_Code + QStringLiteral("    ") + M(837) +
                        QStringLiteral(" : ") + Date_Dash(sel.Start_Date));
        if (!found) {
            Msg_Box(1135);
            Back_In_Front();
            return;
        }
        DB_View();
        Grid_Draw();
    });
    return found;
}

bool frmReport_DriveDay1::Data_View()
{
    bool found = false;
    Guarded(kErrDriveDay_Data_View, [&] {
        const Cls_Report& sel = Selection();
        Operation_Graph& og = *og_;
        og.Set_Zoom_Window(24, 0, 24);
        found = og.DB_Search_Data(nullptr, sel.Car_Code, sel.Driver_Code, sel.Start_Date);
        if (found)
            og.DB_Search_Data2(nullptr, sel.Car_Code, sel.Driver_Code, sel.Start_Date);
    });
    return found;
}

void frmReport_DriveDay1::DB_View()
{
    Guarded(kErrDriveDay_DB_View, [&] {
        Cls_DB& db = *G().DB;
        const Operation_Graph& og = *og_;
        const Stored_Trip& trip = og.Trip;
        const Cls_Report& sel = Selection();
        double driven = 0, total = 0;
        for (const Day_Section& s : og.Sections) {
            const bool driving = s.Kind == kDriving;
            if (driving)
                driven += s.Distance;
            total += s.Distance;
            Add_Row(Grid1, {QString(), s.Start, s.End, s.Kind, QString(), s.Length,
                            driving ? Km_Text(s.Distance) : QString(), QString(), QString(), Km_Text(s.Distance)});
        }
        Add_Row(Grid1, {M(877), QString(), QString(), QString(), QString(), HHMM(og.Total_Time), Km_Text(driven),
                        QString(), QString(), Km_Text(total)});

        int highest = 0;
        for (int k = 1; k <= 1440; ++k)
            highest = std::max<int>(highest, og.Speed_Search(k));
        Add_Row(Grid2, {HHMM(og.Total_Time), QString(), HHMM(og.Sum_DriveTime), HHMM(og.Sum_BDriveTime),
                        HHMM(og.Total_Time), Hhmm_Text(trip.startTime), Hhmm_Text(trip.endTime),
                        Km_Text(Val(trip.distance)), QString::number(highest),
                        Litres_Text(Rated_Litres(db, sel.Car_Code, Val(trip.distance)))});

        if (G().Config->C_Oil == 1) {
            Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_M1 WHERE D_F1 = ?"), {sel.Car_Code});
            for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
                Add_Row(Grid3, {rs.Text(QStringLiteral("D_F2")), rs.Text(QStringLiteral("D_F4")),
                                rs.Text(QStringLiteral("D_F5"))});
        }
        // No input measures the engine's over-revving, and under drive is
        // always 0.
        Add_Row(Grid4, {QString::number(trip.mark), QString::number(trip.overspeedMinutes), trip.accelerations,
                        trip.brakes, trip.longOverspeeds, QStringLiteral("0"), QStringLiteral("0")});
    });
}

void frmReport_DriveDay1::Grid_Draw()
{
    Guarded(kErrDriveDay_Grid_Draw, [&] {
        for (const Inspection_Share& s : Inspection_Shares(*G().DB, Selection().Car_Code))
            Add_Row(VSFlexGrid5, {s.item, s.share});
    });
}

bool frmReport_DriveDay1::Routine(Cls_Report& report, Report_Printer& printer)
{
    bool ok = false;
    Guarded(kErrDriveDay_Command2, [&] {
        Cls_DB& db = *G().DB;
        if (Option1[1]->isChecked())
            ok = report.Report_inspection_Day(printer, db);
        else if (Option1[2]->isChecked())
            ok = report.Report_Drive_Sections(printer, db);
        else
            ok = report.Report_Drive_Day(printer, db);
    });
    return ok;
}

bool frmReport_DriveDay1::Print_To(Report_Printer& printer)
{
    return Routine(Selection(), printer);
}

} // namespace vex::forms
