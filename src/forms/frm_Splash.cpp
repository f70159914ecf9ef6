#include "forms/frm_Splash.h"

#include "app/Start_Up.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "exchange/Data_Package.h"
#include "exchange/Db_Compaction.h"
#include "forms/MDIForm_Main.h"
#include "forms/Msg_Box.h"
#include "forms/logic/Login_Logic.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace vex::forms {

frm_Splash::frm_Splash(const QString& appDir, QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent), appDir_(appDir)
{
    auto* title = new QLabel(QStringLiteral("VEX"), this);
    QFont f = title->font();
    f.setPointSize(f.pointSize() * 2);
    f.setBold(true);
    title->setFont(f);
    lblLabels[0] = new QLabel(QStringLiteral("User ID (U)   :"), this);
    lblLabels[1] = new QLabel(QStringLiteral("Password (P) :"), this);
    txtUserName = new QLineEdit(this);
    txtUserName->setObjectName(QStringLiteral("txtUserName"));
    txtPassword = new QLineEdit(this);
    txtPassword->setObjectName(QStringLiteral("txtPassword"));
    txtPassword->setEchoMode(QLineEdit::Password);
    cmdOK = new QPushButton(this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setAutoDefault(true); // Enter on the focused button presses it
    cmdCancel = new QPushButton(this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(true);
    Label2 = new QLabel(this);
    Label2->setObjectName(QStringLiteral("Label2"));

    auto* grid = new QGridLayout;
    grid->addWidget(lblLabels[0], 0, 0);
    grid->addWidget(txtUserName, 0, 1);
    grid->addWidget(lblLabels[1], 1, 0);
    grid->addWidget(txtPassword, 1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* box = new QVBoxLayout(this);
    box->addWidget(title, 0, Qt::AlignHCenter);
    box->addLayout(grid);
    box->addWidget(Label2);
    box->addLayout(buttons);
    resize(Twips(5400), Twips(2800));

    // Enter moves on (user -> password -> OK); it never presses OK itself.
    connect(txtUserName, &QLineEdit::returnPressed, this, [this] { txtPassword->setFocus(); });
    connect(txtPassword, &QLineEdit::returnPressed, this, [this] { cmdOK->setFocus(); });
    connect(cmdOK, &QPushButton::clicked, this, &frm_Splash::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frm_Splash::cmdCancel_Click);

    Form_Load();
}

void frm_Splash::Form_Load()
{
    // The optimise of the last session takes effect before anything holds
    // the live database open.
    Label2->setText(QStringLiteral("DB 최적화 완료 중입니다. 잠시만 기다려 주십시요!"));
    // The copy runs as a job, so the window paints meanwhile.
    Job_Runner runner;
    runner.Start([appDir = appDir_](Job&) -> std::any { return Take_Over_Compaction(appDir); });
    const Job_Result& took = runner.Wait_Events();
    const Compaction_Takeover takeover = took.Ok() ? took.Value<Compaction_Takeover>() : Compaction_Takeover::Failed;
    Label2->clear();
    if (takeover == Compaction_Takeover::Failed) {
        Msg_Box(QStringLiteral("Permission denied: ") + appDir_ + QStringLiteral("/db/temp2.mdb"),
                QMessageBox::Critical);
        End_Process(1);
        return;
    }
    Main_Start(appDir_);
    if (takeover == Compaction_Takeover::Stale)
        Msg_Box(Stale_Compaction_Message(), QMessageBox::Information);
    Globals& g = G();
    settingsOpen_ = false;
    Guarded(1001, [&] {
        g.DB = std::make_unique<Cls_DB>();
        setWindowTitle(LoadResString(603));
        cmdOK->setText(LoadResString(507));
        cmdCancel->setText(LoadResString(504));
        if (g.DB->DB_State() != 1)
            throw RunTimeError(QStringLiteral("Data source name not found"));
        // A write that waits for another program says so in the status bar,
        // which paints it at once: the wait holds this thread.
        g.DB->Wait_Notice = [](const QString& text) {
            QString line = text;
            Status_Text(line);
        };
        // A re-key cut short after its rows committed gets its day files.
        Finish_Pending_Renames(*g.DB);
        // A database of an earlier version gets the indexes of this one; one
        // that can't be written now gets them at a later start.
        Guarded(kErrIndexes, [&] { g.DB->Ensure_Indexes(); });
        Recordset s14 = g.DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D14"));
        settingsOpen_ = true;
        Recordset s10 = g.DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D10 ORDER BY D_F1 DESC"));
        if (s10.RecordCount() > 0 && g.Config)
            Read_S_D10(s10, *g.Config);
    });
}

void frm_Splash::showEvent(QShowEvent* e)
{
    Vex_Form::showEvent(e);
    Form_Activate();
}

void frm_Splash::Form_Activate()
{
    // A site that keeps the factory account only presses OK.
    txtUserName->setText(QStringLiteral("qemba"));
    txtPassword->setText(QStringLiteral("qemba"));
    txtUserName->setFocus();
}

void frm_Splash::cmdCancel_Click()
{
    G().Login_OK = false;
    End_Process(0);
}

void frm_Splash::cmdOK_Click()
{
    if (txtUserName->text().isEmpty()) {
        txtUserName->setFocus();
        return;
    }
    if (txtPassword->text().isEmpty()) {
        txtPassword->setFocus();
        return;
    }
    const QString typed = Login_Key(txtUserName->text(), txtPassword->text());
    if (!settingsOpen_)
        Form_Load();

    Globals& g = G();
    bool haveRow = false;
    // The settings are loaded on every press, however the attempt ends; a
    // Null user id or password ends the click here, silently.
    const bool read = Guarded(1002, [&] {
        if (!g.DB || !g.Config)
            throw RunTimeError(QStringLiteral("Object variable not set"));
        Recordset s14 = g.DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D14"));
        if (s14.RecordCount() < 1)
            return;
        haveRow = true;
        Read_S_D14(s14, *g.Config, g);
        Recordset s4 = g.DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D4"));
        if (s4.RecordCount() > 0)
            Read_S_D4(s4, g);
    });
    if (!read || !haveRow)
        return;

    const QString stored = Login_Key(g.Config->U_UserID, g.Config->U_Pass);
    if (typed != stored) {
        if (failed_ >= 2) {
            Msg_Box(157, QMessageBox::Critical, QStringLiteral("Login Error"));
            End_Process(0);
            return;
        }
        ++failed_;
        txtUserName->setFocus();
        return;
    }

    g.Login_User = txtUserName->text();
    g.Login_Pass = txtPassword->text();
    g.Login_OK = true;
    auto* main = new MDIForm_Main;
    main->show();
    QString status = QStringLiteral("User : ") + txtUserName->text().toUpper();
    Status_Text(status);
    close();
}

} // namespace vex::forms
