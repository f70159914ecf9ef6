#pragma once
// The database side of the system: the one connection that stays open from
// the login to the end, and the recordsets every part reads and writes
// through, and the save routines that turn a decoded day into rows. The day
// itself travels as a value (core/Pack_Day.h and its siblings).
#include "store/DbTarget.h"
#include "store/Recordset.h"

#include <QHash>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>
#include <cstdint>
#include <functional>
#include <span>

namespace vex {

struct Hour_Seconds;
struct Pack_Day;
struct Pack_System_Page;

class Cls_DB {
public:
    // Connects to what the global DB_Server names.
    Cls_DB();
    // Connects to a given target (second connections, tests).
    explicit Cls_DB(const DbTarget& target);
    ~Cls_DB();
    Cls_DB(const Cls_DB&) = delete;
    Cls_DB& operator=(const Cls_DB&) = delete;

    // Opens the connection; DB_State 1 when open, 0 otherwise (failures go
    // to Err_Proc). The decoders set DB_State to 1 after a stored day.
    bool DB_Connection();
    void DB_DConnection();
    int DB_State() const { return state_; }
    void Set_DB_State(int state) { state_ = state; }
    // The SQL dialect of the connection: the engine's own, or for a data
    // source the one of the server behind it (Odbc: passed on unchanged).
    Engine Dialect() const { return dialect_; }
    const DbTarget& Target() const { return target_; }
    QString Connection_Name() const { return name_; }

    // A keyset recordset on the connection. Throws RunTimeError on failure,
    // which the calling routine's handler takes.
    Recordset DB_RSet_D_D(const QString& sql, const QVariantList& values = {}, int option = 1);

    // Failures of the engine itself: a closed connection, a statement the
    // engine refused (locked, read-only, full disk), a commit that failed.
    // Counted, so that a caller can tell whether what it wrote in a span of
    // work reached the database; the counting call throws RunTimeError.
    [[noreturn]] void Engine_Failure(const QString& text);
    int Engine_Failures() const { return failures_; }
    const QString& Last_Engine_Failure() const { return lastFailure_; }

    // A batch of writes in one transaction: a decoded day (its rows and, on
    // a server, its day file) lands whole, so another program never reads
    // half of it. The end of the batch commits what was written, also after
    // a failure half way: what a routine wrote before its handler ran stays
    // written, batch or not. On a server, which would abort the whole
    // transaction at its first failing statement, each statement runs under
    // a savepoint of its own and a failure rolls back that statement alone.
    // On SQLite the batch takes the write lock at its start, waiting for
    // another program that holds it (see Wait_Notice); when it can't, the
    // writes run one by one and fail on the lock. A batch inside another
    // transaction belongs to that one.
    class Batch {
    public:
        explicit Batch(Cls_DB& db);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;

    private:
        Cls_DB& db_;
        bool open_ = false;
    };

    // All or nothing: the writes between the start and Commit() land
    // together, and a transaction left without Commit() (a failure thrown
    // through it) is rolled back. The start waits for the write lock as a
    // batch does and throws RunTimeError when it can't be had.
    class Transaction {
    public:
        explicit Transaction(Cls_DB& db);
        ~Transaction();
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        void Commit();

    private:
        Cls_DB& db_;
        bool open_ = false;
    };

    // Told while a write waits for another program that holds the database
    // ("the database is in use by another program; waiting (10 s)"). A
    // write waits up to Write_Wait_Seconds before it gives up.
    std::function<void(const QString&)> Wait_Notice;
    int Write_Wait_Seconds = 120;

    // The prepared statement of a text in the engine's dialect, kept for the
    // life of the connection: the same statements run for every decoded
    // day. The caller binds, executes and finishes it. Throws when the
    // statement can't be prepared.
    QSqlQuery& Prepared(const QString& sql);

    // Runs a statement of the engine's dialect with its values, prepared
    // once; the caller reads what it needs and finishes the query. Throws
    // RunTimeError when the engine refuses it.
    QSqlQuery& Run_Prepared(const QString& sql, const QVariantList& values);
    // Runs a prepared, bound statement; within a batch on a server under a
    // savepoint of its own. False as exec() answers, the query's error kept.
    bool Exec(QSqlQuery& q);
    // True inside a batch or a transaction on this connection.
    bool In_Transaction() const { return mode_ != Write_Mode::None; }

    // A statement of the system in the connection's dialect, translated once
    // for the life of the connection.
    const QString& Translated(const QString& sql);

    // A statement that returns no rows ("DELETE * FROM D_H").
    void Execute(const QString& sql, const QVariantList& values = {});
    // A statement sent as it stands, in autocommit: for the few that a
    // server refuses to prepare or to run in a transaction (VACUUM).
    void Execute_Unprepared(const QString& sql);

    // True when the database has the table (names compared without case).
    bool Has_Table(const QString& table) const;

    // Creates missing tables and indexes and the delivered settings rows.
    void Ensure_Schema();
    // Creates the indexes of the schema that the database lacks; the
    // programs call it once they have opened the database.
    void Ensure_Indexes();

    // Cars and drivers register themselves at first sight. A new car gets
    // the factory settings (engine factor "4.25", "FF", "3.0"), the standard
    // speed standardSpeed and, when given, the recorder model; a new driver
    // has its code for a name. True when the row was added. Throws as any
    // recordset does.
    bool Register_Car(const QString& car, int16_t standardSpeed, const QString& model = QString());
    bool Register_Driver(const QString& driver);

    // ==== Ingest of a decoded day ===========================================
    // The save routines that turn a decoded day into rows, day files and
    // monthly tables. Each runs under its own handler code: a run-time error
    // ends it where it stood (rows written so far stay) and its flag is 0; a
    // save that has finished answers -1.

    // Messages that a save routine shows itself ("분당 데이터 생성 에러");
    // the forms connect their message box. Nothing is shown while unset.
    std::function<void(const QString&)> Msg_Box;

    // -- DB_Save_Day.cpp: summary row, series rows and event rows.
    // The full path for days with second data: start and end from the engine
    // (else speed) series, overspeed minutes and bands against B_Val3, the
    // distance from D_D7, then D_D1, the registers, D_D3, D_D8 and the event
    // tables that have events. A day without any engine or speed writes
    // nothing and answers 0.
    int16_t DB_Save_D_D1(QString& car, QString& driver, QString& secData, QString& day, int32_t& acceleration,
                         int32_t& brack, int16_t& idle, QString& idleData, QString& brackData, QString& accelData,
                         int16_t& lkEngin, QString& lkEnginData, QString& rpmData);
    // The memory pack path, from the decoded day.
    int16_t DB_Save_D_D1_pack(const Pack_Day& day); // D_D1 D_F1..D_F14
    int16_t DB_Save_D_D2_pack(const Pack_Day& day); // D_D2 brake records, buffer and times
    int16_t DB_Save_D_D3_pack(const Pack_Day& day); // D_D3 minute speed, D_D6 long overspeed records
    int16_t DB_Save_D_D5_pack(const Pack_Day& day); // D_D7 minute distance, flag bit cleared
    // Event rows of a key only, each only when it has events (idle and long
    // overspeed by count, the others by a non-empty list).
    int16_t DB_Save_D_D1_st(const QString& key, int16_t idle, const QString& idleData, const QString& brackData,
                            const QString& accelData, int16_t lkEngin, const QString& lkEnginData,
                            const QString& overData);
    // Merges 10-character event records into D_D2 (type "55") or D_D4 (any
    // other type) of car + driver + day; a stored time is never repeated.
    int16_t DB_Save_UD_D2(QString& car, QString& driver, QString& type, QString& day, QString& list);

    // -- Marks.cpp: the driving mark and the overspeed minutes of the pack path.
    // The mark as digits ("95", "0"); empty text when the handler ran (a
    // 16-bit product overflowed).
    QString CAL_AVG(int16_t overspeed, float acceleration, float brake, int16_t idle, int16_t longOver, float distance);
    // The overspeed minutes of a decoded pack day: cells of its speed above
    // B_Val4 (see Pack_Overspeed_Minutes).
    int16_t CAL_OVERSPEED_CNT(const QString& speed);
    // Cells of series above B_Val4.
    int16_t CAL_OVERSPEED_COUNT(const QString& series);

    // -- EventDetector.cpp: a day file of second data through the event
    // detector into DB_Save_D_D1. The file is "\pack\car\day\day+driver.vex".
    int16_t DB_Save_D_D1_file(QString& car, QString& driver, QString& day);
    int16_t DB_Save_D_D12_file(QString& car, QString& driver, QString& day); // the period rebuild's twin

    // -- DayFile.cpp: the day files of second data and the minute distance.
    // Arrays are indexed by the second (element 0 first, 86,401 entries; the
    // half-second array 172,801); distances by the minute, 1 to 1440 (1,441
    // entries), in metres.
    int16_t DB_Save_D_D2(const QString& car, const QString& driver, std::span<const uint8_t> speed,
                         std::span<const uint8_t> engine, std::span<const float> distance, const QString& day,
                         std::span<const uint8_t> half);
    int16_t DB_Save_D_D2_130(const QString& car, const QString& driver, std::span<const uint8_t> speed,
                             std::span<const uint8_t> engine, const QString& day);
    // distanceBytes: 2,881 entries, minute m at 2m-1 (hundreds of metres) and 2m (the rest).
    int16_t DB_Save_D_D2_file(const QString& car, const QString& driver, std::span<const uint8_t> speed,
                              std::span<const uint8_t> engine, std::span<const uint8_t> distanceBytes,
                              const QString& day);
    // The ".ntd" file of the USB path; a day that isn't yyMMdd of a real
    // month and day writes nothing and answers 0.
    int16_t DB_Save_D_D_usb(const QString& car, const QString& driver, std::span<const uint8_t> speed,
                            std::span<const uint8_t> engine, std::span<const float> distance, const QString& day);
    // One hour of the day file. hour "00" or empty: the first hour with
    // data, written back to hour. Its path is empty (and its series too) when
    // the day has no file or the file could not be read.
    Hour_Seconds DB_Search_SecData(const QString& car, const QString& driver, const QString& day, QString& hour);
    // The month's ".SAM" file under U_PackDir; its path, or empty text when
    // the month has no rows (no file then).
    QString DB_To_File(const QString& month);
    // Digit pairs as hexadecimal of (pair + 31): "24" -> "37"; an odd last
    // character is a pair alone.
    static QString Line_Data_Comp(const QString& digits);

    // -- MonthTables.cpp: monthly tables, recorder identity, per-car counters.
    int16_t DB_Month_Sum(const QString& month);
    int16_t DB_Save_SYSTEM(const Pack_System_Page& page);
    // S_D13 of car: column D_F(k+1) less the k-th comma-separated value.
    int16_t DB_SAVE_S_D13(const QString& car, const QString& value);
    // ==== End of ingest =======================================================

private:
    // BEGIN IMMEDIATE on SQLite: the write lock is taken before the first
    // read, so two programs never both read and then both wait to write
    // (SQLite refuses one of them at once then, whatever the busy timeout).
    // False when another program kept the lock for Write_Wait_Seconds.
    bool Begin_Write();
    // Runs one statement of the connection's own (savepoints).
    bool Run_Plain(const QString& sql);
    // One step of a statement (its prepare, its run): within a batch on a
    // server under a savepoint of its own.
    bool Step(const std::function<bool()>& step);

    enum class Write_Mode { None, Batch, Transaction };
    Write_Mode mode_ = Write_Mode::None;
    DbTarget target_;
    QString name_;
    Engine dialect_ = Engine::Sqlite;
    QHash<QString, QSqlQuery> statements_;
    QHash<QString, QString> translated_;
    int state_ = 0;
    bool open_ = false;
    int failures_ = 0;
    QString lastFailure_;
};

} // namespace vex
