#include "forms/frm_About.h"

#include "core/Messages.h"
#include "forms/Msg_Box.h"

#include <QFile>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QProcess>
#include <QSysInfo>
#include <QVBoxLayout>

namespace vex::forms {

QString System_Information()
{
    QStringList lines;
    QProcess uname;
    uname.start(QStringLiteral("uname"), {QStringLiteral("-a")});
    if (uname.waitForFinished(3000) && uname.exitCode() == 0)
        lines << QStringLiteral("Kernel: ") + QString::fromLocal8Bit(uname.readAllStandardOutput()).trimmed();
    QFile release(QStringLiteral("/etc/os-release"));
    if (release.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : release.readAll().split('\n'))
            if (line.startsWith("PRETTY_NAME="))
                lines << QStringLiteral("OS: ")
                             + QString::fromUtf8(line.mid(12)).remove(QLatin1Char('"')).trimmed();
    }
    if (lines.isEmpty())
        return {};
    lines << QStringLiteral("CPU: ") + QSysInfo::currentCpuArchitecture();
    lines << QStringLiteral("Qt: ") + QString::fromLatin1(qVersion());
    return lines.join(QLatin1Char('\n'));
}

frm_About::frm_About(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(601));
    auto* title = new QLabel(QStringLiteral("VEX"), this);
    QFont f = title->font();
    f.setPointSize(f.pointSize() * 2);
    f.setBold(true);
    title->setFont(f);
    lblVersion = new QLabel(QStringLiteral("Version ") + QStringLiteral(VEX_VERSION), this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    Label3 = new QLabel(QStringLiteral("차량 운행기록 분석 시스템"), this);
    Label3->setObjectName(QStringLiteral("Label3"));
    Command1 = new QPushButton(LoadResString(504), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command2 = new QPushButton(QStringLiteral("시스템 정보..."), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    connect(Command1, &QPushButton::clicked, this, &QWidget::close);
    connect(Command2, &QPushButton::clicked, this, &frm_About::Command2_Click);

    auto* box = new QVBoxLayout(this);
    box->addWidget(title);
    box->addWidget(lblVersion);
    box->addWidget(Label3);
    box->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command2);
    buttons->addWidget(Command1);
    box->addLayout(buttons);
}

void frm_About::Command2_Click()
{
    const QString info = System_Information();
    if (info.isEmpty()) {
        Msg_Box(System_Lang() == Lang::Korean ? LoadResString(1245)
                                              : QStringLiteral("Can not use system information now."));
        return;
    }
    Msg_Box(info, QMessageBox::Information, windowTitle());
}

void frm_About::keyPressEvent(QKeyEvent* e)
{
    if (e->key() == Qt::Key_A && (e->modifiers() & Qt::ControlModifier)) {
        // Label3 leaves the layout and stands at left 1500, top 1126 twips.
        layout()->removeWidget(Label3);
        Label3->move(Twips(1500), Twips(1126));
        return;
    }
    Vex_Form::keyPressEvent(e);
}

} // namespace vex::forms
