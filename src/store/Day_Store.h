#pragma once
// Where the day files of second data are kept. On the embedded database
// they are the files under "\pack" of the application folder, as they always
// were. On a server (PostgreSQL, or a data source of a server) several PCs
// share one fleet, so a day file is a row of the table X_DAYFILE instead:
// D_F1 the key of the day's rows (car + driver + day; car + day for the
// older name without the driver), D_F2 the bytes exactly as in the file.
// A day file written on a server belongs to the transaction of the day's
// rows, so another PC sees both or neither.
//
// Every reader and writer names a day file by its system path
// ("\pack\<car>\<day>\<day><driver>.vex") and goes through here.
#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vex {

class Cls_DB;
struct DayFile;

// True when the day files of db's installation are rows of the database.
bool Day_Files_In_Database(const Cls_DB& db);

// The database key of a day file's system path, "\pack\car\day\<name>.vex":
// car + driver + day, or car + day for the older name "<day>.vex". Empty
// text when the path names no day file.
QString Day_File_Key(const QString& systemPath);
// The system path of a key as Day_File_Key gives it.
QString Day_File_Path_Of_Key(const QString& key);

// A day file found: its row on a server, its file on this machine.
struct Day_File_Ref {
    QString key;  // row of X_DAYFILE
    QString path; // file of this machine
    bool Found() const { return !key.isEmpty() || !path.isEmpty(); }
    // What a message names: the file, or the row.
    QString Name() const { return path.isEmpty() ? QStringLiteral("X_DAYFILE ") + key : path; }
};

// Where the day file of a system path is kept, found or not: what a report
// names for a day file just stored. No I/O.
Day_File_Ref Day_File_Place(const Cls_DB& db, const QString& systemPath);

// The day file of a system path when there is one.
Day_File_Ref Find_Day_File(Cls_DB& db, const QString& systemPath);
// The day file of car, driver and day as the views look for it: the older
// name without the driver first.
Day_File_Ref Find_Day_File(Cls_DB& db, const QString& car, const QString& driver, const QString& day);

// The whole bytes; throws RunTimeError when they can't be read.
QByteArray Read_Day_Bytes(Cls_DB& db, const Day_File_Ref& ref);
// The first bytes of a day file and its whole size: what a reader of the
// speed and engine arrays needs, without the half seconds behind them.
// Throws RunTimeError when it can't be read.
struct Day_Head {
    QByteArray bytes; // up to the length asked for
    qint64 size = 0;  // of the whole file
};
Day_Head Read_Day_Head(Cls_DB& db, const Day_File_Ref& ref, qint64 length);
// The same of a file of this machine, without a connection: safe on any
// thread.
Day_Head Read_Day_File_Head(const QString& path, qint64 length);
// The arrays; throws RunTimeError when missing, unreadable or short.
DayFile Read_Day_File(Cls_DB& db, const Day_File_Ref& ref);
// Size in bytes, -1 when there is none.
qint64 Day_File_Size(Cls_DB& db, const QString& systemPath);

// Writes the whole day file: beside its target and renamed on this machine,
// a row in the open transaction on a server. Throws RunTimeError, also for a
// path that names no day file.
void Store_Day_Bytes(Cls_DB& db, const QString& systemPath, const QByteArray& bytes);
// A file of this machine (a package's, another installation's) stored as
// the day file of systemPath. Throws RunTimeError.
void Store_Day_File_From(Cls_DB& db, const QString& systemPath, const QString& localFile);
// Removes a day file; nothing when there is none. Throws RunTimeError.
void Remove_Day_File(Cls_DB& db, const QString& systemPath);
// Gives a day file a new name (a re-key): on a server the row's key, in the
// open transaction. False when there was none. Throws RunTimeError.
bool Rename_Day_File(Cls_DB& db, const QString& fromSystemPath, const QString& toSystemPath);
// Holds the day against another PC's merge of the same day until the
// transaction ends, so that two receptions of one day add up instead of
// the second writing over the first. Nothing on the embedded database,
// whose writer holds the whole file.
void Lock_Day_File(Cls_DB& db, const QString& systemPath);

// Creates X_DAYFILE on a server when it is missing.
void Ensure_Day_File_Table(Cls_DB& db);

} // namespace vex
