#include "forms/frm_Config.h"

#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/logic/Captions.h"
#include "registers/Config_Rules.h"
#include "store/Cls_DB.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

namespace vex::forms {

namespace {

// Captions of the fields: a message id, or the words of the form's design.
struct Field_Caption {
    int id;
    const char* fixed;
};
const Field_Caption kCaptions[20] = {
    {0, ""},
    {1001, ""}, {1002, ""}, {1003, ""}, {1004, ""}, {1005, ""}, {1007, ""}, {1017, ""}, {1008, ""}, {1018, ""},
    {0, "FTP 서버 주소"}, {0, "FTP 포트"}, {0, "FTP 사용자"}, {0, "FTP 비밀번호"}, {0, "company ID"},
    {1013, ""}, {1014, ""}, {1015, ""}, {0, "비운행으로 간주 하는 시간 값"}, {0, "E-mail"},
};

} // namespace

frm_Config::frm_Config(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(602));
    TDBText_Config[0] = nullptr;
    Label1[0] = nullptr;
    for (int i = 1; i <= 19; ++i) {
        Label1[i] = new QLabel(Caption_Of(kCaptions[i].id, QString::fromUtf8(kCaptions[i].fixed)), this);
        TDBText_Config[i] = new QLineEdit(this);
        TDBText_Config[i]->setObjectName(QStringLiteral("TDBText_Config%1").arg(i));
        TDBText_Config[i]->installEventFilter(this);
    }
    TDBText_Config[6]->setEchoMode(QLineEdit::Password);
    TDBText_Config[8]->setEchoMode(QLineEdit::Password);
    TDBText_Config[13]->setEchoMode(QLineEdit::Password);
    Check[0] = nullptr;
    const Field_Caption checks[5] = {{0, ""}, {1011, ""}, {1012, ""}, {1009, ""}, {0, "FTP Passive mode"}};
    for (int i = 1; i <= 4; ++i) {
        Check[i] = new QCheckBox(Caption_Of(checks[i].id, QString::fromUtf8(checks[i].fixed)), this);
        Check[i]->setObjectName(QStringLiteral("Check%1").arg(i));
        Check[i]->installEventFilter(this);
    }
    const int buttonIds[3] = {501, 505, 504};
    for (int i = 0; i < 3; ++i) {
        Command1[i] = new QPushButton(LoadResString(buttonIds[i]), this);
        Command1[i]->setObjectName(QStringLiteral("Command1_%1").arg(i));
        Command1[i]->installEventFilter(this);
        connect(Command1[i], &QPushButton::clicked, this, [this, i] { Command1_Click(i); });
    }
    Command2 = new QPushButton(QStringLiteral("..."), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    connect(Command2, &QPushButton::clicked, this, &frm_Config::Command2_Click);
    connect(Check[2], &QCheckBox::clicked, this, &frm_Config::Check2_Click);

    // Company, account and paths on the left; FTP and graph on the right.
    auto* user = new QGroupBox(LoadResString(1000), this);
    auto* ug = new QGridLayout(user);
    int row = 0;
    for (int i : {1, 2, 3, 4, 5, 6, 8, 9, 19}) {
        ug->addWidget(Label1[i], row, 0);
        ug->addWidget(TDBText_Config[i], row++, 1, 1, 2);
    }
    ug->addWidget(Label1[7], row, 0);
    ug->addWidget(TDBText_Config[7], row, 1);
    ug->addWidget(Command2, row++, 2);
    auto* ftp = new QGroupBox(QStringLiteral("FTP"), this);
    auto* fg = new QGridLayout(ftp);
    row = 0;
    for (int i : {10, 11, 12, 13, 14}) {
        fg->addWidget(Label1[i], row, 0);
        fg->addWidget(TDBText_Config[i], row++, 1);
    }
    fg->addWidget(Check[4], row++, 0, 1, 2);
    auto* graph = new QGroupBox(QStringLiteral("그래프"), this);
    auto* gg = new QGridLayout(graph);
    row = 0;
    for (int i : {15, 16, 17, 18}) {
        gg->addWidget(Label1[i], row, 0);
        gg->addWidget(TDBText_Config[i], row++, 1);
    }
    for (int i : {2, 1, 3})
        gg->addWidget(Check[i], row++, 0, 1, 2);
    auto* columns = new QHBoxLayout;
    auto* rightBox = new QVBoxLayout;
    rightBox->addWidget(ftp);
    rightBox->addWidget(graph);
    rightBox->addStretch();
    columns->addWidget(user, 1);
    columns->addLayout(rightBox, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (auto* b : Command1)
        buttons->addWidget(b);
    auto* box = new QVBoxLayout(this);
    box->addLayout(columns);
    box->addLayout(buttons);

    // The company code stays hidden until Ctrl+V opens it.
    Label1[14]->hide();
    TDBText_Config[14]->hide();

    // The fields from the settings in memory; all locked, view mode.
    Globals& g = G();
    if (g.Config) {
        const Config_Fields f = Config_Show(*g.Config, g);
        for (int i = 1; i <= 19; ++i)
            TDBText_Config[i]->setText(f.text[i]);
        for (int i = 1; i <= 4; ++i)
            Check[i]->setChecked(f.check[i]);
    }
    Set_Locked(1, true);
    Check[4]->setEnabled(false);
    const bool rpm = g.Config && g.Config->C_RPM == 1;
    TDBText_Config[16]->setReadOnly(!rpm);
    TDBText_Config[17]->setReadOnly(!rpm);
    Command1[1]->setEnabled(false);
    Command2->setEnabled(false);
}

void frm_Config::Set_Locked(int from, bool locked)
{
    for (int i = from; i <= 19; ++i)
        TDBText_Config[i]->setReadOnly(locked);
}

void frm_Config::Command1_Click(int index)
{
    Globals& g = G();
    if (index == 0) {
        if (editing_)
            return;
        Set_Locked(1, false);
        Check[4]->setEnabled(true);
        editing_ = true;
        Command1[0]->setEnabled(false);
        Command1[1]->setEnabled(true);
        Command2->setEnabled(true);
    } else if (index == 1) {
        if (!editing_ || !g.Config || !g.DB)
            return;
        Config_Fields f;
        for (int i = 1; i <= 19; ++i)
            f.text[i] = TDBText_Config[i]->text();
        for (int i = 1; i <= 4; ++i)
            f.check[i] = Check[i]->isChecked();
        switch (Config_Save(f, *g.Config, g, *g.DB)) {
        case Config_Save_Result::Count_Too_High:
            Msg_Box(1143, QMessageBox::Information);
            TDBText_Config[17]->setFocus();
            return;
        case Config_Save_Result::Bad_Number:
            return; // the conversion failed: Save ends here, silently
        case Config_Save_Result::Saved:
            Msg_Box(150, QMessageBox::Information);
            break;
        case Config_Save_Result::Failed:
            Msg_Box(151, QMessageBox::Information);
            break;
        }
        Set_Locked(1, true);
        Check[4]->setEnabled(false);
        editing_ = false;
        Command1[0]->setEnabled(true);
        Command1[1]->setEnabled(false);
        Command2->setEnabled(false);
    } else if (index == 2) {
        close();
    }
}

void frm_Config::Check2_Click()
{
    if (Check[2]->isChecked()) {
        QString f16 = TDBText_Config[16]->text(), f17 = TDBText_Config[17]->text();
        if (G().DB)
            Config_RPM_Ticked(*G().DB, f16, f17);
        TDBText_Config[16]->setText(f16);
        TDBText_Config[17]->setText(f17);
        TDBText_Config[16]->setReadOnly(false);
        TDBText_Config[17]->setReadOnly(false);
    } else {
        TDBText_Config[16]->setReadOnly(true);
        TDBText_Config[17]->setReadOnly(true);
    }
}

void frm_Config::Command2_Click()
{
    const QString dir = QFileDialog::getExistingDirectory(this, LoadResString(1251), TDBText_Config[7]->text());
    if (!dir.isEmpty())
        TDBText_Config[7]->setText(dir);
}

void frm_Config::Toggle_Company_Code()
{
    TDBText_Config[1]->setFocus();
    companyShown_ = !companyShown_;
    Label1[14]->setVisible(companyShown_);
    TDBText_Config[14]->setVisible(companyShown_);
    Label1[14]->setEnabled(companyShown_);
    TDBText_Config[14]->setEnabled(companyShown_);
    // 7680 twips closed, 9705 open.
    resize(qMax(width() + (companyShown_ ? Twips(9705 - 7680) : -Twips(9705 - 7680)), sizeHint().width()),
           height());
}

bool frm_Config::eventFilter(QObject* watched, QEvent* e)
{
    // The form sees its keys before its fields: Ctrl+V is the only way to
    // the company code.
    if (e->type() == QEvent::KeyPress) {
        auto* k = static_cast<QKeyEvent*>(e);
        if (k->key() == Qt::Key_V && (k->modifiers() & Qt::ControlModifier)) {
            Toggle_Company_Code();
            return true;
        }
    }
    return Vex_Form::eventFilter(watched, e);
}

} // namespace vex::forms
