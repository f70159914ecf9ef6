#include "store/Job_Runner.h"

#include "core/Messages.h"
#include "store/Cls_DB.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

namespace vex {

Job_Cancelled::Job_Cancelled()
    : RunTimeError(Lang_Text(QStringLiteral("취소되었습니다"), QStringLiteral("cancelled")))
{
}

Cls_DB& Job::Db()
{
    if (!db_)
        throw RunTimeError(QStringLiteral("the job has no database connection"));
    return *db_;
}

void Job::Progress(const QString& text, int done, int all)
{
    Job_Runner* runner = &runner_;
    QMetaObject::invokeMethod(
        runner, [runner, text, done, all] { emit runner->Progress(text, done, all); }, Qt::QueuedConnection);
}

void Job::Step(const QString& text, int done, int all)
{
    Job_Runner* runner = &runner_;
    QMetaObject::invokeMethod(
        runner, [runner, text, done, all] { emit runner->Progress(text, done, all); }, Qt::BlockingQueuedConnection);
    if (Cancelled())
        throw Job_Cancelled();
}

void Job::On_Caller(const std::function<void()>& f)
{
    QMetaObject::invokeMethod(&runner_, f, Qt::BlockingQueuedConnection);
}

namespace {

std::function<void(Job_Runner&)>& Start_Hook()
{
    static std::function<void(Job_Runner&)> hook;
    return hook;
}

} // namespace

void Job_Runner::Set_Start_Hook(std::function<void(Job_Runner&)> hook)
{
    Start_Hook() = std::move(hook);
}

Job_Runner::Job_Runner(QObject* parent) : QObject(parent) {}

Job_Runner::Job_Runner(const DbTarget& target, QObject* parent) : QObject(parent), target_(target) {}

Job_Runner::~Job_Runner()
{
    Cancel();
    if (thread_)
        thread_->wait();
}

bool Job_Runner::Start(Work work, QObject* lent)
{
    if (running_)
        return false;
    if (thread_)
        thread_->wait(); // the last worker has posted its end; let it go
    running_ = true;
    cancel_ = false;
    result_ = Job_Result();
    thread_.reset(QThread::create([this, work = std::move(work), lent] { Run(work, lent); }));
    if (lent)
        lent->moveToThread(thread_.get());
    if (Start_Hook())
        Start_Hook()(*this);
    thread_->start();
    return true;
}

void Job_Runner::Run(const Work& work, QObject* lent)
{
    Job_Result result;
    {
        std::unique_ptr<Cls_DB> db;
        if (target_) {
            db = std::make_unique<Cls_DB>(*target_);
            if (db->DB_State() != 1)
                result.error = Err_Last();
        }
        if (result.error.isEmpty()) {
            Job job(*this, db.get(), cancel_);
            try {
                result.value = work(job);
            } catch (const std::exception& e) {
                result.error = QString::fromUtf8(e.what());
            } catch (...) {
                result.error = QStringLiteral("unknown failure");
            }
        }
        // The connection closes here, in the thread that opened it.
    }
    if (lent)
        lent->moveToThread(thread()); // only the thread it lives in may give it back
    result.cancelled = cancel_;
    QMetaObject::invokeMethod(
        this,
        [this, result = std::move(result)] {
            result_ = result;
            running_ = false;
            emit Finished(result_);
        },
        Qt::QueuedConnection);
}

const Job_Result& Job_Runner::Wait()
{
    if (thread_)
        thread_->wait();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    return result_;
}

const Job_Result& Job_Runner::Wait_Events()
{
    if (running_) {
        QEventLoop loop;
        connect(this, &Job_Runner::Finished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return result_;
}

} // namespace vex
