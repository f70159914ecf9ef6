#include "forms/frmDB_Main.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Data_Package.h"
#include "exchange/Db_Keeping.h"
#include "forms/Keep_Progress.h"
#include "forms/Msg_Box.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"
#include "store/Job_Runner.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

namespace vex::forms {

namespace {

QString Size_Text(qint64 bytes)
{
    return bytes < 0 ? QString() : QLocale(QLocale::English).toString(bytes);
}

} // namespace

frmDB_Main::frmDB_Main(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    TDBText1 = new QLineEdit(this);
    TDBText1->setObjectName(QStringLiteral("TDBText1"));
    TDBText1->setReadOnly(true);
    TDBText2 = new QLineEdit(this);
    TDBText2->setObjectName(QStringLiteral("TDBText2"));
    TDBText2->setReadOnly(true);
    TDBText4 = new QLineEdit(this);
    TDBText4->setObjectName(QStringLiteral("TDBText4"));
    Label_Note = new QLabel(this);
    Label_Note->setObjectName(QStringLiteral("Label_Note"));
    Label_Note->setWordWrap(true);
    Cmd_File = new QPushButton(QStringLiteral("..."), this);
    Cmd_File->setObjectName(QStringLiteral("Cmd_File"));
    Command1[0] = new QPushButton(LoadResString(510), this);
    Command1[0]->setObjectName(QStringLiteral("Command1_0"));
    Command1[1] = new QPushButton(LoadResString(504), this);
    Command1[1]->setObjectName(QStringLiteral("Command1_1"));
    connect(Command1[0], &QPushButton::clicked, this, &frmDB_Main::Command1_Click);
    connect(Command1[1], &QPushButton::clicked, this, [this] {
        G().Login_OK = true;
        close();
    });
    connect(Cmd_File, &QPushButton::clicked, this, [this] {
        const QString file = QFileDialog::getOpenFileName(this, LoadResString(1197),
                                                          App_Path(G().App_Dir, QStringLiteral("\\exp")),
                                                          QStringLiteral("Export Files(*.exp) (*.zip)"));
        if (!file.isEmpty())
            TDBText4->setText(file);
    });

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("DB"), this), 0, 0);
    grid->addWidget(TDBText1, 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("→"), this), 0, 2);
    grid->addWidget(TDBText2, 0, 3);
    grid->addWidget(new QLabel(LoadResString(1197), this), 1, 0);
    grid->addWidget(TDBText4, 1, 1, 1, 2);
    grid->addWidget(Cmd_File, 1, 3);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1[0]);
    buttons->addWidget(Command1[1]);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addWidget(Label_Note);
    box->addStretch();
    box->addLayout(buttons);
    Set_Mode(1);
}

void frmDB_Main::Set_Mode(int dbType)
{
    mode_ = dbType == 2 ? 2 : 1;
    const bool import = mode_ == 2;
    TDBText4->setVisible(import);
    Cmd_File->setVisible(import);
    Command1[0]->setText(LoadResString(import ? 1197 : 510));
    const QString live = G().DB ? G().DB->Target().database : QString();
    TDBText1->setText(G().DB && G().DB->Target().engine == Engine::Sqlite ? Size_Text(QFileInfo(live).size())
                                                                          : QString());
    TDBText2->clear();
    Label_Note->clear();
}

void frmDB_Main::Command1_Click()
{
    if (!G().DB)
        return;
    if (mode_ == 2) {
        if (TDBText4->text().isEmpty()) {
            Msg_Box(1243);
            return;
        }
        const QString package = TDBText4->text();
        const Exchange_Report r = Keep_With_Progress(this, QStringLiteral("DB Loading..."),
                                                     [package](Cls_DB& db, const Exchange_Progress& p) {
                                                         return Import_Package(db, package, false, p);
                                                     });
        Label_Note->setText(r.Text());
        // The ledger's line of each package last, as after a reception.
        Msg_Box(r.ledger.isEmpty() ? r.message : r.message + QLatin1Char('\n') + r.ledger.join(QLatin1Char('\n')));
        return;
    }
    // The compaction runs as a job on its own connection; the window paints
    // meanwhile and takes no second press.
    setCursor(Qt::WaitCursor);
    Command1[0]->setEnabled(false);
    Job_Runner runner(G().DB->Target());
    runner.Start([](Job& job) -> std::any { return Optimise(job.Db()); });
    const Job_Result& done = runner.Wait_Events();
    Command1[0]->setEnabled(true);
    unsetCursor();
    Optimise_Result r;
    if (done.Ok())
        r = done.Value<Optimise_Result>();
    else
        r.message = done.error;
    TDBText2->setText(Size_Text(r.after));
    // On a server the compaction is its own, in place.
    Label_Note->setText(r.swapAtStart ? QString() : QStringLiteral("VACUUM ANALYZE (") + Engine_Name(G().DB->Target().engine) + QLatin1Char(')'));
    Msg_Box(r.message);
    if (r.ok && r.swapAtStart)
        close();
}

} // namespace vex::forms
