#include "forms/frmDB_Main1.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Db_Keeping.h"
#include "forms/Msg_Box.h"
#include "platform/AppFolder.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

frmDB_Main1::frmDB_Main1(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("데이터 불러오기"));
    Text_Car = new QLineEdit(this);
    Text_Car->setObjectName(QStringLiteral("Text_Car"));
    Text_Car->setMaxLength(6);
    Text_File = new QLineEdit(this);
    Text_File->setObjectName(QStringLiteral("Text_File"));
    Cmd_File = new QPushButton(QStringLiteral("..."), this);
    Cmd_File->setObjectName(QStringLiteral("Cmd_File"));
    Cmd_Start = new QPushButton(QStringLiteral("시 작"), this);
    Cmd_Start->setObjectName(QStringLiteral("Cmd_Start"));
    Cmd_Close = new QPushButton(LoadResString(504), this);
    Cmd_Close->setObjectName(QStringLiteral("Cmd_Close"));
    connect(Cmd_File, &QPushButton::clicked, this, [this] {
        const QString f = QFileDialog::getOpenFileName(this, windowTitle(), App_Path(G().App_Dir, QStringLiteral("\\pack")),
                                                       QStringLiteral("vex (*.vex)"));
        if (!f.isEmpty())
            Text_File->setText(f);
    });
    connect(Cmd_Start, &QPushButton::clicked, this, &frmDB_Main1::Cmd_Start_Click);
    connect(Cmd_Close, &QPushButton::clicked, this, &QWidget::close);
    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(LoadResString(632), this), 0, 0);
    grid->addWidget(Text_Car, 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("vex"), this), 1, 0);
    grid->addWidget(Text_File, 1, 1);
    grid->addWidget(Cmd_File, 1, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Cmd_Start);
    buttons->addWidget(Cmd_Close);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addStretch();
    box->addLayout(buttons);
}

void frmDB_Main1::Cmd_Start_Click()
{
    if (!G().DB)
        return;
    setCursor(Qt::WaitCursor);
    const Exchange_Report r = Rebuild_Day(*G().DB, Text_File->text(), Text_Car->text());
    unsetCursor();
    Msg_Box(r.message);
}

} // namespace vex::forms
