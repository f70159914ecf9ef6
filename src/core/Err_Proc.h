#pragma once
// The one way failures are handled. A procedure with a failure path runs its
// body through Guarded() with its fixed code (1001 to 1164); a run-time error
// ends the body where it stood, goes to Err_Proc, and the caller sees the
// default result. Err_Proc shows nothing to the user: it writes one line to
// the log file of the application folder.
#include <QString>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace vex {

// A run-time error of the system's own procedures (database, file, link).
class RunTimeError : public std::runtime_error {
public:
    explicit RunTimeError(const QString& what) : std::runtime_error(what.toStdString()) {}
};

// Codes of the routines beyond the handlers of 1001..1164: keeping,
// packages, the agency file, the transfer, the write lock and the grid
// windows, each with a label of its own.
enum Err_Code : int16_t {
    kErrOptimise = 2001,
    kErrBackup = 2002,
    kErrRebuild = 2003,
    kErrMove = 2004,
    kErrKeepingRead = 2005,
    kErrExport = 2006,
    kErrImport = 2007,
    kErrDelete = 2008,
    kErrRekey = 2009,
    kErrExportDb = 2010,
    kErrAgency = 2011,
    kErrAgencyCheck = 2012,
    kErrAgencyIdentity = 2013,
    kErrRemoteLoad = 2014,
    kErrFtp = 2015,
    kErrZip = 2016,
    kErrWriteLock = 2017,
    kErrCommit = 2018,
    kErrRenames = 2019,
    kErrFuelDay = 2020,
    kErrCarCondition = 2021,
    kErrDayReport = 2022,
    kErrDayStatus = 2023,
    kErrOverFuel = 2024,
    kErrRegisterCodes = 2025,
    kErrLedger = 2026,
    kErrFleet = 2027,
    kErrReportExplanation = 2028,
    kErrReportTrend = 2029,
    kErrDayFilesMove = 2030,
    kErrDayFileTable = 2031,
    kErrIndexes = 2032,
};

// Label of a handler code: "object - procedure"; empty for gaps and codes
// without one.
QString Err_Label(int code);

// Resolves the code to its label and appends "time<TAB>code<TAB>label<TAB>text"
// to Err_Log_Path(). Every code is written, one without a label under
// "code N". Never throws.
void Err_Proc(int16_t code, const QString& text);

// Label and text of the last error Err_Proc took, for a command line that
// must say why it stopped; empty when none.
QString Err_Last();

// Where Err_Proc writes: "<App_Dir>/vex-error.log". Empty before Main_Start.
QString Err_Log_Path();

template <class Body>
bool Guarded(int16_t code, Body&& body)
{
    try {
        body();
        return true;
    } catch (const std::exception& e) {
        Err_Proc(code, QString::fromUtf8(e.what()));
    } catch (...) {
        Err_Proc(code, QStringLiteral("unknown error"));
    }
    return false;
}

// A save routine's flag: -1 when its body finished, 0 when its handler ran.
template <class Body>
int16_t Saved(int16_t code, Body&& body)
{
    return Guarded(code, std::forward<Body>(body)) ? -1 : 0;
}

} // namespace vex
