#pragma once
// The map of functions of the main window: the 46 nodes of the tree, what
// each node and each of the 13 buttons opens, the database size test and the
// choice of the help file.
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace vex::forms {

struct Tree_Node {
    int index;          // 1-based place in the tree: the dispatcher's only input
    const char* key;
    const char* parent; // empty for the ten top entries
    int msgId;          // text from the message table, or 0
    const char* fixedText; // fixed Korean in every language when msgId is 0
};

const std::vector<Tree_Node>& Tree_Nodes();
QString Node_Text(const Tree_Node& node);

struct Nav_Action {
    enum Kind { None, Exit, Help, Open };
    Kind kind = None;
    QString form;          // window to open
    int option = -1;       // Report_Kind and the option of the report windows
    bool optionChange = false; // Option_Button_Change is called with the option
    int dbType = -1;       // frmDB_Main's DB_Type
    int captionId = 0;     // caption set on the window
    bool remote = false;   // the remote reception of button 10
};

// The action of the tree node of that index (1 to 46); a parent node, or an
// index outside the tree, has none.
Nav_Action Tree_Action(int index);
// The action of SSCommand1 to SSCommand13.
Nav_Action Button_Action(int button);
// Caption of SSCommand1 to SSCommand13.
QString Button_Caption(int button);

// The database size test: a file over 2 GB (whose length a 32-bit value
// takes as negative) or of 1,900,000,000 bytes and more.
constexpr qint64 kDB_Size_Limit = 1900000000;
bool DB_Size_Fires(qint64 size);
// Length of the file as a 32-bit signed value takes it (negative from 2 GB
// on), or 0 when missing.
qint64 DB_File_Length(const QString& path);
// The file of the live database: the SQLite file the data source names, or
// the default "\db\morix.mdb" for a server.
QString Live_DB_File();
QString DB_Full_Text();

// The language routine: the English name of the system's language
// ("Korean", "English", "Chinese", ...), VEX_LANG (ko, en, zh) first.
QString Language_Name();
// The help file of a language name; any other than the three is English.
QString Help_File_For(const QString& appDir, const QString& languageName);
// The three paths the Help entry compares with, Korean, English, Chinese.
QStringList Help_Paths(const QString& appDir);
// Resource of a help path (":/Help/VEX.html"), empty when none.
QString Help_Resource(const QString& appDir, const QString& helpPath);

} // namespace vex::forms
