#pragma once
// Compaction of the live database. On SQLite the compacted copy cannot take
// the live file's place while the program holds it open, so it waits as
// "\db\temp2.mdb" for the next start of either program. Beside it lies the
// fingerprint of the live file it was made from: a start takes the copy over
// only while the live file is still that one, so days received between the
// optimise and the restart are never replaced by an older copy.
#include <QByteArray>
#include <QString>

namespace vex {

class Cls_DB;

struct Optimise_Result {
    bool ok = false;
    qint64 before = -1, after = -1;  // bytes of the file; -1 on a server
    bool swapAtStart = false;        // the result waits for the next start
    QString message;
};

// SQLite: the compacted copy into "\db\temp2.mdb" (whole or not at all; the
// live file is never touched) with its fingerprint beside it. A database
// server: VACUUM ANALYZE in place, unprepared and outside any transaction.
Optimise_Result Optimise(Cls_DB& live);

// What a start found of a waiting compacted copy.
enum class Compaction_Takeover {
    Nothing,  // no copy was waiting
    Taken,    // the copy is now the live database
    Stale,    // the live database changed after the optimise: the copy is discarded
    Failed,   // the copy could not be put in place; it waits for the next start
};

// Takes a waiting copy over before anything opens the live database. The
// desktop runs it as a job, so its window paints while the copy is made.
Compaction_Takeover Take_Over_Compaction(const QString& appDir);

// The message a start shows for a discarded copy, in the system's language.
QString Stale_Compaction_Message();

// The state of a SQLite file as a digest of its bytes and of any journal
// beside it: a committed write anywhere changes it.
QByteArray Db_Fingerprint(const QString& dbFile);

} // namespace vex
