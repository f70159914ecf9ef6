#pragma once
// Keeping the live database in shape: compaction (taken over at the next
// start), the backup that moves a period out into a package, the rebuild of
// a day from its day file, the check of the newest day, and the move of an
// older installation's data into this one.
#include "exchange/Db_Compaction.h"
#include "exchange/Exchange_Tables.h"

#include <QString>

namespace vex {

class Cls_DB;

// The first and last day of D_D1 widened to whole months, for the backup's
// pickers: the first of the oldest month and the last day of the newest
// (April, June, September and November have 30, February by its year).
// Empty texts with no day.
std::pair<QString, QString> Backup_Period(Cls_DB& live);

// The period into "\exp\<from><to>.zip" (every table, the registers by the
// comparison of their codes with the dates, as it always was), then, once
// the package is whole on disk, the period deleted from the day tables,
// then the live database compacted in place. Stage texts go to progress.
Exchange_Report Backup(Cls_DB& live, const QString& from, const QString& to, const Exchange_Progress& progress = {});

// A day rebuilt from its day file ".vex": car given, driver and day from
// the file name "<day><driver>.vex", through the same detector as a
// reception.
Exchange_Report Rebuild_Day(Cls_DB& live, const QString& vexFile, const QString& car);

// The newest day of D_D1 (YYMMDD), empty with no rows.
QString Newest_Day(Cls_DB& live);

// The sources a move knows: option 1 the full tables (and the day files of
// the source's "\pack"), 2 and 3 the older ones with fewer tables.
struct Move_Source {
    int option;
    const char* defaultPath;
    QStringList tables;
    bool dayFiles;
};
const std::vector<Move_Source>& Move_Sources();

// The days from fromDay on (the registers whole) of the database at path
// (Jet or SQLite, by its header) into the live one by the copy rule.
Exchange_Report Move_From(Cls_DB& live, const QString& path, int option, const QString& fromDay,
                          const Exchange_Progress& progress = {});

} // namespace vex
