#pragma once
// Packages between sites: export a selection into the export database
// "\exp\exp.mdb" (delivered with its tables and only ever emptied), zip it
// with the day files of its days, delete a selection, bring a package back
// (rows by the copy rule, day files into "\pack"), and move a driver's days
// to another driver code.
#include "exchange/Exchange_Tables.h"
#include "exchange/Reception_Ledger.h"

#include <QString>

namespace vex {

class Cls_DB;

// "\exp\exp.mdb" under the application folder.
QString Export_Db_Path();
// Deletes every row of every table of the export database; made from the
// empty template when the folder has none. False with "DB 생성 오류" in
// error when it can't be emptied.
bool Empty_Export_Db(QString* error);

// The selection into "\exp\<name>.zip" (exp.mdb and the selection's day
// files under "pack/<car>/<day>/"). The package is whole on disk or absent.
Exchange_Report Export_Package(Cls_DB& live, const Selection& s, const QString& name,
                               const Exchange_Progress& progress = {});

// Deletes the selection's rows from the nine day tables; registers, monthly
// tables and day files stay. A selection needs a car or "ALL"; with none
// the message is "차량코드는 반드시 선택하세요" and nothing goes.
Exchange_Report Delete_Selection(Cls_DB& live, const Selection& s, const Exchange_Progress& progress = {});

// A package (".zip") or a folder of packages into the live database:
// each package is unpacked in "\exp", its day files go to "\pack", its
// "exp.mdb" is read whole (a Jet or a SQLite file, by its header) and
// then copied table by table, with D_S1 too when withSiteTable. A package
// that isn't one, or whose database can't be read, changes nothing. Each
// package brought in leaves its entry in the ledger of receptions (road,
// its file name and origin), whose line and notes come back in ledger.
Exchange_Report Import_Package(Cls_DB& live, const QString& zipOrFolder, bool withSiteTable = false,
                               const Exchange_Progress& progress = {}, Ledger_Road road = Ledger_Road::Import,
                               const QString& origin = QString());

// The days from..to of car and driver become newDriver's: D_F1 of the rows,
// D_F2 and D_F3 of D_D1, and the day files. Every day is checked first: a
// day whose new file exists already stops the re-key before anything
// changes, with "동일한 차량번호 데이터가 존재합니다". The rows change in one
// transaction together with the list of files to rename; the renames
// follow (Finish_Pending_Renames).
Exchange_Report Rekey(Cls_DB& live, const QString& car, const QString& driver, const QString& from,
                      const QString& to, const QString& newDriver, const Exchange_Progress& progress = {});

// The day-file renames of a re-key whose rows have committed, done and
// struck off the list: at the end of a re-key, and at each start for one
// that was cut short. The new paths of the files now in place.
QStringList Finish_Pending_Renames(Cls_DB& live);

} // namespace vex
