#pragma once
// An installation that moves to a server brings its day files along: every
// day file under "\pack" of this machine becomes its row in the database, so
// that the other PCs on the server see the same days. A day the server has
// already (received on another PC) takes this machine's file as a second
// recording: entries the server's file lacks are filled in, none replaced.
// The files stay where they are; the programs read the server's rows from
// then on.
#include <QString>
#include <QStringList>
#include <functional>

namespace vex {

class Cls_DB;

struct Day_Files_Move_Report {
    bool ok = false;
    int stored = 0;      // days the server did not have
    int merged = 0;      // days the server had, this machine's entries added
    QStringList refused; // "<file>: why" (not a day file's name, too short)
    QString message;
};

// progress(done, all) after each file.
Day_Files_Move_Report Move_Day_Files_To_Database(Cls_DB& live, const std::function<void(int, int)>& progress = {});

} // namespace vex
