#include "forms/frmPack_export.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Data_Package.h"
#include "forms/Keep_Progress.h"
#include "forms/Msg_Box.h"

#include <QDir>
#include <QLabel>

namespace vex::forms {

frmPack_export::frmPack_export(QWidget* parent)
    : Selection_Form(QString::fromLatin1(kName), LoadResString(1195), LoadResString(1195), parent)
{
    Text_Name = new QLineEdit(this);
    Text_Name->setObjectName(QStringLiteral("Text_Name"));
    grid_->addWidget(new QLabel(QStringLiteral("zip"), this), 2, 0);
    grid_->addWidget(Text_Name, 2, 1, 1, 3);
}

void frmPack_export::Run()
{
    const vex::Selection s = Chosen();
    if (s.from > s.to || !G().DB)
        return;
    const QString name = Text_Name->text().trimmed().isEmpty() ? s.from + s.to : Text_Name->text().trimmed();
    const Exchange_Report r = Keep_With_Progress(this, LoadResString(1195), [s, name](Cls_DB& db, const Exchange_Progress& p) {
        return Export_Package(db, s, name, p);
    });
    if (!r.ok) {
        Msg_Box(r.message);
        return;
    }
    // Where the package went, then the question; Enter keeps the days.
    if (Msg_Box(QDir::toNativeSeparators(r.message) + QStringLiteral("\n\n")
                    + Days_To_Delete(s) + QStringLiteral("\n") + QStringLiteral("내보낸 데이터를 삭제하시겠읍니까?"),
                QMessageBox::Question, {}, QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        != QMessageBox::Yes)
        return;
    const Exchange_Report gone = Keep_With_Progress(
        this, LoadResString(1198), [s](Cls_DB& db, const Exchange_Progress& p) { return Delete_Selection(db, s, p); });
    Msg_Box(gone.message);
}

} // namespace vex::forms
