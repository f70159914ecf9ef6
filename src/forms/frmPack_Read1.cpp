#include "forms/frmPack_Read1.h"

#include "acquisition/AnalyzerLink.h"
#include "acquisition/Cls_IO.h"
#include "core/Cls_Config.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/MDIForm_Main.h"
#include "forms/Msg_Box.h"
#include "forms/logic/Reception_Logic.h"
#include "forms/logic/Usb_Drives.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

namespace vex::forms {

namespace {

const QString kInfo = QStringLiteral("정보보기");
const QString kReceive = QStringLiteral("수신");

} // namespace

frmPack_Read1::frmPack_Read1(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("데이터 수신"));
    const char* options[5] = {"", "메모리팩", "원형 USB(130)", "사각 USB(250)", "신표준USB(260)"};
    const char* sources[5] = {"", "pack", "130", "250", "260"};
    auto* sourceBox = new QGroupBox(this);
    auto* sourceRow = new QHBoxLayout(sourceBox);
    SSOption[0] = nullptr;
    for (int i = 1; i <= 4; ++i) {
        SSOption[i] = new QRadioButton(QString::fromUtf8(options[i]), this);
        SSOption[i]->setObjectName(QStringLiteral("SSOption%1").arg(i));
        sourceRow->addWidget(SSOption[i]);
        const QString source = QString::fromLatin1(sources[i]);
        connect(SSOption[i], &QRadioButton::clicked, this, [this, source] { Choose_Source(source); });
    }
    SSOption[1]->setChecked(true);

    Check1 = new QCheckBox(QStringLiteral("선택수신체크"), this);
    Check1->setObjectName(QStringLiteral("Check1"));
    for (int i = 0; i < 2; ++i) {
        TDBDate1[i] = new QDateEdit(QDate::currentDate(), this);
        TDBDate1[i]->setObjectName(QStringLiteral("TDBDate1_%1").arg(i));
        TDBDate1[i]->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        TDBDate1[i]->setCalendarPopup(true);
    }
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setReadOnly(true);
    Text2 = new QLineEdit(this);
    Text2->setObjectName(QStringLiteral("Text2"));
    Text2->setReadOnly(true);
    TDBText_Config = new QLineEdit(this);
    TDBText_Config->setObjectName(QStringLiteral("TDBText_Config"));
    if (G().Config)
        TDBText_Config->setText(G().Config->U_PackDir);
    Drive1 = new QComboBox(this);
    Drive1->setObjectName(QStringLiteral("Drive1"));
    Drive1->addItems(Usb_Roots());
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setRange(0, 1);
    ProgressBar1->setValue(0);
    ProgressBar1->setFormat(QStringLiteral("%v / %m"));
    Label_Result = new QLabel(this);
    Label_Result->setObjectName(QStringLiteral("Label_Result"));
    Label_Result->setWordWrap(true);
    Label_Result->setTextInteractionFlags(Qt::TextSelectableByMouse);
    Cmd_Save = new QPushButton(kInfo, this);
    Cmd_Save->setObjectName(QStringLiteral("Cmd_Save"));
    Cmd_Save->setMinimumHeight(36);
    Command3 = new QPushButton(LoadResString(1242), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    Cmd2 = new QPushButton(QStringLiteral("Pack folder"), this);
    Cmd2->setObjectName(QStringLiteral("Cmd2"));
    Command1 = new QPushButton(LoadResString(504), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Cmd_Cancel = new QPushButton(LoadResString(506), this);
    Cmd_Cancel->setObjectName(QStringLiteral("Cmd_Cancel"));
    Cmd_Cancel->hide();
    connect(Cmd_Save, &QPushButton::clicked, this, &frmPack_Read1::Cmd_Save_Click);
    connect(Command3, &QPushButton::clicked, this, &frmPack_Read1::Command3_Click);
    connect(Cmd2, &QPushButton::clicked, this, &frmPack_Read1::Cmd2_Click);
    connect(Command1, &QPushButton::clicked, this, &QWidget::close);

    auto* grid = new QGridLayout;
    int row = 0;
    grid->addWidget(new QLabel(QStringLiteral("USB 경로지정"), this), row, 0);
    grid->addWidget(TDBText_Config, row, 1, 1, 2);
    grid->addWidget(Cmd2, row++, 3);
    grid->addWidget(new QLabel(QStringLiteral("USB"), this), row, 0);
    grid->addWidget(Drive1, row++, 1, 1, 3);
    grid->addWidget(new QLabel(LoadResString(632), this), row, 0);
    grid->addWidget(Text2, row, 1);
    grid->addWidget(new QLabel(QStringLiteral("최종수신일"), this), row, 2);
    grid->addWidget(Text1, row++, 3);
    grid->addWidget(Check1, row++, 0, 1, 4);
    grid->addWidget(new QLabel(LoadResString(1199), this), row, 0);
    grid->addWidget(TDBDate1[0], row, 1);
    grid->addWidget(new QLabel(LoadResString(1200), this), row, 2);
    grid->addWidget(TDBDate1[1], row++, 3);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(Command3);
    buttons->addStretch();
    buttons->addWidget(Cmd_Save);
    buttons->addWidget(Cmd_Cancel);
    buttons->addWidget(Command1);
    auto* box = new QVBoxLayout(this);
    box->addWidget(sourceBox);
    box->addLayout(grid);
    box->addWidget(ProgressBar1);
    box->addWidget(Label_Result);
    box->addStretch();
    box->addLayout(buttons);
}

void frmPack_Read1::Choose_Source(const QString& source)
{
    source_ = source;
    Set_Step(false);
    Text1->clear();
    Text2->clear();
    ProgressBar1->setValue(0);
    Label_Result->clear();
}

void frmPack_Read1::Set_Step(bool receive)
{
    Cmd_Save->setText(receive ? kReceive : kInfo);
}

void frmPack_Read1::Command3_Click()
{
    const bool found = G().Link->Find_Analyzer();
    Apply_Link_Result(found);
    if (found)
        if (MDIForm_Main* m = MDIForm_Main::Instance())
            m->Set_Panel(4, Link_Panel4_Text(1));
    // Said here too: the main window's status bar may lie behind this window.
    Label_Result->setText(Link_Status_Text(found));
}

void frmPack_Read1::Cmd2_Click()
{
    const QString dir = QFileDialog::getExistingDirectory(this, LoadResString(1251), TDBText_Config->text());
    if (!dir.isEmpty())
        TDBText_Config->setText(dir);
    const QString folder = TDBText_Config->text();
    if (!QDir(folder).exists()) {
        Msg_Box(Text_Bad_Pack_Folder());
        return;
    }
    if (!Has_Master(folder)) {
        Msg_Box(Text_No_Records());
        return;
    }
    folderChosen_ = true;
}

void frmPack_Read1::Cmd_Save_Click()
{
    if (busy_)
        return;
    busy_ = true;
    Cmd_Save->setEnabled(false);
    if (Cmd_Save->text() == kReceive)
        Receive_Step();
    else
        Info_Step();
    Cmd_Save->setEnabled(true);
    busy_ = false;
}

void frmPack_Read1::Info_Step()
{
    if (source_ == QLatin1String("pack")) {
        const Pack_Info info = Pack_Info_Step();
        if (!info.ok) {
            Msg_Box(info.message);
            return;
        }
        Text2->setText(info.carCode);
        Text1->setText(Dashed_Day(info.lastDay));
        if (info.haveDates) {
            TDBDate1[0]->setDate(info.from.date());
            TDBDate1[1]->setDate(info.to.date());
        }
        Set_Step(true);
        return;
    }
    const Usb_Info info = Usb_Info_Step(source_, folderChosen_ ? TDBText_Config->text() : QString());
    if (!info.ok) {
        Msg_Box(info.message);
        return;
    }
    root_ = info.root;
    Text2->setText(info.carCode);
    if (source_ == QLatin1String("260"))
        return;
    Text1->setText(Dashed_Day(info.lastDay));
    if (info.haveDates) {
        TDBDate1[0]->setDate(info.from);
        TDBDate1[1]->setDate(info.to);
    }
    Set_Step(true);
}

void frmPack_Read1::Progress(int done, int all)
{
    ProgressBar1->setRange(0, std::max(all, 1));
    ProgressBar1->setValue(std::min(done, std::max(all, 1)));
}

void frmPack_Read1::Receive_Step()
{
    const bool range = Check1->isChecked();
    const QDate from = TDBDate1[0]->date(), to = TDBDate1[1]->date();
    if (source_ == QLatin1String("260"))
        return;
    ProgressBar1->setRange(0, 1);
    ProgressBar1->setValue(0);
    Label_Result->clear();
    const Reception_Progress progress = [this](int done, int all, const QString&) { Progress(done, all); };
    // While another program holds the database the dialog says it waits.
    const auto notice = [this](const QString& text) { Label_Result->setText(text); };
    Pack_Receive r;
    if (source_ == QLatin1String("pack")) {
        // The analyzer's port is lent to the job; a box of the pack routines
        // comes here while the job waits for it.
        const QString pack = QStringLiteral("port %1, pack of car %2")
                                 .arg(G().Port ? G().Port->portNumber() : 0)
                                 .arg(Text2->text());
        r = Reception_Job(
            Ledger_Road::Pack, pack,
            [&](Job& job, const Reception_Progress& told) {
                if (G().IO)
                    G().IO->Message = [&job](int id) { job.On_Caller([id] { Msg_Box(id); }); };
                Pack_Read read = Pack_Read_Step(range, from, to, told);
                if (G().IO)
                    G().IO->Message = nullptr;
                // Cancelled between days: the days read wait in \new.
                if (read.inboxDue && !job.Cancelled())
                    Run_Inbox(job.Db(), read.receive.outcome, told, read.daysRead);
                return read.receive;
            },
            progress, notice, G().Port.get(), Cmd_Cancel);
    } else {
        const QString source = source_, root = root_;
        const QString medium = QStringLiteral("medium %1, model %2, car %3")
                                   .arg(QDir::toNativeSeparators(root), source, Text2->text());
        r = Reception_Job(Ledger_Road::Usb, medium, [&](Job& job, const Reception_Progress& told) {
            return Usb_Receive_Step(job.Db(), source, root, range, from, to, told);
        }, progress, notice, nullptr, Cmd_Cancel);
    }
    if (r.cancelled) {
        const QString said =
            Lang_Text(QStringLiteral("수신이 취소되었습니다. 저장된 자료는 남고, 남은 파일은 다음 수신 때 저장됩니다."),
                      QStringLiteral("The reception was cancelled. What was stored stays; the files not yet stored "
                                     "are taken at the next reception."));
        Label_Result->setText(r.outcome.Summary());
        Msg_Box(said + QLatin1Char('\n') + r.outcome.Summary());
    } else if (r.ok) {
        ProgressBar1->setValue(ProgressBar1->maximum());
        Label_Result->setText(r.outcome.Summary());
        // The ledger's line last: how many days were stored and how many
        // carry a note, which the ledger window and the day's graph show.
        Msg_Box(r.message + QLatin1Char('\n') + r.outcome.Summary()
                + (r.ledger.isEmpty() ? QString() : QLatin1Char('\n') + r.ledger));
    } else if (!r.message.isEmpty()) {
        Msg_Box(r.message);
    }
    Set_Step(false);
}

} // namespace vex::forms
