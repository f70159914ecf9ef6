#pragma once
// The pure side of the USB decoders: bytes of a log or of a day file in,
// the days they hold out. No file, no database; the inbox decoders
// (Decode_Dat130, Decode_Dat250, Decode_Ntd) read the files and store what
// these give.
#include "acquisition/UsbRecorder.h"

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

namespace vex {

// ---- A saved day (".NTD").
struct Ntd_Day {
    enum class Verdict {
        Decoded,
        Short,    // half a day: the copy was cut short; the file waits
        Not_A_Day // its day is no date: nothing to store, the file is done
    };
    Verdict verdict = Verdict::Decoded;
    QString car, driver, day;       // six hexadecimal characters each; day yyMMdd
    std::vector<uint8_t> speed;     // km/h by the second, element 0 first (86,401)
    std::vector<uint8_t> engine;    // the engine byte by the second (86,401)
    // 2,881 bytes: minute m at 2m-1 (hundreds of metres) and 2m (the rest);
    // a minute never written (FF FF) reads 0.
    std::vector<uint8_t> distance;
};
Ntd_Day Decode_Ntd_Day(const QByteArray& file);

// ---- Model "250": the minute records of a log, a day at a time.
struct Usb_Second_Day {
    QString day;                  // yyMMdd
    std::vector<uint8_t> speed;   // km/h by the second (86,401)
    std::vector<uint8_t> engine;  // by the second (86,401)
    std::vector<float> metres;    // by the minute, 1 to 1,440 (1,441 entries)
};

// Fed with the log in runs of whole records; a day is handed to the sink
// when a record of another day comes and at Finish. Records of days outside
// the dates (yyMMdd, both included, empty is open) are passed over.
class Dat250_Days {
public:
    using Day_Sink = std::function<void(const Usb_Second_Day&)>;
    Dat250_Days(QString from, QString to, Day_Sink sink);
    void Feed(const QByteArray& records);
    void Finish();

private:
    void Hand_Over();

    QString from_, to_;
    Day_Sink sink_;
    Usb_Second_Day day_;
    std::vector<uint8_t> minute_; // the two values of each minute, 2,880
};

// ---- Model "130": the three regions of the filed part of a log.
// An hour of a minute series as the log's blocks hold it: 60 cells of two
// characters.
inline constexpr int kHourChars = 120;

// A day's minute series from the hour blocks: speed in km/h, distance in
// tenths of a kilometre, the second channel, element m for clock minute m.
struct Usb_Minute_Day {
    std::array<uint8_t, 1440> speed{};
    std::array<uint8_t, 1440> distance{};
    std::array<uint8_t, 1440> second{};
};
// A quick brake or acceleration: its time and the speeds around it.
struct Usb_Event {
    QString time; // HHmmss
    int before = 0, after = 0; // km/h
};
// The events of one kind and one date, as they are handed over.
struct Usb_Event_List {
    QString type; // "55" quick brakes, "AA" quick accelerations
    QString date; // yyMMdd as the recorder wrote it
    std::vector<Usb_Event> events;
    // As the event tables hold them: ten characters an event, HHmmss and the
    // two speeds as hexadecimal ("FF" for 256 km/h and more).
    QString Records() const;
};
// One minute record of second data: the clock minute of the day and its
// sixty speeds.
struct Usb_Second_Minute {
    int minute = 0;
    std::array<uint8_t, 60> speed{};
};
struct Usb_Second_Run {
    QString day;
    std::vector<Usb_Second_Minute> minutes;
};
struct Dat130_Log {
    std::map<QString, Usb_Minute_Day> days; // by yyMMdd, of the hour blocks within the dates
    std::vector<Usb_Event_List> events;     // whatever the dates, in the order handed over
    std::vector<Usb_Second_Run> seconds;    // runs of one day, in the order of the log
};
Dat130_Log Decode_Dat130_Log(const QByteArray& filed, const QString& from, const QString& to);

// A minute series as its row holds it: two hexadecimal digits a minute
// (speed, second channel) or two decimal digits (distance).
QString Hex_Cells(const std::array<uint8_t, 1440>& values);
QString Decimal_Cells(const std::array<uint8_t, 1440>& values);

} // namespace vex
