#include "forms/frm_dbmove.h"

#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "exchange/Db_Keeping.h"
#include "forms/Keep_Progress.h"
#include "forms/Msg_Box.h"
#include "store/Cls_DB.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace vex::forms {

namespace {

// "1: VEX (every table, with its day files)": which installation an option
// reads, by the folder of its default path, and what it brings.
QString Option_Text(const Move_Source& s)
{
    const QString program = QString::fromLatin1(s.defaultPath).section(QLatin1Char('\\'), -3, -3).toUpper();
    QStringList missing;
    for (const QString& t : Package_Tables())
        if (!s.tables.contains(t))
            missing << t;
    QString what = missing.isEmpty() ? Lang_Text(QStringLiteral("모든 표"), QStringLiteral("every table"))
                                     : Lang_Text(QStringLiteral("%1 없음"), QStringLiteral("without %1"))
                                           .arg(missing.join(QStringLiteral(", ")));
    if (s.dayFiles)
        what += Lang_Text(QStringLiteral(", 운행 파일 포함"), QStringLiteral(", with its day files"));
    return QStringLiteral("%1: %2 (%3)").arg(s.option).arg(program, what);
}

} // namespace

frm_dbmove::frm_dbmove(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(QStringLiteral("기존DB불러오기"));
    SSOption[0] = nullptr;
    auto* options = new QVBoxLayout;
    for (const Move_Source& s : Move_Sources()) {
        auto* option = new QRadioButton(Option_Text(s), this);
        option->setObjectName(QStringLiteral("SSOption%1").arg(s.option));
        SSOption[s.option] = option;
        options->addWidget(option);
        connect(option, &QRadioButton::clicked, this,
                [this, path = QString::fromLatin1(s.defaultPath)] { Text_Path->setText(path); });
    }
    options->addStretch();
    Text_Path = new QLineEdit(this);
    Text_Path->setObjectName(QStringLiteral("Text_Path"));
    TDBDate1 = new QDateEdit(QDate::currentDate().addYears(-1), this);
    TDBDate1->setObjectName(QStringLiteral("TDBDate1"));
    TDBDate1->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    TDBDate1->setCalendarPopup(true);
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setValue(0);
    Cmd2 = new QPushButton(QStringLiteral("..."), this);
    Cmd2->setObjectName(QStringLiteral("Cmd2"));
    Cmd_Save = new QPushButton(LoadResString(1029), this);
    Cmd_Save->setObjectName(QStringLiteral("Cmd_Save"));
    Cmd_Close = new QPushButton(LoadResString(504), this);
    Cmd_Close->setObjectName(QStringLiteral("Cmd_Close"));
    Cmd_Cancel = new QPushButton(LoadResString(506), this);
    Cmd_Cancel->setObjectName(QStringLiteral("Cmd_Cancel"));
    Cmd_Cancel->hide();
    connect(Cmd2, &QPushButton::clicked, this, [this] {
        const QString f = QFileDialog::getOpenFileName(this, windowTitle(), QFileInfo(Text_Path->text()).absolutePath(),
                                                       QStringLiteral("mdbfile (*.mdb)"));
        if (!f.isEmpty())
            Text_Path->setText(f);
    });
    connect(Cmd_Save, &QPushButton::clicked, this, &frm_dbmove::Cmd_Save_Click);
    connect(Cmd_Close, &QPushButton::clicked, this, &QWidget::close);
    SSOption[1]->click();

    auto* grid = new QGridLayout;
    grid->addLayout(options, 0, 0, 1, 3);
    grid->addWidget(Text_Path, 1, 0, 1, 2);
    grid->addWidget(Cmd2, 1, 2);
    grid->addWidget(new QLabel(LoadResString(1199), this), 2, 0);
    grid->addWidget(TDBDate1, 2, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Cmd_Save);
    buttons->addWidget(Cmd_Cancel);
    buttons->addWidget(Cmd_Close);
    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addWidget(ProgressBar1);
    box->addStretch();
    box->addLayout(buttons);
}

int frm_dbmove::Option() const
{
    for (int i = 1; i <= 3; ++i)
        if (SSOption[i]->isChecked())
            return i;
    return 1;
}

void frm_dbmove::Cmd_Save_Click()
{
    if (!G().DB)
        return;
    Cmd_Save->setEnabled(false);
    const QString path = Text_Path->text(), day = TDBDate1->date().toString(QStringLiteral("yyMMdd"));
    const int option = Option();
    const auto show = [this](const QString&, int done, int all) {
        ProgressBar1->setRange(0, std::max(all, 1));
        ProgressBar1->setValue(done);
    };
    const Exchange_Report r =
        Keep_In_Window(Cmd_Cancel, show, [path, option, day](Cls_DB& db, const Exchange_Progress& p) {
            return Move_From(db, path, option, day, p);
        });
    Cmd_Save->setEnabled(true);
    Msg_Box(r.ok ? r.message + QLatin1Char('\n') + r.Text() : r.message);
    if (r.ok)
        close();
}

} // namespace vex::forms
