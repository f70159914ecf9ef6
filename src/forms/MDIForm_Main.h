#pragma once
// The main window: the tree of all functions, the shortcut buttons and the
// status bar. It dispatches to the other windows and tests the size of the
// database on each activation.
#include "forms/logic/Nav_Logic.h"

#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QTreeWidget>

namespace vex::forms {

class Vex_Form;

class MDIForm_Main : public QMainWindow {
    Q_OBJECT
public:
    explicit MDIForm_Main(QWidget* parent = nullptr);
    ~MDIForm_Main() override;
    // The one main window, while it stands.
    static MDIForm_Main* Instance();

    QTreeWidget* TreeView1;
    QPushButton* SSCommand[14]; // 1 to 13
    QLabel* Panel[5];           // status panels 1 to 4
    QLabel* Label1;

    // The help file the language routine chose.
    QString Help_File() const { return helpFile_; }
    void Set_Help_File(const QString& path) { helpFile_ = path; }

    // The node of a place in the tree (1 to 43).
    QTreeWidgetItem* Node(int index) const;
    int Node_Index(QTreeWidgetItem* item) const;

    void Set_Panel(int panel, const QString& text);
    // Runs the action of a node, as a double click or Enter does.
    void Tree_Dispatch(int index);
    void Run(const Nav_Action& action);
    // A window by name: opened or brought up at this window's corner; null
    // (after saying so) when this program has no such window yet.
    Vex_Form* Open_Window(const QString& name);

    void Form_Activate(); // the database size test
    void Show_Help();
    void Exit_Program();

protected:
    void changeEvent(QEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    void Build_Tree();
    void Refresh_Pictures();
    void Language_Routine();

    QString helpFile_;
    bool spanish_ = false; // reserved: nothing reads it
};

// Creates the window of that name, or null when the program has none.
Vex_Form* Create_Form(const QString& name, QWidget* parent);
// The names of the windows Create_Form knows.
QStringList Built_Forms();

} // namespace vex::forms
