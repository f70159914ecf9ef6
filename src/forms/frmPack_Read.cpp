#include "forms/frmPack_Read.h"

#include "acquisition/UsbRecorder.h"
#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/logic/Reception_Logic.h"
#include "forms/logic/Usb_Drives.h"
#include "store/Job_Runner.h"

#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

namespace vex::forms {

frmPack_Read::frmPack_Read(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("데이터 선택수신"));
    TDBText_Config = new QLineEdit(this);
    TDBText_Config->setObjectName(QStringLiteral("TDBText_Config"));
    TDBText_Config->setReadOnly(true);
    for (int i = 0; i < 2; ++i) {
        TDBDate1[i] = new QDateEdit(QDate::currentDate(), this);
        TDBDate1[i]->setObjectName(QStringLiteral("TDBDate1_%1").arg(i));
        TDBDate1[i]->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        TDBDate1[i]->setCalendarPopup(true);
    }
    Cmd_Save = new QPushButton(QStringLiteral("수신"), this);
    Cmd_Save->setObjectName(QStringLiteral("Cmd_Save"));
    Command1 = new QPushButton(LoadResString(504), this);
    connect(Cmd_Save, &QPushButton::clicked, this, &frmPack_Read::Cmd_Save_Click);
    connect(Command1, &QPushButton::clicked, this, &QWidget::close);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("USB"), this), 0, 0);
    grid->addWidget(TDBText_Config, 0, 1);
    grid->addWidget(new QLabel(LoadResString(1199), this), 1, 0);
    grid->addWidget(TDBDate1[0], 1, 1);
    grid->addWidget(new QLabel(LoadResString(1200), this), 2, 0);
    grid->addWidget(TDBDate1[1], 2, 1);
    grid->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Cmd_Save);
    buttons->addWidget(Command1);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addStretch();
    box->addLayout(buttons);

    // The stored pack folder first, then the walk over the drives.
    const QString stored = G().Config ? G().Config->U_PackDir : QString();
    root_ = Has_Master(stored) ? stored : Find_Usb_Medium(Usb_Roots());
    if (root_.isEmpty()) {
        QTimer::singleShot(0, this, [] { Msg_Box(QStringLiteral("USB가 없읍니다.!")); });
        return;
    }
    TDBText_Config->setText(root_);
    model_ = Detect_Model(Spdr_Path(root_));
    const Usb_Days_Held held = Usb_Log_Days(Spdr_Path(root_), model_, QDate::currentDate().year() % 100);
    const QDateTime a = Stamp_Date_Time(held.oldest + QStringLiteral("0000"));
    const QDateTime b = Stamp_Date_Time(held.newest + QStringLiteral("0000"));
    if (a.isValid() && b.isValid()) {
        TDBDate1[0]->setDate(a.date());
        TDBDate1[1]->setDate(b.date());
    }
}

void frmPack_Read::Cmd_Save_Click()
{
    if (root_.isEmpty()) {
        Msg_Box(QStringLiteral("USB가 없읍니다.!"));
        return;
    }
    const auto master = Read_Master(Master_Path(root_));
    if (!master || model_.isEmpty()) {
        Msg_Box(QStringLiteral("수신 에러"));
        return;
    }
    const QString model = model_, root = root_;
    const QDate from = TDBDate1[0]->date(), to = TDBDate1[1]->date();
    const QString medium = QStringLiteral("medium %1, model %2, car %3, driver %4")
                               .arg(QDir::toNativeSeparators(root), model, master->car, master->driver);
    const Pack_Receive r = Reception_Job(Ledger_Road::Usb, medium, [&](Job& job, const Reception_Progress&) {
        return Usb_Receive_Step(job.Db(), model, root, true, from, to);
    });
    Msg_Box((r.ok ? QStringLiteral("수신 완료") : QStringLiteral("수신 에러")) + QLatin1Char('\n') +
            (r.ok ? r.outcome.Summary() + (r.ledger.isEmpty() ? QString() : QLatin1Char('\n') + r.ledger) : r.message));
}

} // namespace vex::forms
