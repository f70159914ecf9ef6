#pragma once
// vexcli: every command is a function of this table. A command receives the
// words after its name and prints to out; errors go to err with exit code 2.
#include "exchange/Reception_Ledger.h"

#include <QStringList>
#include <QTextStream>

namespace vex::cli {

struct Context {
    QString appDir;        // from --app-dir, VEX_HOME or the default
    QStringList args;      // the words after the command's name
    QTextStream& out;
    QTextStream& err;
};

using Handler = int (*)(Context&);

struct Command {
    const char* name;
    const char* usage;
    const char* summary;
    Handler run;
};

// Opens the application folder (creating it when new) and runs Main_Start and
// the database connection; prints the reason and returns false on failure.
bool Start_App(Context& ctx);
// Loads S_D14, S_D10 and S_D4 into the configuration and the globals.
bool Load_App_Settings(Context& ctx);

int Cmd_Init(Context& ctx);
int Cmd_Show(Context& ctx);
int Cmd_Dump(Context& ctx);
int Cmd_Receive(Context& ctx);
int Cmd_Day(Context& ctx);
int Cmd_Sample(Context& ctx);
int Cmd_Graph(Context& ctx);
int Cmd_Sections(Context& ctx);
int Cmd_Month(Context& ctx);
int Cmd_Standards(Context& ctx);
int Cmd_Recalc(Context& ctx);
int Cmd_Report(Context& ctx);
int Cmd_Excel(Context& ctx);
// The kinds of "excel", for the usage.
QStringList Excel_Kind_Names();
int Cmd_Fuel(Context& ctx);
int Cmd_Optimise(Context& ctx);
int Cmd_Backup(Context& ctx);
int Cmd_Export(Context& ctx);
int Cmd_Import(Context& ctx);
int Cmd_Delete(Context& ctx);
int Cmd_Rekey(Context& ctx);
int Cmd_Rebuild(Context& ctx);
int Cmd_Move(Context& ctx);
int Cmd_Day_Files(Context& ctx);
int Cmd_Agency(Context& ctx);
int Cmd_Remote(Context& ctx);
int Cmd_Car(Context& ctx);
int Cmd_Driver(Context& ctx);
int Cmd_Config(Context& ctx);
int Cmd_Ledger(Context& ctx);
int Cmd_Marks(Context& ctx);

// The word after name among args ("--from 261001"); empty when absent.
QString Option(const QStringList& args, const QString& name);
// A day as the commands take it: six digits, YYMMDD.
bool Day_Word(const QString& word);

// The ledger entry of a reception or import, then its line ("3 days stored,
// 1 with a note") and each note; a ledger that can't be written is told on
// stderr and changes nothing of the reception's own result.
void Tell_Ledger(Context& ctx, Ledger_Road road, const QString& source, const QString& summary,
                 std::vector<Ledger_Day> days);

} // namespace vex::cli
