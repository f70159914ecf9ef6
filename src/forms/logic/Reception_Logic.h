#pragma once
// The memory pack reception as the reception window runs it: the analyzer
// connection that stays open between the window's steps, the info step and
// the receive step, and the search of the last reception.
#include "acquisition/Reception.h"
#include "exchange/Reception_Ledger.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <functional>
#include <memory>

namespace vex {
class AnalyzerLink;
class AnalyzerPort;
class Job;
class Cls_DB;
class SerialPort;
}

class QPushButton;

namespace vex::forms {

// The serial port of the main window and the link over it, for the whole
// run; Find_Analyzer leaves the analyzer's port open in it.
// "YYMMDD" as "YY-MM-DD".
QString Dashed_Day(const QString& yymmdd);
// A stamp YYMMDDHHMM as date and time; invalid when it isn't one.
QDateTime Stamp_Date_Time(const QString& stamp);

// Messages of the pack steps.
QString Text_Press_Connect();  // "분석기 연결버튼을 누르세요"
QString Text_No_Pack();        // "팩이 없거나 분석기 작동에 문제가 없습니다 "
QString Text_Received();       // "수신완료"

struct Pack_Info {
    bool ok = false;
    QString message;     // the refusal, when not ok
    QString carCode;     // the pack's car code
    QString lastDay;     // YYMMDD of the last reception
    QDateTime from, to;  // SysPackInsert and SysPackLastWrite
    bool haveDates = false;
};
// The info step of the pack source.
Pack_Info Pack_Info_Step();

struct Pack_Receive {
    bool ok = false;            // the step ran to its end ("수신완료")
    QString message;            // the refusal, or "수신완료"
    Reception_Outcome outcome;  // what it stored, skipped and kept
    bool cancelled = false;     // the user stopped it; what was stored stays
    QString ledger;             // the ledger's line: "3 days stored, 1 with a note"
};
struct Pack_Read {
    Pack_Receive receive;  // ok once the analyzer had a pack
    int daysRead = 0;
    bool inboxDue = false; // the files in \new are to be stored next (Run_Inbox)
};
// The receive step of the pack source up to the inbox pass: the analyzer's
// pages into \new; with a range, days from..to only. progress is told after
// each day read; a message of the pack routines goes to Cls_IO's Message,
// which the caller sets. The pack's system page is the record of the main
// connection (filled by the info step); no statement runs on it here.
Pack_Read Pack_Read_Step(bool useRange, const QDate& from, const QDate& to, const Reception_Progress& progress);

struct Usb_Info {
    bool ok = false;
    QString message;   // the refusal, when not ok
    QString root;      // the medium's folder
    QString carCode;
    QString lastDay;
    QDate from, to;    // the days the medium holds
    bool haveDates = false;
};
// The info step of the USB sources "130", "250" and "260". folder is the
// chosen folder, or empty for the walk over the removable drives.
Usb_Info Usb_Info_Step(const QString& source, const QString& folder);

// The receive step of "130" and "250" on the medium at root, for the chosen
// dates or else the days the medium holds, stored on db; "260" does
// nothing. The inbox pass follows.
Pack_Receive Usb_Receive_Step(Cls_DB& db, const QString& source, const QString& root, bool useRange, const QDate& from,
                              const QDate& to, const Reception_Progress& progress = {});

// A reception as a job on a connection of its own to the main database
// (job.Db()), this thread's events running meanwhile. progress, and notice
// with the waits of its writes for another program, are told on this
// thread. port, the analyzer's when the job talks to it, is lent to the job.
// cancel, when given, stops the job at its next progress: between days read
// from the pack, between files of the inbox pass. A reception that ran to
// its end leaves its entry in the ledger, under road and source, on the
// job's connection; its line comes back in ledger.
using Reception_Work = std::function<Pack_Receive(Job& job, const Reception_Progress& progress)>;
Pack_Receive Reception_Job(Ledger_Road road, const QString& source, const Reception_Work& work,
                           const Reception_Progress& progress = {},
                           const std::function<void(const QString&)>& notice = {}, AnalyzerPort* port = nullptr,
                           QPushButton* cancel = nullptr);

} // namespace vex::forms
