#include "forms/frm_Nosun.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "registers/Routes.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

frm_Nosun::frm_Nosun(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    Globals& g = G();
    // The one place that sets the folder with its final separator.
    g.App_Dir_Slash = g.App_Dir.endsWith(QLatin1Char('/')) ? g.App_Dir : g.App_Dir + QLatin1Char('/');
    setWindowTitle(LoadResString(1185));

    TDBCombo1 = new QComboBox(this);
    TDBCombo1->setObjectName(QStringLiteral("TDBCombo1"));
    TDBCombo1->setEditable(true);
    TDBCombo1->setMinimumContentsLength(12);
    TDBText2 = new QLineEdit(QStringLiteral("80"), this);
    TDBText2->setObjectName(QStringLiteral("TDBText2"));
    Option1[0] = new QRadioButton(LoadResString(1228), this);
    Option1[1] = new QRadioButton(LoadResString(1170), this);
    Option1[0]->setChecked(true);
    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    List2 = new QListWidget(this);
    List2->setObjectName(QStringLiteral("List2"));
    const char* arrows[5] = {"", ">", ">>", "<", "<<"};
    auto* moves = new QVBoxLayout;
    moves->addStretch();
    for (int i = 1; i <= 4; ++i) {
        SSCommand[i] = new QPushButton(QString::fromLatin1(arrows[i]), this);
        SSCommand[i]->setObjectName(QStringLiteral("SSCommand%1").arg(i));
        moves->addWidget(SSCommand[i]);
    }
    SSCommand[0] = nullptr;
    moves->addStretch();
    connect(SSCommand[1], &QPushButton::clicked, this, [this] { Move(true, false); });
    connect(SSCommand[2], &QPushButton::clicked, this, [this] { Move(true, true); });
    connect(SSCommand[3], &QPushButton::clicked, this, [this] { Move(false, false); });
    connect(SSCommand[4], &QPushButton::clicked, this, [this] { Move(false, true); });

    cmdSave = new QPushButton(LoadResString(501), this);
    cmdSave->setObjectName(QStringLiteral("cmdSave"));
    cmdDelete = new QPushButton(LoadResString(1227), this);
    cmdDelete->setObjectName(QStringLiteral("cmdDelete"));
    cmdLookup = new QPushButton(LoadResString(1142), this);
    cmdLookup->setObjectName(QStringLiteral("cmdLookup"));
    cmdClose = new QPushButton(LoadResString(504), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    connect(cmdSave, &QPushButton::clicked, this, &frm_Nosun::Save);
    connect(cmdDelete, &QPushButton::clicked, this, &frm_Nosun::Delete_Route);
    connect(cmdLookup, &QPushButton::clicked, this, &frm_Nosun::Route_Chosen);
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    connect(TDBCombo1, &QComboBox::activated, this, &frm_Nosun::Route_Chosen);
    connect(Option1[0], &QRadioButton::toggled, this, &frm_Nosun::Route_Chosen);

    auto* top = new QGridLayout;
    top->addWidget(new QLabel(LoadResString(1176), this), 0, 0);
    top->addWidget(TDBCombo1, 0, 1);
    top->addWidget(new QLabel(LoadResString(1070), this), 0, 2);
    top->addWidget(TDBText2, 0, 3);
    auto* options = new QHBoxLayout;
    options->addWidget(Option1[0]);
    options->addWidget(Option1[1]);
    options->addStretch();
    auto* leftBox = new QVBoxLayout;
    leftBox->addWidget(new QLabel(LoadResString(632), this));
    leftBox->addWidget(List1);
    auto* rightBox = new QVBoxLayout;
    rightBox->addWidget(new QLabel(LoadResString(1176) + QStringLiteral(" - ") + LoadResString(632), this));
    rightBox->addWidget(List2);
    auto* lists = new QHBoxLayout;
    lists->addLayout(leftBox, 1);
    lists->addLayout(moves);
    lists->addLayout(rightBox, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdLookup);
    buttons->addStretch();
    buttons->addWidget(cmdSave);
    buttons->addWidget(cmdDelete);
    buttons->addWidget(cmdClose);
    auto* box = new QVBoxLayout(this);
    box->addLayout(top);
    box->addLayout(options);
    box->addLayout(lists, 1);
    box->addLayout(buttons);

    Fill_Routes();
    Route_Chosen();
}

void frm_Nosun::Fill_Routes()
{
    const QString current = TDBCombo1->currentText();
    TDBCombo1->clear();
    if (G().DB)
        TDBCombo1->addItems(Route_Names(*G().DB));
    TDBCombo1->setCurrentText(current);
}

void frm_Nosun::Route_Chosen()
{
    if (!G().DB)
        return;
    Cls_DB& db = *G().DB;
    const QString route = TDBCombo1->currentText();
    removed_.clear();
    List2->clear();
    List1->clear();
    if (!route.isEmpty()) {
        List2->addItems(Route_Cars(db, route));
        const QString speed = Route_Speed(db, route);
        if (!speed.isEmpty())
            TDBText2->setText(speed);
    }
    List1->addItems(Other_Cars(db, route, Option1[1]->isChecked()));
}

void frm_Nosun::Move(bool toRoute, bool all)
{
    QListWidget* from = toRoute ? List1 : List2;
    QListWidget* to = toRoute ? List2 : List1;
    QList<QListWidgetItem*> items;
    if (all)
        for (int i = 0; i < from->count(); ++i)
            items << from->item(i);
    else if (from->currentItem())
        items << from->currentItem();
    for (QListWidgetItem* item : items) {
        const QString car = item->text();
        delete from->takeItem(from->row(item));
        to->addItem(car);
        if (toRoute)
            removed_.removeAll(car);
        else
            removed_ << car;
    }
}

void frm_Nosun::Save()
{
    if (!G().DB)
        return;
    QStringList cars;
    for (int i = 0; i < List2->count(); ++i)
        cars << List2->item(i)->text();
    const int result = Route_Save(*G().DB, TDBCombo1->currentText(), TDBText2->text(), cars, removed_);
    if (result == 152) {
        Msg_Box(152);
        return;
    }
    if (result == 151)
        Msg_Box(151);
    Msg_Box(150);
    removed_.clear();
    Fill_Routes();
}

void frm_Nosun::Delete_Route()
{
    if (!G().DB)
        return;
    Route_Delete(*G().DB, TDBCombo1->currentText());
    TDBCombo1->setCurrentText(QString());
    Fill_Routes();
    Route_Chosen();
}

} // namespace vex::forms
