#include "forms/frmPack_delete.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Data_Package.h"
#include "forms/Keep_Progress.h"
#include "forms/Msg_Box.h"

namespace vex::forms {

frmPack_delete::frmPack_delete(QWidget* parent)
    : Selection_Form(QString::fromLatin1(kName), LoadResString(1198), LoadResString(1198), parent)
{
}

void frmPack_delete::Run()
{
    // The question says what goes; Enter keeps it.
    const vex::Selection s = Chosen();
    if (Msg_Box(LoadResString(1150) + QStringLiteral("\n") + Days_To_Delete(s), QMessageBox::Question, {},
                QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        != QMessageBox::Yes)
        return;
    if (s.car.isEmpty()) {
        Msg_Box(QStringLiteral("차량코드는 반드시 선택하세요"));
        return;
    }
    if (!G().DB)
        return;
    const Exchange_Report r = Keep_With_Progress(
        this, LoadResString(1198), [s](Cls_DB& db, const Exchange_Progress& p) { return Delete_Selection(db, s, p); });
    Msg_Box(r.ok ? LoadResString(154) : r.message);
}

} // namespace vex::forms
