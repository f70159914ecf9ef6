#pragma once
// Process-wide state of the program and the small text helpers that every
// part calls. The state exists before any window; Main_Start gives it its
// values, the login fills the settings, Main_Shutdown drops the objects.
#include "core/Pad.h"

#include <QDate>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

namespace vex {

class AnalyzerLink;
class AnalyzerPort;
class Cls_IO;
class Cls_DB;
class Cls_Config;
class FileSystem;

struct Globals {
    QString Prog_Title;                  // "VEX"
    QString Login_User, Login_Pass;      // as typed at the login
    QString DB_Server;                   // value of "MAIN SERVER"
    QString DB_Conn;                     // "DSN=" & DB_Server
    bool Login_OK = false;
    int16_t Report_Kind = 0;
    int16_t Link_Type = 0;               // 1 analyzer on a serial port ("SIO"), 0 older card ("ISA")
    int16_t Register_Row = 0;

    // The shared objects, one each for the whole run. Made by the start-up
    // above every layer (app/Start_Up), known here by name only: a shared
    // pointer takes its deleter from where the object is made.
    std::shared_ptr<Cls_IO> IO;
    std::shared_ptr<Cls_DB> DB;
    std::shared_ptr<Cls_Config> Config;
    std::shared_ptr<FileSystem> FS;
    // The one serial port of the program and the analyzer protocol on it.
    std::shared_ptr<AnalyzerPort> Port;
    std::shared_ptr<AnalyzerLink> Link;

    QString App_Dir;
    QString Pack_Mark1, Pack_Mark2, Pack_Mark3, Pack_Mark4, Pack_Mark5, Pack_Mark6;
    float Graph_Minutes = 0;             // 1440.0, minutes in a day
    float Graph_Seconds = 0;             // 3600.0, seconds in an hour

    // Fed by S_D14 at the login and by the settings form.
    float Max_Speed_Axis = 180;
    int16_t Idle_Minutes = 10;
    int16_t Max_RPM_Axis = 3000;         // 0 when the cars have no RPM input
    float RPM_Tick10 = 40;               // ten times the RPM scale marks; 0 without RPM
    QString DI_Name1, DI_Name2, DI_Name3, DI_Name4, DI_Name5, DI_Name6;

    // Set by the route form's load only; empty until then, on purpose.
    QString App_Dir_Slash;

    // Where Status_Text writes: panel 1 of the main window's status bar.
    std::function<void(const QString&)> Status_Sink;
};

// The one instance.
Globals& G();

void Status_Text(QString& text);

// Date and time text helpers. A two-digit year is always 20yy.
QDate Zero_Date();                              // the date value 0: 1899-12-30
QDate Date8_To_Date(const QString& yyyymmdd);   // Zero_Date() unless 8 digits of a real date
QString Time4_To_Text(const QString& hhmm);     // "hh:mm"; empty unless 4 digits
QString Date6_To_Date8(const QString& text);    // "20"+6, 8 unchanged, else empty
QString Date_Dash(const QString& text);         // 6 or 8 digits -> yyyy-mm-dd, else empty
QString Date_Dash10(const QString& text);       // also 10 (yymmddhhmm): the date only
QString Min_To_HHMM(int16_t minutes);           // wraps at a day: 1500 -> "01:00"

// Size in twips that a child window takes at the main window's corner.
// captionOpen tells whether a window of the same caption already stands open.
struct Form_Size {
    int width;
    int height;
};
Form_Size Form_Place_Size(const QString& formName, bool captionOpen);

} // namespace vex
