#include "forms/MDIForm_Main.h"

#include "acquisition/AnalyzerLink.h"
#include "app/Start_Up.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Msg_Box.h"
#include "forms/Vex_Form.h"
#include "forms/Remote_Press.h"
#include "forms/frmDB_Main.h"
#include "forms/frmReport_Main.h"
#include "forms/frmReport_Reference.h"
#include "forms/logic/Reception_Logic.h"
#include "platform/AppFolder.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QGridLayout>
#include <QKeyEvent>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QUrl>
#include <QVBoxLayout>

namespace vex::forms {

namespace {

MDIForm_Main* g_main = nullptr;

constexpr int kIndexRole = Qt::UserRole;
constexpr int kKeyRole = Qt::UserRole + 1;

} // namespace

MDIForm_Main* MDIForm_Main::Instance()
{
    return g_main;
}

MDIForm_Main::MDIForm_Main(QWidget* parent) : QMainWindow(parent)
{
    g_main = this;
    setObjectName(QStringLiteral("MDIForm_Main"));
    setWindowTitle(G().Prog_Title);
    move(0, 0);
    resize(1024, 700);

    TreeView1 = new QTreeWidget;
    TreeView1->setObjectName(QStringLiteral("TreeView1"));
    TreeView1->setHeaderHidden(true);
    TreeView1->setMinimumWidth(280);
    TreeView1->installEventFilter(this);

    auto* right = new QWidget;
    auto* rightBox = new QVBoxLayout(right);
    Label1 = new QLabel(QStringLiteral("Analysis  System"));
    Label1->setObjectName(QStringLiteral("Label1"));
    QFont big = Label1->font();
    big.setPointSize(big.pointSize() * 2);
    big.setBold(true);
    Label1->setFont(big);
    auto* label2 = new QLabel(QStringLiteral("VEX ") + QStringLiteral(VEX_VERSION));
    auto* buttons = new QGridLayout;
    SSCommand[0] = nullptr;
    for (int b = 1; b <= 13; ++b) {
        auto* button = new QPushButton(Button_Caption(b));
        button->setObjectName(QStringLiteral("SSCommand%1").arg(b));
        button->setMinimumHeight(40);
        SSCommand[b] = button;
        buttons->addWidget(button, (b - 1) / 3, (b - 1) % 3);
        connect(button, &QPushButton::clicked, this, [this, b] { Run(Button_Action(b)); });
    }
    rightBox->addWidget(Label1, 0, Qt::AlignHCenter);
    rightBox->addWidget(label2, 0, Qt::AlignHCenter);
    rightBox->addSpacing(12);
    rightBox->addLayout(buttons);
    rightBox->addStretch();

    auto* split = new QSplitter;
    split->addWidget(TreeView1);
    split->addWidget(right);
    split->setStretchFactor(1, 1);
    setCentralWidget(split);

    Panel[0] = nullptr;
    for (int p = 1; p <= 4; ++p) {
        Panel[p] = new QLabel;
        Panel[p]->setObjectName(QStringLiteral("Panel%1").arg(p));
        Panel[p]->setMinimumWidth(60);
        statusBar()->addWidget(Panel[p], p == 1 ? 1 : 0);
    }
    Panel[3]->setText(QStringLiteral(VEX_VERSION));
    Panel[4]->setText(Link_Panel4_Text(G().Link_Type));
    // Painted at once: the text may come from a wait that holds this thread.
    G().Status_Sink = [this](const QString& text) {
        Set_Panel(1, text);
        Panel[1]->repaint();
    };

    Build_Tree();
    connect(TreeView1, &QTreeWidget::currentItemChanged, this, [this] { Refresh_Pictures(); });
    connect(TreeView1, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { Tree_Dispatch(Node_Index(item)); });
    Language_Routine();
}

MDIForm_Main::~MDIForm_Main()
{
    if (g_main == this) {
        g_main = nullptr;
        G().Status_Sink = nullptr;
    }
}

void MDIForm_Main::Build_Tree()
{
    QMap<QString, QTreeWidgetItem*> byKey;
    for (const Tree_Node& n : Tree_Nodes()) {
        QTreeWidgetItem* item = nullptr;
        const QString parent = QString::fromLatin1(n.parent);
        if (parent.isEmpty())
            item = new QTreeWidgetItem(TreeView1);
        else
            item = new QTreeWidgetItem(byKey.value(parent));
        item->setText(0, Node_Text(n));
        item->setData(0, kIndexRole, n.index);
        item->setData(0, kKeyRole, QString::fromLatin1(n.key));
        byKey[QString::fromLatin1(n.key)] = item;
    }
    Refresh_Pictures();
    Node(5)->setExpanded(true);
}

QTreeWidgetItem* MDIForm_Main::Node(int index) const
{
    QTreeWidgetItemIterator it(TreeView1);
    for (; *it; ++it)
        if ((*it)->data(0, kIndexRole).toInt() == index)
            return *it;
    return nullptr;
}

int MDIForm_Main::Node_Index(QTreeWidgetItem* item) const
{
    return item ? item->data(0, kIndexRole).toInt() : 0;
}

void MDIForm_Main::Refresh_Pictures()
{
    // Folders for the groups at the top, pages for the functions; the selected
    // node shows the open form of its picture.
    QStyle* s = style();
    const QIcon pictures[5] = {{}, s->standardIcon(QStyle::SP_DirClosedIcon), s->standardIcon(QStyle::SP_DirOpenIcon),
                               s->standardIcon(QStyle::SP_FileIcon), s->standardIcon(QStyle::SP_ArrowRight)};
    QTreeWidgetItem* current = TreeView1->currentItem();
    QTreeWidgetItemIterator it(TreeView1);
    for (; *it; ++it) {
        const bool group = (*it)->parent() == nullptr;
        const bool selected = *it == current;
        (*it)->setIcon(0, pictures[group ? (selected ? 2 : 1) : (selected ? 4 : 3)]);
    }
}

void MDIForm_Main::Language_Routine()
{
    const QString name = Language_Name();
    helpFile_ = Help_File_For(G().App_Dir, name);
    spanish_ = name == QLatin1String("Spanish");
}

void MDIForm_Main::Set_Panel(int panel, const QString& text)
{
    if (panel >= 1 && panel <= 4)
        Panel[panel]->setText(text);
}

bool MDIForm_Main::eventFilter(QObject* watched, QEvent* e)
{
    if (watched == TreeView1 && e->type() == QEvent::KeyPress) {
        auto* k = static_cast<QKeyEvent*>(e);
        if (k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter) {
            Tree_Dispatch(Node_Index(TreeView1->currentItem()));
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, e);
}

void MDIForm_Main::Tree_Dispatch(int index)
{
    Run(Tree_Action(index));
}

Vex_Form* MDIForm_Main::Open_Window(const QString& name)
{
    Vex_Form* form = Find_Form(name);
    if (!form) {
        form = Create_Form(name, this);
        if (!form) {
            Not_Built(name);
            return nullptr;
        }
        Place_Size(form);
    }
    form->move(pos());
    form->show();
    form->raise();
    form->activateWindow();
    return form;
}

void MDIForm_Main::Run(const Nav_Action& a)
{
    switch (a.kind) {
    case Nav_Action::None:
        return;
    case Nav_Action::Exit:
        Exit_Program();
        return;
    case Nav_Action::Help:
        Show_Help();
        return;
    case Nav_Action::Open:
        break;
    }
    if (a.remote) {
        Remote_Press(this);
        return;
    }
    if (a.option >= 0 && a.form.startsWith(QLatin1String("frmReport_")))
        G().Report_Kind = int16_t(a.option);
    Vex_Form* form = Open_Window(a.form);
    if (auto* analysis = qobject_cast<frmReport_Main*>(form); analysis && a.optionChange)
        analysis->Option_Button_Change(a.option);
    if (auto* reference = qobject_cast<frmReport_Reference*>(form); reference && a.optionChange)
        reference->Option_Button_Change(a.option);
    if (auto* db = qobject_cast<frmDB_Main*>(form); db && a.dbType >= 0)
        db->Set_Mode(a.dbType);
    if (form && a.captionId)
        form->setWindowTitle(LoadResString(a.captionId));
}

void MDIForm_Main::changeEvent(QEvent* e)
{
    QMainWindow::changeEvent(e);
    if (e->type() == QEvent::ActivationChange && isActiveWindow())
        Form_Activate();
}

void MDIForm_Main::Form_Activate()
{
    if (!DB_Size_Fires(DB_File_Length(Live_DB_File())))
        return;
    Msg_Box(DB_Full_Text(), QMessageBox::NoIcon);
    // The export gets an empty database to fill.
    const QString& app = G().App_Dir;
    const QString target = App_Path(app, QStringLiteral("\\Exp\\exp.mdb"));
    QFile::remove(target);
    QFile::copy(App_Path(app, QStringLiteral("\\db_temp\\morix.mdb")), target);
    Open_Window(QStringLiteral("frmPack_export1"));
}

void MDIForm_Main::Show_Help()
{
    const QString& app = G().App_Dir;
    const QStringList paths = Help_Paths(app);
    if (!paths.contains(helpFile_))
        return;
    // The help pages travel in the program; a folder without them gets them
    // on first use.
    if (!QFile::exists(helpFile_)) {
        QDir().mkpath(QFileInfo(helpFile_).path());
        QFile::copy(Help_Resource(app, helpFile_), helpFile_);
        QFile::setPermissions(helpFile_, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    }
    Open_Url(QUrl::fromLocalFile(helpFile_));
}

void MDIForm_Main::Exit_Program()
{
    Main_Shutdown();
    End_Process(0);
}

void MDIForm_Main::closeEvent(QCloseEvent* e)
{
    // Closing the window is the tree's "Exit": the port and the connection
    // are closed in order before the process ends.
    e->accept();
    Exit_Program();
}

} // namespace vex::forms
