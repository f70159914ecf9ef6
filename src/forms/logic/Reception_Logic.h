#pragma once
// The memory pack reception as the reception window runs it: the analyzer
// connection that stays open between the window's steps, the info step and
// the receive step, and the search of the last reception.
#include <QDate>
#include <QDateTime>
#include <QString>
#include <functional>
#include <memory>

namespace vex {
class AnalyzerLink;
class Cls_DB;
class SerialPort;
}

namespace vex::forms {

// The serial port of the main window and the link over it, for the whole
// run; Find_Analyzer leaves the analyzer's port open in it.
class Link_Session {
public:
    static Link_Session& Get();
    // Scans the ports: sets Link_Type and the status panel 1 through
    // Apply_Link_Result; true when an analyzer answered.
    bool Connect();
    AnalyzerLink& Link();
    void Close();

private:
    Link_Session();
    std::unique_ptr<SerialPort> port_;
    std::unique_ptr<AnalyzerLink> link_;
};

// The day (YYMMDD) of the last reception of a car: the first D_D1 row whose
// key starts with "00" + car, newest D_F4 first, whose D_F4 is six digits
// of a real month and day with a year other than 00; "000000" when none.
// The prefix is the dialog's own: keys of stored days start with the car
// code and its "00" behind, so a pack car of four characters finds none.
QString Last_Reception_Day(Cls_DB& db, const QString& car4);
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
    bool ok = false;
    QString message;
    int16_t code = 0;   // Pack_Reads' result (not examined by the window)
    int decoded = 0;    // files the inbox pass decoded
};
// The receive step of the pack source: with a range, days from..to only.
// progress is told after each day read and each file decoded; a message of
// the pack routines goes to Cls_IO's Message, which the caller sets.
Pack_Receive Pack_Receive_Step(bool useRange, const QDate& from, const QDate& to,
                               const std::function<void(int done, int all)>& progress);

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

// The receive step of "130" and "250" on the medium at root; "260" does
// nothing. The inbox pass follows.
Pack_Receive Usb_Receive_Step(const QString& source, const QString& root, const QString& car, bool useRange,
                              const QDate& from, const QDate& to);

} // namespace vex::forms
