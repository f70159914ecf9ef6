#pragma once
// "원격수신": the two passes of the transfer, then the loading step over
// the files of "\exp" that remote transfers brought (this press's, or those
// of an earlier one that stopped before loading them; never the site's own
// backups and exports): each package imported through the import of
// packages (rows and day files, and D_S1), loose trip files filed under
// "\pack", loose databases loaded. A received file that is refused is set
// aside in "\exp\refused", so that no later press tries it again.
#include "exchange/Exchange_Tables.h"
#include "exchange/Ftp_Transfer.h"

#include <QString>
#include <QStringList>
#include <functional>

namespace vex {

class Cls_DB;

struct Remote_Outcome {
    QStringList messages;    // the boxes, in order
    QStringList downloaded;  // files fetched
    QStringList passedOver;  // remote names left alone, with why (printable)
    QStringList refused;     // remote files left on the server: damaged, or their download failed, with why
    QStringList loaded;      // received files dealt with
    QStringList kept;        // received files refused and set aside, with why
    QStringList rowsRefused; // rows of loaded files that no reception could make
    bool loadingDue = false;  // the passes ended where the loading step follows
    bool loadingRan = false;
};

// The two passes alone: no database is touched, so a window may run them on
// a worker thread. Sets loadingDue as the passes' table says, but for a
// failed download: the second pass passes over the file that failed in the
// first, and the loading step follows either way, so that one file can't
// hold back the others.
Remote_Outcome Remote_Transfer(const Ftp_Settings& s, const std::function<void(const QString&)>& each = {});

// The loading step alone, on "\exp". Its messages are also told to `say`
// the moment they arise (message 1241 before anything is loaded).
void Remote_Load(Cls_DB& live, Remote_Outcome& out, const Exchange_Progress& progress = {},
                 const std::function<void(const QString&)>& say = {});

// The press of the button. each is told every file before its download.
Remote_Outcome Remote_Reception(Cls_DB& live, const Ftp_Settings& s, const std::function<void(const QString&)>& each = {},
                                const Exchange_Progress& progress = {});

// "<car><date><time>.vex" of a loose trip file (its path's last 22
// characters): the system path of the day file it becomes under "\pack",
// or empty when the parts are no car code, day and time.
QString Trip_File_Target(const QString& path);

} // namespace vex
