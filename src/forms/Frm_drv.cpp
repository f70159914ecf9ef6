#include "forms/Frm_drv.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/logic/Usb_Drives.h"
#include "registers/DriverMedium.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

namespace vex::forms {

Frm_drv::Frm_drv(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("운전원 등록"));
    Drive1 = new QComboBox(this);
    Drive1->setObjectName(QStringLiteral("Drive1"));
    Combo1 = new QComboBox(this);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo1->setMinimumContentsLength(10);
    SSCommand1 = new QPushButton(LoadResString(505), this);
    SSCommand1->setObjectName(QStringLiteral("SSCommand1"));
    cmdClose = new QPushButton(LoadResString(504), this);
    connect(SSCommand1, &QPushButton::clicked, this, &Frm_drv::SSCommand1_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("USB"), this), 0, 0);
    grid->addWidget(Drive1, 0, 1);
    grid->addWidget(new QLabel(LoadResString(633), this), 1, 0);
    grid->addWidget(Combo1, 1, 1);
    grid->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(SSCommand1);
    buttons->addWidget(cmdClose);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addStretch();
    box->addLayout(buttons);

    const QStringList roots = Usb_Roots();
    Drive1->addItems(roots);
    medium_ = Find_Usb_Medium(roots);
    if (!medium_.isEmpty())
        Drive1->setCurrentText(medium_);
    if (G().DB)
        Guarded(1037, [&] {
            Recordset rs = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D2 "));
            for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext())
                Combo1->addItem(rs.Text(QStringLiteral("D_F1")));
        });
    Combo1->setCurrentIndex(-1);
    if (medium_.isEmpty())
        QTimer::singleShot(0, this, [] { Msg_Box(QStringLiteral("메모리 팩이 없읍니다!")); });
}

void Frm_drv::SSCommand1_Click()
{
    const QString code = Combo1->currentText();
    if (code.isEmpty())
        return;
    const QString root = Drive1->currentText().isEmpty() ? medium_ : Drive1->currentText();
    Driver_Medium_Result result;
    Guarded(1037, [&] { result = Write_Driver_To_Medium(Has_Master(root) ? root : medium_, code); });
    if (!result.message.isEmpty())
        Msg_Box(result.message);
}

} // namespace vex::forms
