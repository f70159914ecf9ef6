#include "forms/Frm_oversp.h"

#include "analysis/Graph_Surface.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Report_Print.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/frm_Ledger.h"
#include "forms/frm_MarkExplain.h"
#include "store/Cls_DB.h"

#include <QHBoxLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QVBoxLayout>

namespace vex::forms {

Frm_oversp::Frm_oversp(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("일일운행실태분석"));
    Label1 = new QLabel(this);
    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    Command1 = new QPushButton(QStringLiteral("분당 운행그래프"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    cmdMark = new QPushButton(Lang_Text(QStringLiteral("점수 산출 내역"), QStringLiteral("How the mark was counted")), this);
    cmdMark->setObjectName(QStringLiteral("cmdMark"));
    lblNotes = new QPushButton(this);
    lblNotes->setObjectName(QStringLiteral("lblNotes"));
    lblNotes->setFlat(true);
    lblNotes->setStyleSheet(QStringLiteral("color: #b00000; text-align: left"));
    lblNotes->hide();
    cmdPrint = new QPushButton(QStringLiteral("인쇄"), this);
    cmdClose = new QPushButton(QStringLiteral("종료"), this);
    connect(List1, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) { Open_Event(List1->row(item)); });
    connect(Command1, &QPushButton::clicked, this, [this] {
        Report_Selection& sel = Selection();
        sel.Car_Code = car_;
        sel.Driver_Code = driver_;
        sel.Start_Date = day_;
        Open<frmReport_Operation>(parentWidget(), this)->Load_Selection();
    });
    connect(cmdMark, &QPushButton::clicked, this,
            [this] { Open<frm_MarkExplain>(parentWidget(), this)->Show_Trip(car_, driver_, day_); });
    connect(lblNotes, &QPushButton::clicked, this,
            [this] { Open<frm_Ledger>(parentWidget(), this)->Show_Day(car_ + driver_ + day_); });
    connect(cmdPrint, &QPushButton::clicked, this,
            [this] { Print_With_Dialog(this, false, [this](QPagedPaintDevice& d) { Print_List(d); }); });
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(cmdMark);
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdClose);
    auto* box = new QVBoxLayout(this);
    box->addWidget(Label1);
    box->addWidget(lblNotes);
    box->addWidget(List1, 1);
    box->addLayout(buttons);
}

void Frm_oversp::Show_Trip(const QString& car, const QString& driver, const QString& day)
{
    car_ = car;
    driver_ = driver;
    day_ = day;
    Cls_DB& db = *G().DB;
    Label1->setText(LoadResString(632) + QStringLiteral(" ") + car + QStringLiteral("   ") + LoadResString(633) +
                    QStringLiteral(" ") + driver + QStringLiteral(" (") + Driver_Name(db, driver) +
                    QStringLiteral(")   ") + Date_Dash(day));
    // The plausibility notes of the reception that stored the day, one
    // click from the ledger.
    const std::vector<Finding> notes = Notes_Of_Day(db, car + driver + day);
    lblNotes->setVisible(!notes.empty());
    if (!notes.empty())
        lblNotes->setText(Lang_Text(QStringLiteral("⚠ 참고 사항 %1건: %2"), QStringLiteral("⚠ %1 notes: %2"))
                              .arg(notes.size())
                              .arg(Finding_Text(notes.front())));
    List1->clear();
    rows_ = Event_List(db, car, driver, day);
    for (const Event_Row& r : rows_) {
        auto* item = new QListWidgetItem(r.second < 0 ? QStringLiteral("[") + r.text + QStringLiteral("]")
                                                      : QStringLiteral("    ") + r.text);
        if (r.second < 0) {
            QFont bold = item->font();
            bold.setBold(true);
            item->setFont(bold);
        }
        List1->addItem(item);
    }
}

void Frm_oversp::Open_Event(int row)
{
    if (row < 0 || row >= int(rows_.size()) || rows_[size_t(row)].second < 0)
        return;
    const int second = rows_[size_t(row)].second;
    auto* view = Open<frmReport_SecOperation>(parentWidget(), this);
    view->Show_Hour(car_, driver_, day_, second / 3600, second % 3600);
}

void Frm_oversp::Print_List(QPagedPaintDevice& device)
{
    QPainter p(&device);
    Graph_Surface s(p, QRectF(0, 0, device.width(), device.height()), false);
    Page_Title(s, windowTitle());
    s.Set_FontSize(9);
    s.CurrentX = s.ScaleWidth() * 0.05f;
    s.Print(Label1->text());
    for (int i = 0; i < List1->count(); ++i) {
        if (s.CurrentY + s.TextHeight(QStringLiteral("AAA")) > s.ScaleHeight()) {
            device.newPage();
            s.CurrentY = 0;
        }
        s.CurrentX = s.ScaleWidth() * 0.05f;
        s.Print(List1->item(i)->text());
    }
}

} // namespace vex::forms
