#pragma once
// Sample USB recorder media: the folder a recorder of model "130" or "250"
// leaves after some days of driving, and saved ".NTD" day files, made from
// realistic days (Build_Driving_Day), for trying the reception without a
// vehicle. Damage kinds lay what real media show on top, so that each skip
// and repair of the decoders can be seen at work.
//
// What the recorder writes, as the generator writes it:
// - Master00.dat, 512 bytes: car and driver (three bytes each), the start
//   stamp (the evening before the first day) and the end stamp (the last
//   minute with speed of the last day), six bytes each of decimal digits;
//   the rest 0.
// - Driverid.dat, 16 bytes: the driver in its first three bytes, the rest 0.
// - SPDR0403.dat of a "130", 0x200200 bytes: a start block "FA", then one
//   hour block for each hour in which the engine ran (speed: the highest of
//   the minute; second channel: the highest engine byte, 25 rpm a unit;
//   metres of the minute as four digits); the event region with a record
//   for each change of speed the recorder takes for sudden (a rise of 7 km/h
//   within a second, a fall of 12 within two), speeds as pulse counts; and
//   the minute records of second data for the last 1,048 minutes the engine
//   ran. Everything else erased (FF).
// - SPDR0403.dat of a "250": a record for each minute in which the engine
//   ran, then erased records up to a log of 8,192 records (4 MiB) at least,
//   so that the log is always longer than 3,000,000 bytes.
// - A saved ".NTD": car, driver and day in three bytes each, the speed and
//   engine arrays of the day and the minute distance as hundreds of metres
//   and the rest, each array overlapping the one before by one byte.
#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace vex {

enum class UsbDamage {
    // Free blocks and records among the data (erased hour blocks, free
    // minute records, event records of FF): skipped.
    FreeRecords,
    // Stamps with letters, month 13 and "FFFFFF": the blocks are skipped.
    BadStamps,
    // Samples of FF: speed and channel count 0, metres "FFFF" count 0.
    FfSamples,
    // The first driving hour of the first day recorded a second time at the
    // end of the log, with other values: the first recording of a minute (a
    // "130") or a second (a "250", whose later days lie between) wins.
    SecondRecording,
    // The distance sensor slips: every minute's metres are 70% of the way
    // the speeds drove. A plausibility finding, not a fault of the format.
    SlippingSensor,
};

struct UsbDamageInfo {
    UsbDamage kind;
    const char* name; // as given to --damage
    const char* what;
};

const QList<UsbDamageInfo>& Usb_Damage_Kinds();
std::optional<UsbDamage> Usb_Damage_From_Name(const QString& name);

struct UsbSampleRequest {
    QString model = QStringLiteral("250"); // "130" or "250"
    QString car;    // six hexadecimal characters
    QString driver; // six hexadecimal characters
    QDate first;
    int days = 1;   // 1..31
    uint64_t seed = 1;
    QList<UsbDamage> damage;
    QString cyclesDir; // empty: Default_Cycles_Dir()
};

struct UsbSampleDay {
    QDate date;
    int startMinute = 0;   // first and last minute with speed
    int endMinute = 0;
    int metres = 0;        // driven that day
    // Quick accelerations the reception will count: for a "130" the rises of
    // the event region that reach 7.5 km/h, for a "250" the rises of 8 km/h
    // or more within a second (the delivered standard).
    int accelerations = 0;
};

struct UsbSample {
    QByteArray master, log, driverId;
    QList<UsbSampleDay> days;
};

// Empty when the request can be made, else the reason.
QString Check_Usb_Request(const UsbSampleRequest& request);
std::optional<UsbSample> Make_Sample_Usb(const UsbSampleRequest& request, QString* error = nullptr);
// Writes Master00.dat, SPDR0403.dat and Driverid.dat into dir (made when
// missing).
bool Write_Usb_Medium(const UsbSample& sample, const QString& dir, QString* error = nullptr);

// A saved day of the car and driver (six hexadecimal characters each).
std::optional<QByteArray> Make_Sample_Ntd(const QString& car, const QString& driver, const QDate& day,
                                          uint64_t seed = 1, const QString& cyclesDir = QString(),
                                          QString* error = nullptr);

} // namespace vex
