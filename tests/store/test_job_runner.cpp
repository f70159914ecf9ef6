// The job runner: the work runs in a worker thread on a connection of its
// own, its progress and its end reach the caller's thread, a cancel stops it
// between units keeping what it wrote, and a failure reaches the result.
#include "store/Job_Runner.h"
#include "store/IngestFixture.h"

#include <QSemaphore>
#include <QThread>

using namespace vex;

namespace {

class JobRunner : public test::Ingest {
protected:
    QString Driver(int i) { return QStringLiteral("DR%1").arg(i, 4, 10, QLatin1Char('0')); }
};

} // namespace

TEST_P(JobRunner, TheWorkRunsOnItsOwnConnectionAndReportsToTheCallersThread)
{
    QThread* const caller = QThread::currentThread();
    Job_Runner runner(db->Target());
    std::vector<std::pair<QString, int>> steps;
    int finished = 0;
    QObject::connect(&runner, &Job_Runner::Progress, [&](const QString& text, int done, int all) {
        EXPECT_EQ(QThread::currentThread(), caller);
        EXPECT_EQ(all, 3);
        steps.emplace_back(text, done);
    });
    QObject::connect(&runner, &Job_Runner::Finished, [&](const Job_Result& r) {
        EXPECT_EQ(QThread::currentThread(), caller);
        EXPECT_EQ(r.Value<int>(), 3);
        ++finished;
    });
    QThread* worker = nullptr;
    QString connection;
    ASSERT_TRUE(runner.Start([&](Job& job) -> std::any {
        worker = QThread::currentThread();
        connection = job.Db().Connection_Name();
        for (int i = 0; i < 3; ++i) {
            job.Db().Register_Driver(Driver(i));
            job.Progress(Driver(i), i + 1, 3);
        }
        return 3;
    }));
    EXPECT_TRUE(runner.Running());
    EXPECT_FALSE(runner.Start([](Job&) -> std::any { return {}; })) << "one job at a time";
    const Job_Result& r = runner.Wait();
    EXPECT_TRUE(r.Ok()) << r.error.toStdString();
    EXPECT_FALSE(r.cancelled);
    EXPECT_FALSE(runner.Running());
    EXPECT_EQ(finished, 1);
    EXPECT_NE(worker, caller);
    EXPECT_NE(connection, db->Connection_Name());
    EXPECT_EQ(steps, (std::vector<std::pair<QString, int>>{{Driver(0), 1}, {Driver(1), 2}, {Driver(2), 3}}));
    // Committed on the worker's connection, seen on the caller's.
    EXPECT_EQ(Rows("S_D2"), 3);
}

TEST_P(JobRunner, ACancelStopsBetweenUnitsAndKeepsWhatWasWritten)
{
    // The work waits after its third unit until the caller, told of it, has
    // cancelled: the order is fixed by the handshake, not by timing.
    Job_Runner runner(db->Target());
    QSemaphore told;
    QObject::connect(&runner, &Job_Runner::Progress, [&](const QString&, int done, int) {
        if (done == 3)
            runner.Cancel();
        told.release();
    });
    runner.Start([&](Job& job) -> std::any {
        int done = 0;
        for (int i = 0; i < 10 && !job.Cancelled(); ++i) {
            job.Db().Register_Driver(Driver(i));
            job.Progress({}, ++done, 10);
            told.acquire();
        }
        return done;
    });
    const Job_Result& r = runner.Wait_Events();
    EXPECT_TRUE(r.Ok()) << r.error.toStdString();
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(r.Value<int>(), 3);
    EXPECT_EQ(Rows("S_D2"), 3);

    // The runner takes the next job afresh, not cancelled.
    runner.Start([&](Job& job) -> std::any { return job.Cancelled(); });
    EXPECT_FALSE(runner.Wait().Value<bool>());

    // A runner that goes while its job runs cancels it and waits for it.
    std::atomic_bool sawCancel = false;
    {
        Job_Runner going(db->Target());
        QSemaphore started;
        going.Start([&](Job& job) -> std::any {
            started.release();
            while (!job.Cancelled())
                QThread::yieldCurrentThread();
            sawCancel = true;
            return {};
        });
        started.acquire();
    }
    EXPECT_TRUE(sawCancel);
}

TEST_P(JobRunner, AStepCancelledOnItsProgressThrowsBeforeTheNextUnit)
{
    // Step waits until its progress has been shown: the cancel given there
    // is seen by that very step, with no handshake of the work's own.
    Job_Runner runner(db->Target());
    QObject::connect(&runner, &Job_Runner::Progress, [&](const QString&, int done, int) {
        if (done == 2)
            runner.Cancel();
    });
    runner.Start([&](Job& job) -> std::any {
        for (int i = 0; i < 10; ++i) {
            job.Db().Register_Driver(Driver(i));
            job.Step({}, i + 1, 10);
        }
        return 10;
    });
    const Job_Result& r = runner.Wait_Events();
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(r.error, QString::fromUtf8(Job_Cancelled().what()));
    EXPECT_EQ(Rows("S_D2"), 2);
}

TEST_P(JobRunner, AFailureOfTheWorkOrOfItsConnectionReachesTheResult)
{
    Job_Runner runner(db->Target());
    int finished = 0;
    QObject::connect(&runner, &Job_Runner::Finished, [&](const Job_Result&) { ++finished; });
    runner.Start([&](Job& job) -> std::any {
        job.Db().Register_Driver(Driver(1));
        job.Db().DB_RSet_D_D("SELECT * FROM NO_SUCH_TABLE");
        return 1;
    });
    const Job_Result& r = runner.Wait();
    EXPECT_FALSE(r.Ok());
    EXPECT_FALSE(r.value.has_value());
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(Rows("S_D2"), 1) << "what was written before the failure stays";

    // Work without a database has no connection to ask for.
    Job_Runner files;
    files.Start([](Job& job) -> std::any { return job.Db().Connection_Name(); });
    EXPECT_FALSE(files.Wait().Ok());
    files.Start([](Job&) -> std::any { return QStringLiteral("done"); });
    EXPECT_EQ(files.Wait().Value<QString>(), "done");

    // A connection that can't open: the work never runs.
    if (GetParam() == test::Backend::Sqlite) {
        DbTarget nowhere = db->Target();
        nowhere.database = app.Path("no/such/folder/vex.db");
        Job_Runner lost(nowhere);
        bool ran = false;
        lost.Start([&](Job&) -> std::any { return ran = true; });
        EXPECT_FALSE(lost.Wait().Ok());
        EXPECT_FALSE(ran);
    }
}

TEST_P(JobRunner, WhatTheWorkWaitsForRunsOnTheCallersThreadInItsOrder)
{
    // A box shown mid-way: the work goes on only once it has been shown.
    QThread* const caller = QThread::currentThread();
    Job_Runner runner(db->Target());
    QStringList order;
    QObject::connect(&runner, &Job_Runner::Progress, [&](const QString& text) { order << text; });
    runner.Start([&](Job& job) -> std::any {
        job.Progress("before");
        job.On_Caller([&] {
            EXPECT_EQ(QThread::currentThread(), caller);
            order << "box";
        });
        job.Db().Register_Driver(Driver(1));
        order << "after"; // the caller is in the box's wake, not touching the list
        return 0;
    });
    EXPECT_TRUE(runner.Wait_Events().Ok());
    EXPECT_EQ(order, QStringList({"before", "box", "after"}));
    EXPECT_EQ(Rows("S_D2"), 1);
}

TEST_P(JobRunner, AnObjectLentToTheJobLivesInItsThreadThenComesBack)
{
    // As the analyzer's serial port does: used only in the thread it lives in.
    QObject port;
    Job_Runner runner(db->Target());
    bool inWorker = false;
    runner.Start([&](Job&) -> std::any { return inWorker = port.thread() == QThread::currentThread(); }, &port);
    EXPECT_TRUE(runner.Wait().Ok());
    EXPECT_TRUE(inWorker);
    EXPECT_EQ(port.thread(), QThread::currentThread());
}

VEX_INGEST_ENGINES(JobRunner);
