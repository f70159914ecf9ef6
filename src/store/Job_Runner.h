#pragma once
// Long work off the caller's thread: a reception, a recount, a keeping step,
// a spreadsheet. The work runs in a worker thread on a database connection
// of its own to the same target as the caller's (a connection belongs to the
// thread that opened it), tells its progress and ends with a result; both
// reach the caller's thread through its event queue, so a window shows them
// and stays alive meanwhile.
//
// A cancel is a flag the work reads between its units (a trip, a day, a
// file): what was written before stays written. A routine that knows only a
// progress callback is stopped through it (Job::Step), as by a failure there.
#include "core/Err_Proc.h"
#include "store/DbTarget.h"

#include <QObject>
#include <QString>
#include <any>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

class QThread;

namespace vex {

class Cls_DB;
class Job_Runner;

// What Job::Step throws once the caller has asked to stop: a routine ends
// there as on any run-time error of its own, with what that leaves.
class Job_Cancelled : public RunTimeError {
public:
    Job_Cancelled();
};

// What the work sees of its runner.
class Job {
public:
    // The worker's own connection. Throws RunTimeError when the runner was
    // given no database.
    Cls_DB& Db();
    // True once the caller has asked to stop; the work checks it between
    // units and returns.
    bool Cancelled() const { return cancel_; }
    // Told on the caller's thread as the runner's Progress signal: a stage
    // text (may be empty), units done of all (all 0 when not counted).
    void Progress(const QString& text, int done = 0, int all = 0);
    // A safe point of a routine that stops by failing: tells progress as
    // Progress does, waits until the caller has taken it (so a Cancel pressed
    // on it is seen here, not a few units later), then throws Job_Cancelled
    // when cancel was asked. Only while the caller waits with Wait_Events.
    void Step(const QString& text, int done = 0, int all = 0);
    // Runs f on the caller's thread and returns once it has run: a message
    // box the work must wait for. Only while the caller waits with
    // Wait_Events (a blocked caller would never run it).
    void On_Caller(const std::function<void()>& f);

private:
    friend class Job_Runner;
    Job(Job_Runner& runner, Cls_DB* db, const std::atomic_bool& cancel)
        : runner_(runner), db_(db), cancel_(cancel)
    {
    }
    Job_Runner& runner_;
    Cls_DB* db_;
    const std::atomic_bool& cancel_;
};

struct Job_Result {
    std::any value;     // what the work returned
    QString error;      // why the work failed (what it threw, or the connection); empty when it didn't
    bool cancelled = false; // cancel was asked before the work ended
    bool Ok() const { return error.isEmpty(); }
    template <class T>
    T Value() const { return std::any_cast<T>(value); }
};

class Job_Runner : public QObject {
    Q_OBJECT
public:
    using Work = std::function<std::any(Job&)>;

    // Work that needs no database (files, a transfer).
    explicit Job_Runner(QObject* parent = nullptr);
    // Work on its own connection to target.
    explicit Job_Runner(const DbTarget& target, QObject* parent = nullptr);
    // Cancels and waits for the worker.
    ~Job_Runner() override;
    Job_Runner(const Job_Runner&) = delete;
    Job_Runner& operator=(const Job_Runner&) = delete;

    // One job at a time: a start while one runs is refused (false). lent, an
    // object of this thread the work uses and that must live in the thread
    // using it (a serial port), moves to the worker for the job and back
    // here after it; it must have no parent.
    bool Start(Work work, QObject* lent = nullptr);
    void Cancel() { cancel_ = true; }
    // Told of every job as it starts, on the caller's thread: a test follows
    // a job's progress and cancels it at a point of its choosing. Empty: none.
    static void Set_Start_Hook(std::function<void(Job_Runner&)> hook);
    // Started and its Finished not yet delivered.
    bool Running() const { return running_; }

    // Blocks this thread until the worker has ended, then delivers here what
    // it posted (progress, Finished): for the command line and tests.
    const Job_Result& Wait();
    // Runs this thread's events until Finished has been delivered: a window
    // stays alive, repaints and takes its Cancel button meanwhile.
    const Job_Result& Wait_Events();

signals:
    void Progress(const QString& text, int done, int all);
    void Finished(const vex::Job_Result& result);

private:
    void Run(const Work& work, QObject* lent);

    std::optional<DbTarget> target_;
    std::atomic_bool cancel_{false};
    bool running_ = false;
    Job_Result result_;
    std::unique_ptr<QThread> thread_;
};

} // namespace vex
