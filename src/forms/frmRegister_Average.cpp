#include "forms/frmRegister_Average.h"

#include "analysis/New_Standards.h"
#include "analysis/Standards.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QProgressDialog>
#include <QVBoxLayout>

namespace vex::forms {

namespace {

constexpr int16_t kErrAverage_Load = 1030;
constexpr int16_t kErrAverage_Command1 = 1031;
constexpr int16_t kErrAverage_Command3 = 1032;

QString Done_Text(int done, int total)
{
    return QStringLiteral("%1 / %2").arg(done).arg(total);
}

} // namespace

frmRegister_Average::frmRegister_Average(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(615));
    SSPanel6 = new QLabel(LoadResString(1067), this);
    SSPanel6->setFrameShape(QFrame::Panel);
    SSPanel6->setFrameShadow(QFrame::Sunken);
    auto* grid = new QGridLayout;
    TDBNum_Car[0] = nullptr;
    Label1[0] = nullptr;
    for (int i = 1; i <= kStandards; ++i) {
        Label1[i] = new QLabel(Standard_Caption(i), this);
        TDBNum_Car[i] = new QLineEdit(this);
        TDBNum_Car[i]->setObjectName(QStringLiteral("TDBNum_Car%1").arg(i));
        // A number field: letters never get in.
        TDBNum_Car[i]->setValidator(new QIntValidator(0, i == 5 ? 2147483647 : 32767, TDBNum_Car[i]));
        TDBNum_Car[i]->setAlignment(Qt::AlignRight);
        grid->addWidget(Label1[i], (i - 1) % 7, (i - 1) / 7 * 2);
        grid->addWidget(TDBNum_Car[i], (i - 1) % 7, (i - 1) / 7 * 2 + 1);
    }
    Command1 = new QPushButton(LoadResString(505), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command3 = new QPushButton(LoadResString(1272), this);
    Command3->setObjectName(QStringLiteral("Command3"));
    Command2 = new QPushButton(LoadResString(504), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    connect(Command1, &QPushButton::clicked, this, &frmRegister_Average::Command1_Click);
    connect(Command3, &QPushButton::clicked, this, &frmRegister_Average::Command3_Click);
    connect(Command2, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(Command3);
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(Command2);
    auto* box = new QVBoxLayout(this);
    box->addWidget(SSPanel6);
    box->addLayout(grid);
    box->addStretch();
    box->addLayout(buttons);
    Form_Load();
}

void frmRegister_Average::Form_Load()
{
    Guarded(kErrAverage_Load, [&] {
        if (!G().DB)
            return;
        const Standard_Values values = Standards_Load(*G().DB);
        for (int i = 1; i <= kStandards; ++i)
            TDBNum_Car[i]->setText(values[size_t(i - 1)]);
    });
}

void frmRegister_Average::Command1_Click()
{
    Standard_Values values;
    for (int i = 1; i <= kStandards; ++i) {
        values[size_t(i - 1)] = TDBNum_Car[i]->text();
        const QString why = Standard_Error(i, values[size_t(i - 1)]);
        if (!why.isEmpty()) {
            TDBNum_Car[i]->setFocus();
            Msg_Box(why, QMessageBox::Warning);
            return;
        }
    }
    if (Guarded(kErrAverage_Command1, [&] { Standards_Save(*G().DB, *G().Config, values); }))
        Msg_Box(QStringLiteral("저장 완료되었읍니다 !"));
}

void frmRegister_Average::Command3_Click()
{
    Cls_DB& db = *G().DB;
    QString missing;
    int trips = 0;
    Cls_Config standards;
    if (!Guarded(kErrAverage_Command3, [&] {
            missing = Standards_Missing(db);
            trips = db.DB_RSet_D_D(QStringLiteral("SELECT D_F1 FROM D_D1")).RecordCount();
            standards = Standards_Stored(db, *G().Config);
        }))
        return;
    if (!missing.isEmpty()) {
        Msg_Box(missing, QMessageBox::Warning);
        return;
    }
    if (trips == 0) {
        Msg_Box(1135);
        return;
    }

    QApplication::setOverrideCursor(Qt::WaitCursor);
    QProgressDialog progress(LoadResString(1272) + QStringLiteral("  ") + Done_Text(0, trips), LoadResString(506), 0,
                             trips, this);
    progress.setObjectName(QStringLiteral("Progress"));
    progress.setWindowTitle(LoadResString(615));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    progress.setAutoClose(false);
    progress.setAutoReset(false);
    progress.setValue(0);
    Progress = &progress;

    // The recount writes on the runner's connection; its thread reports
    // here through the event queue.
    Job_Runner runner(db.Target());
    connect(&progress, &QProgressDialog::canceled, &runner, &Job_Runner::Cancel);
    connect(&runner, &Job_Runner::Progress, &progress, [&progress](const QString&, int done, int total) {
        progress.setMaximum(total);
        progress.setValue(done);
        progress.setLabelText(LoadResString(1272) + QStringLiteral("  ") + Done_Text(done, total));
    });
    runner.Start([standards](Job& job) -> std::any { return Recount_Job(job, standards); });
    const Job_Result& result = runner.Wait_Events();
    Progress = nullptr;
    progress.close();
    QApplication::restoreOverrideCursor();

    if (!result.Ok()) {
        Msg_Box(result.error, QMessageBox::Warning);
        return;
    }
    const auto s = result.Value<Recount_Summary>();
    if (!s.error.isEmpty())
        Msg_Box(s.error, QMessageBox::Warning);
    else if (s.cancelled)
        Msg_Box(LoadResString(1272) + QStringLiteral(" - ") + LoadResString(506) + QStringLiteral(" (") +
                Done_Text(s.done, s.total) + QLatin1Char(')'));
    else
        Msg_Box(1244);
}

} // namespace vex::forms
