#include "forms/Frm_st.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Agency_File.h"
#include "forms/Msg_Box.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

Frm_st::Frm_st(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("공단제출배열"));
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text2 = new QLineEdit(this);
    Text2->setObjectName(QStringLiteral("Text2"));
    for (int i = 0; i < 2; ++i) {
        TDBDate1[i] = new QDateEdit(QDate::currentDate().addDays(i == 0 ? -30 : 0), this);
        TDBDate1[i]->setObjectName(QStringLiteral("TDBDate1_%1").arg(i));
        TDBDate1[i]->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        TDBDate1[i]->setCalendarPopup(true);
    }
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setValue(0);
    Text_Check = new QPlainTextEdit(this);
    Text_Check->setObjectName(QStringLiteral("Text_Check"));
    Text_Check->setReadOnly(true);
    Cmd_Save = new QPushButton(LoadResString(1029), this);
    Cmd_Save->setObjectName(QStringLiteral("Cmd_Save"));
    Command1 = new QPushButton(LoadResString(504), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(LoadResString(505), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    connect(Cmd_Save, &QPushButton::clicked, this, &Frm_st::Cmd_Save_Click);
    connect(Command1, &QPushButton::clicked, this, &QWidget::close);
    connect(Command2, &QPushButton::clicked, this, &Frm_st::Command2_Click);
    if (G().DB) {
        const Agency_Identity id = Load_Agency_Identity(*G().DB);
        Text1->setText(id.company);
        Text2->setText(id.business);
    }
    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("회사명"), this), 0, 0);
    grid->addWidget(Text1, 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("사업자번호"), this), 0, 2);
    grid->addWidget(Text2, 0, 3);
    grid->addWidget(new QLabel(LoadResString(1199), this), 1, 0);
    grid->addWidget(TDBDate1[0], 1, 1);
    grid->addWidget(new QLabel(LoadResString(1200), this), 1, 2);
    grid->addWidget(TDBDate1[1], 1, 3);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(Command2);
    buttons->addStretch();
    buttons->addWidget(Cmd_Save);
    buttons->addWidget(Command1);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addWidget(Text_Check, 1);
    box->addWidget(ProgressBar1);
    box->addLayout(buttons);
}

void Frm_st::Command2_Click()
{
    if (!G().DB)
        return;
    QString message;
    Save_Agency_Identity(*G().DB, {Text1->text().trimmed(), Text2->text().trimmed()}, &message);
    Msg_Box(message);
}

void Frm_st::Cmd_Save_Click()
{
    if (!G().DB)
        return;
    const QString from = TDBDate1[0]->date().toString(QStringLiteral("yyMMdd"));
    const QString to = TDBDate1[1]->date().toString(QStringLiteral("yyMMdd"));
    const Agency_Identity id{Text1->text().trimmed(), Text2->text().trimmed()};
    if (!id.business.isEmpty())
        Text2->setText(Zero_Pad(id.business, 10));
    // Before anything is written: what stops the run, what it will pass over
    // and what it writes off the layout.
    const std::vector<Agency_Note> notes = Agency_Check(*G().DB, id, from, to);
    QStringList lines;
    for (const Agency_Note& n : notes)
        lines << (n.key.isEmpty() ? QString() : n.key + QStringLiteral("  ")) + n.what;
    Text_Check->setPlainText(lines.join(QLatin1Char('\n')));
    const auto stop = std::find_if(notes.begin(), notes.end(), [](const Agency_Note& n) { return n.stops; });
    if (stop != notes.end()) {
        Msg_Box(stop->what);
        return;
    }
    if (!notes.empty()
        && Msg_Box(QStringLiteral("%1건을 확인하세요. 계속하시겠습니까?").arg(notes.size()), QMessageBox::Question, {},
                   QMessageBox::Yes | QMessageBox::No)
               != QMessageBox::Yes)
        return;
    Cmd_Save->setEnabled(false);
    Job_Runner runner(G().DB->Target());
    connect(&runner, &Job_Runner::Progress, this, [this](const QString&, int done, int all) {
        ProgressBar1->setRange(0, all);
        ProgressBar1->setValue(done);
    });
    runner.Start([id, from, to](Job& job) -> std::any {
        return Write_Agency_Files(job.Db(), id, from, to, [&job](int done, int all) { job.Progress({}, done, all); });
    });
    const Job_Result& done = runner.Wait_Events();
    Agency_Result r;
    if (done.Ok())
        r = done.Value<Agency_Result>();
    else
        r.message = done.error;
    Cmd_Save->setEnabled(true);
    Msg_Box(r.message);
}

} // namespace vex::forms
