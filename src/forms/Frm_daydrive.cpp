#include "forms/Frm_daydrive.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "forms/Excel_Show.h"
#include "forms/Frm_oversp.h"
#include "forms/Msg_Box.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/logic/View_Logic.h"
#include "reports/Excel_Grid.h"
#include "store/Cls_DB.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

namespace {

constexpr int kMinuteColumn = 12, kSecondColumn = 13;

} // namespace

Frm_daydrive::Frm_daydrive(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(1256));
    TDBDate1 = new QDateEdit(this);
    TDBDate1->setObjectName(QStringLiteral("TDBDate1"));
    TDBDate1->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    TDBDate1->setCalendarPopup(true);
    Command1 = new QPushButton(LoadResString(704), this);
    Command2 = new QPushButton(QStringLiteral("Excel"), this);
    Grid1 = new QTableWidget(this);
    Grid1->setObjectName(QStringLiteral("Grid1"));
    Grid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    Grid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    Grid1->setMinimumSize(1000, 300); // every column, the two of the views too
    const QStringList heads = {LoadResString(1265), LoadResString(632),  LoadResString(633),
                               LoadResString(846),  LoadResString(847),  LoadResString(1154),
                               LoadResString(1157), LoadResString(1155), LoadResString(1156),
                               QStringLiteral("Idle"), LoadResString(830), QStringLiteral("주행거리"),
                               QStringLiteral("분당 운행그래프"), LoadResString(1298)};
    Grid1->setColumnCount(int(heads.size()));
    Grid1->setHorizontalHeaderLabels(heads);
    Grid1->verticalHeader()->hide();
    connect(Grid1, &QTableWidget::cellClicked, this, &Frm_daydrive::Cell_Clicked);
    connect(Grid1, &QTableWidget::cellDoubleClicked, this, [this](int row, int) { Row_Double_Clicked(row); });
    connect(TDBDate1, &QDateEdit::dateChanged, this, &Frm_daydrive::Show_Day);
    // Both outputs fill the "daystatus.xlt" template, which comes with the reports.
    connect(Command1, &QPushButton::clicked, this, [] { Not_Built(QStringLiteral("daystatus.xlt")); });
    connect(Command2, &QPushButton::clicked, this, &Frm_daydrive::Excel_Export);

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(LoadResString(1033), this));
    top->addWidget(TDBDate1);
    top->addStretch();
    top->addWidget(Command1);
    top->addWidget(Command2);
    auto* box = new QVBoxLayout(this);
    box->addLayout(top);
    box->addWidget(Grid1, 1);

    // The newest stored day.
    QDate day = QDate::currentDate();
    Guarded(1054, [&] {
        Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 ORDER BY D_F4 DESC"));
        if (rs.RecordCount() > 0) {
            const QDate d = QDate::fromString(QStringLiteral("20") + rs.Text(QStringLiteral("D_F4")),
                                              QStringLiteral("yyyyMMdd"));
            if (d.isValid())
                day = d;
        }
    });
    const QSignalBlocker quiet(TDBDate1);
    TDBDate1->setDate(day);
    Show_Day();
}

void Frm_daydrive::Show_Day()
{
    Grid1->setRowCount(0);
    keys_.clear();
    Guarded(1056, [&] {
        const QString day = TDBDate1->date().toString(QStringLiteral("yyMMdd"));
        Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 WHERE D_F4 = ? ORDER BY D_F1"), {day});
        int row = 0;
        for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext(), ++row) {
            auto T = [&](const char* f) { return rs.Text(QLatin1String(f)); };
            const QStringList cells = {QString::number(row + 1), T("D_F2"), T("D_F3"), Time4_To_Text(T("D_F5")),
                                       Time4_To_Text(T("D_F7")), T("D_F11"), T("D_F10"), T("D_F9"), T("D_F13"),
                                       T("D_F12"), T("D_F14"), QString::number(Val(T("D_F8")) / 10, 'f', 1),
                                       QStringLiteral("분당 운행그래프"), QStringLiteral("초당 운행 그래프")};
            Grid1->insertRow(row);
            for (int c = 0; c < cells.size(); ++c)
                Grid1->setItem(row, c, new QTableWidgetItem(cells[c]));
            keys_ << T("D_F2") + T("D_F3") + T("D_F4");
        }
    });
    Grid1->resizeColumnsToContents();
}

void Frm_daydrive::Excel_Export()
{
    // The grid as it stands, without the two view columns.
    Excel_Grid grid;
    grid.templ = QStringLiteral("daystatus.xltx");
    grid.report = QStringLiteral("daystatus");
    grid.title = LoadResString(1256);
    grid.periodLabel = LoadResString(1033);
    grid.period = TDBDate1->date().toString(QStringLiteral("yy-MM-dd"));
    for (int c = 0; c < kMinuteColumn; ++c)
        grid.heads << Grid1->horizontalHeaderItem(c)->text();
    for (int r = 0; r < Grid1->rowCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < kMinuteColumn; ++c)
            cells << (Grid1->item(r, c) ? Grid1->item(r, c)->text() : QString());
        grid.rows.push_back(cells);
    }
    Excel_Show(Excel_Grid_Export(G().App_Dir, grid));
}

void Frm_daydrive::Cell_Clicked(int row, int column)
{
    if (row < 0 || row >= keys_.size() || (column != kMinuteColumn && column != kSecondColumn))
        return;
    Report_Selection& sel = Selection();
    sel.Car_Code = keys_[row].left(6);
    sel.Driver_Code = keys_[row].mid(6, 6);
    sel.Start_Date = keys_[row].right(6);
    if (column == kMinuteColumn) {
        Open<frmReport_Operation>(parentWidget())->Load_Selection();
    } else {
        const int hour = Grid1->item(row, 3)->text().left(2).toInt();
        Open<frmReport_SecOperation>(parentWidget())->Show_Hour(sel.Car_Code, sel.Driver_Code, sel.Start_Date, hour, -1);
    }
}

void Frm_daydrive::Row_Double_Clicked(int row)
{
    if (row < 0 || row >= keys_.size())
        return;
    Open<Frm_oversp>(parentWidget())->Show_Trip(keys_[row].left(6), keys_[row].mid(6, 6), keys_[row].right(6));
}

} // namespace vex::forms
