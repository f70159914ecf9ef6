#pragma once
// What a reception did, told the same way by the dialog and by vexcli: the
// days stored, the pack days skipped (marked read on the pack all the same),
// the files left in \new or refused, and why a reception failed. The dialog
// keeps its "수신완료" and adds Summary() as one line under it; vexcli prints
// it and exits non-zero unless Clean().
//
// The steps here are shared by the reception window and the command line:
// the checks before anything is written, the pack days, the USB log, and
// the inbox pass.
#include "acquisition/Cls_IO.h"
#include "acquisition/Inbox.h"
#include "acquisition/Inbox_Names.h"
#include "acquisition/UsbRecorder.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace vex {

class Cls_DB;

struct Reception_Outcome {
    QStringList stored;                       // keys car + driver + day, in order
    std::vector<Cls_IO::Skipped_Day> skipped; // pack days not filed
    QStringList kept;                         // "name: why", left in \new
    QStringList refused;                      // "name: why", not recordings
    QStringList undriven;                     // YYMMDD of pack days left erased: nothing driven
    QString failure;                          // why the reception failed; empty when it didn't

    bool Clean() const { return failure.isEmpty() && skipped.empty() && kept.isEmpty() && refused.isEmpty(); }
    // One line in the system's language.
    QString Summary() const;
};

// Told as the reception goes: steps done of all (days read, then files
// stored), and what the step was ("read YYMMDD", "file NAME").
using Reception_Progress = std::function<void(int done, int all, const QString& what)>;

// Why nothing can be received now: the application folder or its \new
// can't be written, or db, the connection the reception stores on, isn't
// open. Empty when all is well.
QString Reception_Precheck(const Cls_DB* db);

// The inbox pass on db, each file's fate into outcome; progress counts the
// files. each, when set, is told every file as well (the command line
// prints them). A progress that throws stops the pass after the file it was
// told of, its text becoming the outcome's failure.
void Run_Inbox(Cls_DB& db, Reception_Outcome& outcome, const Reception_Progress& progress = {}, int doneBefore = 0,
               const std::function<void(const Inbox_File&)>& each = {});

// After SIO_PackCheck and the precheck: the new days of the pack (or
// from..to when useRange) into \new through the analyzer, and the pack
// marked; skipped days and a failure into outcome. Returns the days read.
// On the main connection, whose record holds the pack's system page.
int Read_Pack_Days(Reception_Outcome& outcome, bool useRange, const QDate& from, const QDate& to,
                   const Reception_Progress& progress = {});

// After SIO_PackCheck: the new days of the pack (or from..to when useRange)
// into \new, the pack marked, then the inbox pass.
Reception_Outcome Receive_Pack_Days(bool useRange, const QDate& from, const QDate& to,
                                    const Reception_Progress& progress = {},
                                    const std::function<void(const Inbox_File&)>& each = {});

// The identity a USB reception decodes its log under: the medium's car and
// driver, and the days from..to; a day that isn't one leaves that end open.
Filing_Note Usb_Reception_Note(const Usb_Master& master, const QString& from, const QString& to);

// A USB recorder's log of model "130" (filed into \new with its note) or
// "250" (decoded into day files) for who's car and driver and dates, then
// the inbox pass, all stored on db.
Reception_Outcome Receive_Usb_Log(Cls_DB& db, const QString& model, const QString& spdrPath, const Filing_Note& who,
                                  const Reception_Progress& progress = {},
                                  const std::function<void(const Inbox_File&)>& each = {});

} // namespace vex
