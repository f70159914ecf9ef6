#pragma once
// The ledger of receptions: every reception (pack, USB medium, inbox pass,
// package import, remote reception) leaves one entry naming when, on which
// PC, from what, and what became of each day it brought, with the
// plausibility findings of every day it stored. The ledger has tables of its
// own, outside the driving data: packages never carry it, and a backup or an
// optimise leaves it as it is.
//
//   X_LEDGER      one row a reception: D_F1 entry id, D_F2 time
//                 (yyyy-MM-dd HH:mm:ss), D_F3 road, D_F4 source, D_F5 PC,
//                 D_F6 days stored, D_F7 the reception's summary line
//   X_LEDGER_DAY  one row a day or file: D_F1 entry id/n, D_F2 entry id,
//                 D_F3 key (car + driver + day) or file name, D_F4 outcome,
//                 D_F5 why, D_F6 first and D_F7 last minute (yyMMddHHmm),
//                 D_F8 findings
//   X_FINDING     one row a finding: D_F1 entry id/n/k, D_F2 entry id,
//                 D_F3 key, D_F4 second of the day (-1 the whole day),
//                 D_F5 measured, D_F6 reference, D_F7 kind, D_F8 the other
//                 car, driver or reception
#include "acquisition/Reception.h"
#include "analysis/Plausibility.h"
#include "exchange/Exchange_Tables.h"

#include <QSet>
#include <QString>
#include <QStringList>
#include <vector>

namespace vex {

class Cls_DB;

enum class Ledger_Road { Pack, Usb, Inbox, Import, Remote };
QString Road_Name(Ledger_Road road); // "pack", "usb", "inbox", "import", "remote"

// One day or file of a reception and what became of it.
struct Ledger_Day {
    QString what;       // key (car + driver + day) of a stored day; else a file name or a day
    QString outcome;    // "stored", "skipped", "kept", "refused", "undriven"
    QString why;
    QString first, last; // yyMMddHHmm of a stored day
    std::vector<Finding> findings;
};

struct Ledger_Entry {
    QString id;
    QString when;       // yyyy-MM-dd HH:mm:ss
    Ledger_Road road = Ledger_Road::Inbox;
    QString source;     // "port 3, pack 00012345", "medium /media/usb (250), car 12AB00", a package name and its site
    QString pc;
    QString summary;
    std::vector<Ledger_Day> days;

    int Stored() const;
    int Stored_With_Findings() const;
};

// The days of a reception's outcome, stored ones first.
std::vector<Ledger_Day> Ledger_Days(const Reception_Outcome& outcome);

// The days an import wrote and the rows it refused ("table 'key': why").
std::vector<Ledger_Day> Ledger_Days(const Exchange_Report& report);

// Checks every stored day of the entry against the store and writes the
// entry, its days and their findings in one transaction; the entry comes
// back with its id, time, PC and findings. A failure to write the ledger
// never undoes a reception: it throws RunTimeError to the caller, which
// tells it.
Ledger_Entry Record_Reception(Cls_DB& db, Ledger_Road road, const QString& source, const QString& summary,
                              std::vector<Ledger_Day> days);

// The findings of one stored day as the store holds it now, against what it
// held before the entry (ignoring: keys the same reception stored).
std::vector<Finding> Check_Stored_Day(Cls_DB& db, const QString& key, const QString& source,
                                      const QSet<QString>& ignoring);

// The notes of the last reception that stored the key; none when no
// reception of the ledger stored it.
std::vector<Finding> Notes_Of_Day(Cls_DB& db, const QString& key);

// "3 days stored, 1 with a note", in the system's language.
QString Ledger_Line(const Ledger_Entry& entry);

struct Ledger_Filter {
    QString from, to;   // yyMMdd of the days, both included; empty: open
    QString car, driver;
    QString kind;       // a finding kind's name; empty: any
    bool findingsOnly = false;
};

// Entries, newest first, with the days and findings the filter lets through;
// an entry with none of them is left out when the filter names a day, car,
// driver or kind.
std::vector<Ledger_Entry> Read_Ledger(Cls_DB& db, const Ledger_Filter& filter);

} // namespace vex
