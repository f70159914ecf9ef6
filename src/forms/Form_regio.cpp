#include "forms/Form_regio.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "registers/Input_Names.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

Form_regio::Form_regio(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("디지털I/O설정"));
    auto* grid = new QGridLayout;
    const QStringList names = G().DB ? DI_Names_Load(*G().DB) : QStringList(6);
    for (int i = 0; i < 6; ++i) {
        TDBTxt_Car[i] = new QLineEdit(names.value(i), this);
        TDBTxt_Car[i]->setObjectName(QStringLiteral("TDBTxt_Car%1").arg(i));
        grid->addWidget(new QLabel(QStringLiteral("DI %1").arg(i + 1), this), i, 0);
        grid->addWidget(TDBTxt_Car[i], i, 1);
    }
    Command5 = new QPushButton(LoadResString(505), this);
    Command5->setObjectName(QStringLiteral("Command5"));
    Command3 = new QPushButton(LoadResString(504), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    connect(Command5, &QPushButton::clicked, this, &Form_regio::Command5_Click);
    connect(Command3, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command5);
    buttons->addWidget(Command3);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addStretch();
    box->addLayout(buttons);
}

void Form_regio::Command5_Click()
{
    if (!G().DB)
        return;
    QStringList names;
    for (auto* t : TDBTxt_Car)
        names << t->text();
    if (DI_Names_Save(*G().DB, names, G()))
        Msg_Box(QStringLiteral("저장 완료되었읍니다"));
}

} // namespace vex::forms
