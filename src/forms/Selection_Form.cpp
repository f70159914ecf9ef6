#include "forms/Selection_Form.h"

#include "core/Messages.h"
#include "forms/Keep_Progress.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

Selection_Form::Selection_Form(const QString& formName, const QString& title, const QString& run, QWidget* parent)
    : Vex_Form(formName, parent)
{
    setWindowTitle(title);
    for (int i = 0; i < 2; ++i) {
        TDBDate1[i] = new QDateEdit(QDate::currentDate(), this);
        TDBDate1[i]->setObjectName(QStringLiteral("TDBDate1_%1").arg(i));
        TDBDate1[i]->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        TDBDate1[i]->setCalendarPopup(true);
    }
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo1->addItems(Register_Codes(QStringLiteral("S_D1")));
    Combo2 = new QComboBox(this);
    Combo2->setObjectName(QStringLiteral("Combo2"));
    Combo2->addItems(Register_Codes(QStringLiteral("S_D2")));
    Cmd_Run = new QPushButton(run, this);
    Cmd_Run->setObjectName(QStringLiteral("Cmd_Run"));
    Cmd_Close = new QPushButton(LoadResString(504), this);
    Cmd_Close->setObjectName(QStringLiteral("Cmd_Close"));
    connect(Cmd_Run, &QPushButton::clicked, this, [this] { Run(); });
    connect(Cmd_Close, &QPushButton::clicked, this, &QWidget::close);

    grid_ = new QGridLayout;
    grid_->addWidget(new QLabel(LoadResString(1199), this), 0, 0);
    grid_->addWidget(TDBDate1[0], 0, 1);
    grid_->addWidget(new QLabel(LoadResString(1200), this), 0, 2);
    grid_->addWidget(TDBDate1[1], 0, 3);
    grid_->addWidget(new QLabel(LoadResString(632), this), 1, 0);
    grid_->addWidget(Combo1, 1, 1);
    grid_->addWidget(new QLabel(LoadResString(633), this), 1, 2);
    grid_->addWidget(Combo2, 1, 3);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Cmd_Run);
    buttons->addWidget(Cmd_Close);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid_);
    box->addStretch();
    box->addLayout(buttons);
}

vex::Selection Selection_Form::Chosen() const
{
    return vex::Selection{TDBDate1[0]->date().toString(QStringLiteral("yyMMdd")),
                          TDBDate1[1]->date().toString(QStringLiteral("yyMMdd")), Combo1->currentText(),
                          Combo2->currentText()};
}

} // namespace vex::forms
