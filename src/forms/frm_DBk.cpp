#include "forms/frm_DBk.h"

#include "core/Mod_Main.h"
#include "exchange/Db_Keeping.h"
#include "forms/Msg_Box.h"

#include <QVBoxLayout>

namespace vex::forms {

frm_DBk::frm_DBk(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("DB정리"));
    Text_Day = new QLineEdit(this);
    Text_Day->setObjectName(QStringLiteral("Text_Day"));
    Text_Day->setReadOnly(true);
    Label_Note = new QLabel(this);
    Label_Note->setObjectName(QStringLiteral("Label_Note"));
    Label_Note->setWordWrap(true);
    Cmd_OK = new QPushButton(QStringLiteral("확인"), this);
    Cmd_OK->setObjectName(QStringLiteral("Cmd_OK"));
    connect(Cmd_OK, &QPushButton::clicked, this, [this] {
        Msg_Box(QStringLiteral("DB 검사 완료 "));
        close();
    });
    auto* box = new QVBoxLayout(this);
    box->addWidget(Text_Day);
    box->addWidget(Label_Note);
    box->addStretch();
    box->addWidget(Cmd_OK);
    Check();
}

void frm_DBk::Check()
{
    const QString newest = G().DB ? Newest_Day(*G().DB) : QString();
    if (newest.isEmpty()) {
        Text_Day->clear();
        Label_Note->setText(QStringLiteral("데이터가 없습니다"));
        return;
    }
    Text_Day->setText(QStringLiteral("20%1-%2-%3").arg(newest.left(2), newest.mid(2, 2), newest.mid(4, 2)));
    Label_Note->setText(QStringLiteral("상단의 날짜를 확인하세요 맞으면 확인을 클릭해주시고, 틀리면 컴퓨터의 날짜를 "
                                       "수정하신 후 다시 실행하세요"));
}

} // namespace vex::forms
