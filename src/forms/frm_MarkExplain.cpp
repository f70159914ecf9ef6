#include "forms/frm_MarkExplain.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/Report_Print.h"
#include "forms/frmReport_SecOperation.h"
#include "reports/Cls_Report.h"
#include "reports/Report_Trust.h"
#include "store/Cls_DB.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace vex::forms {

frm_MarkExplain::frm_MarkExplain(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(Lang_Text(QStringLiteral("운행 점수 산출 내역"), QStringLiteral("How the mark was counted")));
    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    cmdPrint = new QPushButton(Lang_Text(QStringLiteral("인쇄"), QStringLiteral("Print")), this);
    cmdClose = new QPushButton(Lang_Text(QStringLiteral("종료"), QStringLiteral("Close")), this);
    connect(List1, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) { Open_Row(List1->row(item)); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] {
        Cls_Report report;
        Print_Report(this, report, [this](Cls_Report&, Report_Printer& printer) {
            return Report_Mark_Explanation(printer, *G().DB, explanation_);
        });
    });
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdClose);
    auto* box = new QVBoxLayout(this);
    box->addWidget(List1, 1);
    box->addLayout(buttons);
}

bool frm_MarkExplain::Show_Trip(const QString& car, const QString& driver, const QString& day)
{
    List1->clear();
    firstEvent_ = -1;
    if (!G().DB || !G().Config)
        return false;
    try {
        explanation_ = Explain_Trip(*G().DB, *G().Config, car, driver, day);
    } catch (const RunTimeError& e) {
        Msg_Box(QString::fromUtf8(e.what()));
        return false;
    }
    if (!explanation_.found) {
        Msg_Box(LoadResString(1135));
        return false;
    }
    const QStringList lines = Explanation_Lines(explanation_);
    List1->addItems(lines);
    firstEvent_ = int(lines.size() - explanation_.events.size());
    return true;
}

void frm_MarkExplain::Open_Row(int row)
{
    const int i = row - firstEvent_;
    if (firstEvent_ < 0 || i < 0 || i >= int(explanation_.events.size()))
        return;
    const int second = explanation_.events[size_t(i)].second;
    Open<frmReport_SecOperation>(parentWidget(), this)
        ->Show_Hour(explanation_.car, explanation_.driver, explanation_.day, second / 3600, second % 3600);
}

} // namespace vex::forms
