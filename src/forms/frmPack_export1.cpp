#include "forms/frmPack_export1.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Db_Keeping.h"
#include "forms/Keep_Progress.h"
#include "forms/Msg_Box.h"
#include "store/Cls_DB.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace vex::forms {

namespace {

QDate Date_Of(const QString& yymmdd)
{
    return QDate(2000 + yymmdd.left(2).toInt(), yymmdd.mid(2, 2).toInt(), yymmdd.mid(4, 2).toInt());
}

} // namespace

frmPack_export1::frmPack_export1(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("DB 백업"));
    for (int i = 0; i < 2; ++i) {
        TDBDate1[i] = new QDateEdit(QDate::currentDate(), this);
        TDBDate1[i]->setObjectName(QStringLiteral("TDBDate1_%1").arg(i));
        TDBDate1[i]->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        TDBDate1[i]->setCalendarPopup(true);
    }
    Label1 = new QLabel(QStringLiteral("백업할 기간을 선택하세요"), this);
    Label1->setObjectName(QStringLiteral("Label1"));
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setRange(0, 16);
    ProgressBar1->setValue(0);
    Cmd_Save = new QPushButton(LoadResString(1029), this);
    Cmd_Save->setObjectName(QStringLiteral("Cmd_Save"));
    Cmd_Close = new QPushButton(LoadResString(504), this);
    Cmd_Close->setObjectName(QStringLiteral("Cmd_Close"));
    Cmd_Cancel = new QPushButton(LoadResString(506), this);
    Cmd_Cancel->setObjectName(QStringLiteral("Cmd_Cancel"));
    Cmd_Cancel->hide();
    connect(Cmd_Save, &QPushButton::clicked, this, &frmPack_export1::Cmd_Save_Click);
    connect(Cmd_Close, &QPushButton::clicked, this, &QWidget::close);

    // The pickers hold the whole months of the stored days.
    if (G().DB) {
        const auto [from, to] = Backup_Period(*G().DB);
        if (!from.isEmpty()) {
            TDBDate1[0]->setDate(Date_Of(from));
            TDBDate1[1]->setDate(Date_Of(to));
        }
    }
    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(LoadResString(1199), this), 0, 0);
    grid->addWidget(TDBDate1[0], 0, 1);
    grid->addWidget(new QLabel(LoadResString(1200), this), 0, 2);
    grid->addWidget(TDBDate1[1], 0, 3);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Cmd_Save);
    buttons->addWidget(Cmd_Cancel);
    buttons->addWidget(Cmd_Close);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addWidget(Label1);
    box->addWidget(ProgressBar1);
    box->addStretch();
    box->addLayout(buttons);
}

void frmPack_export1::Cmd_Save_Click()
{
    const QString from = TDBDate1[0]->date().toString(QStringLiteral("yyMMdd"));
    const QString to = TDBDate1[1]->date().toString(QStringLiteral("yyMMdd"));
    if (from > to || !G().DB)
        return;
    Cmd_Save->setEnabled(false);
    const auto show = [this](const QString& stage, int done, int all) {
        if (!stage.isEmpty())
            Label1->setText(stage);
        ProgressBar1->setRange(0, all);
        ProgressBar1->setValue(done);
    };
    const Exchange_Report r = Keep_In_Window(Cmd_Cancel, show, [from, to](Cls_DB& db, const Exchange_Progress& p) {
        return Backup(db, from, to, p);
    });
    Cmd_Save->setEnabled(true);
    Label1->setText(r.message);
    Msg_Box(r.message);
}

} // namespace vex::forms
