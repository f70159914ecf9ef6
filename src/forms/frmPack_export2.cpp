#include "forms/frmPack_export2.h"

#include "core/Mod_Main.h"
#include "exchange/Data_Package.h"
#include "forms/Keep_Progress.h"
#include "forms/Msg_Box.h"

#include <QLabel>

namespace vex::forms {

frmPack_export2::frmPack_export2(QWidget* parent)
    : Selection_Form(QString::fromLatin1(kName), QStringLiteral("운전원 코드 변경"), QStringLiteral("변경"), parent)
{
    // A re-key moves one car's days of one driver: no "ALL" here.
    Combo1->removeItem(0);
    Combo2->removeItem(0);
    Text_New = new QLineEdit(this);
    Text_New->setObjectName(QStringLiteral("Text_New"));
    Text_New->setMaxLength(6);
    grid_->addWidget(new QLabel(QStringLiteral("→"), this), 2, 2);
    grid_->addWidget(Text_New, 2, 3);
}

void frmPack_export2::Run()
{
    const vex::Selection s = Chosen();
    if (!G().DB)
        return;
    const QString to = Text_New->text().trimmed().toUpper();
    const Exchange_Report r = Keep_With_Progress(this, windowTitle(), [s, to](Cls_DB& db, const Exchange_Progress& p) {
        return Rekey(db, s.car, s.driver, s.from, s.to, to, p);
    });
    Msg_Box(r.message);
}

} // namespace vex::forms
