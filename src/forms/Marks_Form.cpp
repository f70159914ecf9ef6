#include "forms/Marks_Form.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Report_Print.h"
#include "forms/logic/View_Logic.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

Marks_Form::Marks_Form(const char* name, int titleId, int averageId, int countId, QWidget* parent)
    : Vex_Form(QString::fromLatin1(name), parent), titleId_(titleId)
{
    setWindowTitle(LoadResString(titleId));
    Picture2 = new Graph_Picture(this);
    Picture2->Draw = [this](Graph_Surface& s) { Chart(s, Start(), End()); };
    TDBDate1 = new QDateEdit(this);
    TDBDate2 = new QDateEdit(this);
    for (QDateEdit* d : {TDBDate1, TDBDate2}) {
        d->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        d->setCalendarPopup(true);
    }
    // The selection's period, at least a week back from its last day.
    const Report_Selection& sel = Selection();
    const QDate last = QDate::fromString(QStringLiteral("20") + sel.Start_Date, QStringLiteral("yyyyMMdd"));
    TDBDate2->setDate(last.isValid() ? last : QDate::currentDate());
    TDBDate1->setDate(TDBDate2->date().addDays(-6));
    TDBText1 = new QLineEdit(this);
    TDBText2 = new QLineEdit(this);
    TDBText1->setObjectName(QStringLiteral("TDBText1"));
    TDBText2->setObjectName(QStringLiteral("TDBText2"));
    for (QLineEdit* t : {TDBText1, TDBText2})
        t->setReadOnly(true);
    Command1 = new QPushButton(LoadResString(1142), this);
    Command2 = new QPushButton(LoadResString(503), this);
    Command3 = new QPushButton(LoadResString(504), this);
    Command4 = new QPushButton(LoadResString(628), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command4->setObjectName(QStringLiteral("Command4"));
    connect(Command1, &QPushButton::clicked, this, &Marks_Form::Command1_Click);
    connect(Command2, &QPushButton::clicked, this,
            [this] { Print_Report(this, Selection(), [this](Cls_Report&, Report_Printer& p) { return Print_To(p); }); });
    connect(Command4, &QPushButton::clicked, this, [this] {
        Preview_Report(this, Selection(), [this](Cls_Report&, Report_Printer& p) { return Print_To(p); });
    });
    connect(Command3, &QPushButton::clicked, this, &QWidget::close);

    fields_ = new QGridLayout;
    fields_->addWidget(new QLabel(LoadResString(800), this), 0, 0);
    fields_->addWidget(TDBDate1, 0, 1);
    fields_->addWidget(new QLabel(LoadResString(801), this), 0, 2);
    fields_->addWidget(TDBDate2, 0, 3);
    fields_->addWidget(new QLabel(LoadResString(averageId), this), 1, 0);
    fields_->addWidget(TDBText1, 1, 1);
    fields_->addWidget(new QLabel(LoadResString(countId), this), 1, 2);
    fields_->addWidget(TDBText2, 1, 3);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(Command4);
    buttons->addWidget(Command2);
    buttons->addWidget(Command3);
    auto* box = new QVBoxLayout(this);
    box->addLayout(fields_);
    box->addWidget(Picture2, 1);
    box->addLayout(buttons);
}

QString Marks_Form::Start() const
{
    return TDBDate1->date().toString(QStringLiteral("yyMMdd"));
}

QString Marks_Form::End() const
{
    return TDBDate2->date().toString(QStringLiteral("yyMMdd"));
}

void Marks_Form::Command1_Click()
{
    columns_.clear();
    Search(Start(), End());
    Picture2->Invalidate();
}

bool Marks_Form::Print_To(Report_Printer& printer)
{
    // The period of this form; the selection's day stays for the views.
    Cls_Report report = Selection();
    report.Start_Date = Start();
    report.End_Date = End();
    return Report(report, printer);
}

} // namespace vex::forms
