#include "forms/frm_Pack_check.h"

#include <QVBoxLayout>

namespace vex::forms {

frm_Pack_check::frm_Pack_check(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("DB_Loading........"));
    Label1 = new QLabel(QStringLiteral("데이터를 처리 중입니다"), this);
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    auto* box = new QVBoxLayout(this);
    box->addStretch();
    box->addWidget(Label1);
    box->addWidget(ProgressBar1);
    box->addStretch();
    resize(Twips(4800), Twips(1400));
}

} // namespace vex::forms
