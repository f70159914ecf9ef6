#include "forms/frm_Ledger.h"

#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "forms/Msg_Box.h"
#include "forms/logic/View_Logic.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_SecOperation.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

namespace vex::forms {

namespace {

// What an item stands for: the stored key and the second of a day or note.
constexpr int kLedgerKeyRole = Qt::UserRole + 1;
constexpr int kSecondRole = Qt::UserRole + 2;

QString Outcome_Text(const QString& outcome)
{
    if (outcome == QLatin1String("stored"))
        return Lang_Text(QStringLiteral("저장"), QStringLiteral("stored"));
    if (outcome == QLatin1String("skipped"))
        return Lang_Text(QStringLiteral("건너뜀"), QStringLiteral("skipped"));
    if (outcome == QLatin1String("kept"))
        return Lang_Text(QStringLiteral("남김"), QStringLiteral("kept"));
    if (outcome == QLatin1String("refused"))
        return Lang_Text(QStringLiteral("거부"), QStringLiteral("refused"));
    if (outcome == QLatin1String("undriven"))
        return Lang_Text(QStringLiteral("운행 없음"), QStringLiteral("no driving"));
    return outcome;
}

QString Span_Text(const Ledger_Day& d)
{
    if (d.first.size() < 10 || d.last.size() < 10)
        return {};
    return d.first.mid(6, 2) + QLatin1Char(':') + d.first.mid(8, 2) + QLatin1Char('-') + d.last.mid(6, 2)
           + QLatin1Char(':') + d.last.mid(8, 2);
}

} // namespace

frm_Ledger::frm_Ledger(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(5114));
    txtFrom = new QLineEdit(this);
    txtTo = new QLineEdit(this);
    txtCar = new QLineEdit(this);
    txtDriver = new QLineEdit(this);
    for (QLineEdit* e : {txtFrom, txtTo, txtCar, txtDriver})
        e->setMaxLength(6);
    txtFrom->setPlaceholderText(QStringLiteral("YYMMDD"));
    txtTo->setPlaceholderText(QStringLiteral("YYMMDD"));
    cboKind = new QComboBox(this);
    cboKind->addItem(Lang_Text(QStringLiteral("모든 참고 사항"), QStringLiteral("every kind of note")), QString());
    for (int k = 0; k <= int(Finding_Kind::Unknown_Driver); ++k)
        cboKind->addItem(Finding_Kind_Name(Finding_Kind(k)), Finding_Kind_Name(Finding_Kind(k)));
    chkNotes = new QCheckBox(Lang_Text(QStringLiteral("참고 사항이 있는 날만"), QStringLiteral("days with a note only")), this);
    cmdSearch = new QPushButton(Lang_Text(QStringLiteral("조회"), QStringLiteral("Search")), this);
    cmdClose = new QPushButton(Lang_Text(QStringLiteral("종료"), QStringLiteral("Close")), this);
    Tree = new QTreeWidget(this);
    Tree->setObjectName(QStringLiteral("Tree"));
    Tree->setColumnCount(3);
    Tree->setHeaderLabels({Lang_Text(QStringLiteral("수신 / 날짜 / 시각"), QStringLiteral("reception / day / time")),
                           Lang_Text(QStringLiteral("종류"), QStringLiteral("kind")),
                           Lang_Text(QStringLiteral("내용"), QStringLiteral("what"))});
    Tree->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    Tree->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    Tree->header()->setStretchLastSection(false);
    Tree->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    lblCount = new QLabel(this);

    auto* filters = new QGridLayout;
    filters->addWidget(new QLabel(Lang_Text(QStringLiteral("기간"), QStringLiteral("days")), this), 0, 0);
    filters->addWidget(txtFrom, 0, 1);
    filters->addWidget(txtTo, 0, 2);
    filters->addWidget(new QLabel(LoadResString(632), this), 0, 3);
    filters->addWidget(txtCar, 0, 4);
    filters->addWidget(new QLabel(LoadResString(633), this), 0, 5);
    filters->addWidget(txtDriver, 0, 6);
    filters->addWidget(cboKind, 1, 1, 1, 2);
    filters->addWidget(chkNotes, 1, 3, 1, 3);
    filters->addWidget(cmdSearch, 1, 6);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(lblCount, 1);
    bottom->addWidget(cmdClose);
    auto* box = new QVBoxLayout(this);
    box->addLayout(filters);
    box->addWidget(Tree, 1);
    box->addLayout(bottom);

    connect(cmdSearch, &QPushButton::clicked, this, [this] { Search(); });
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    connect(Tree, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) { Open_Item(item); });
    Search();
}

bool frm_Ledger::Search()
{
    Ledger_Filter f;
    f.from = txtFrom->text().trimmed();
    f.to = txtTo->text().trimmed();
    f.car = txtCar->text().trimmed().toUpper();
    f.driver = txtDriver->text().trimmed().toUpper();
    f.kind = cboKind->currentData().toString();
    f.findingsOnly = chkNotes->isChecked();
    if ((!f.from.isEmpty() && !Is_Day(f.from)) || (!f.to.isEmpty() && !Is_Day(f.to))
        || (!f.car.isEmpty() && !Is_Code(f.car)) || (!f.driver.isEmpty() && !Is_Code(f.driver))) {
        Msg_Box(Lang_Text(QStringLiteral("기간은 YYMMDD, 차량과 운전자는 6자리 코드로 입력하세요"),
                          QStringLiteral("Give the days as YYMMDD and the car and driver as codes of six characters")));
        return false;
    }
    Tree->clear();
    if (!G().DB)
        return false;
    try {
        entries_ = Read_Ledger(*G().DB, f);
    } catch (const RunTimeError& e) {
        Msg_Box(QString::fromUtf8(e.what()));
        return false;
    }
    int notes = 0;
    for (const Ledger_Entry& e : entries_) {
        auto* top = new QTreeWidgetItem(Tree, {e.when, Road_Name(e.road),
                                               e.summary + QStringLiteral("  ·  ") + e.source + QStringLiteral(" (") + e.pc
                                                   + QLatin1Char(')')});
        for (const Ledger_Day& d : e.days) {
            auto* day = new QTreeWidgetItem(top, {d.what, Outcome_Text(d.outcome),
                                                  Span_Text(d) + (d.why.isEmpty() ? QString() : QStringLiteral("  ") + d.why)});
            if (d.outcome == QLatin1String("stored")) {
                day->setData(0, kLedgerKeyRole, d.what);
                day->setData(0, kSecondRole, -1);
            }
            for (const Finding& n : d.findings) {
                auto* note = new QTreeWidgetItem(day, {n.second < 0 ? QString() : Clock_Of_Second(n.second),
                                                       Finding_Kind_Name(n.kind),
                                                       Finding_Text(Finding{n.kind, -1, n.measured, n.reference, n.other})});
                note->setData(0, kLedgerKeyRole, d.what);
                note->setData(0, kSecondRole, n.second);
                ++notes;
            }
            day->setExpanded(!d.findings.empty());
        }
        top->setExpanded(true);
    }
    lblCount->setText(Lang_Text(QStringLiteral("수신 %1건, 참고 사항 %2건"), QStringLiteral("%1 receptions, %2 notes"))
                          .arg(entries_.size())
                          .arg(notes));
    return true;
}

void frm_Ledger::Show_Day(const QString& key)
{
    txtFrom->setText(key.right(6));
    txtTo->setText(key.right(6));
    txtCar->setText(key.left(6));
    txtDriver->setText(key.mid(6, 6));
    cboKind->setCurrentIndex(0);
    chkNotes->setChecked(false);
    Search();
}

void frm_Ledger::Open_Item(QTreeWidgetItem* item)
{
    const QString key = item ? item->data(0, kLedgerKeyRole).toString() : QString();
    if (key.size() != 18)
        return;
    const int second = item->data(0, kSecondRole).toInt();
    if (second >= 0) {
        auto* view = Open<frmReport_SecOperation>(parentWidget(), this);
        if (view->Show_Hour(key.left(6), key.mid(6, 6), key.right(6), second / 3600, second % 3600))
            return;
        view->close(); // a day without second data: its minutes then
    }
    Report_Selection& sel = Selection();
    sel.Car_Code = key.left(6);
    sel.Driver_Code = key.mid(6, 6);
    sel.Start_Date = key.right(6);
    Open<frmReport_Operation>(parentWidget(), this)->Load_Selection();
}

} // namespace vex::forms
