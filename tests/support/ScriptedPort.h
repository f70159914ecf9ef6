#pragma once
// An analyzer port whose line is a script, on a virtual clock: replies
// arrive in chunks at set times, and waiting advances the clock instead of
// sleeping, so deadlines are exact and the tests take no real time.
#include "acquisition/AnalyzerLink.h"
#include "platform/SerialPort.h"

#include <QByteArray>
#include <algorithm>
#include <deque>
#include <functional>
#include <set>
#include <vector>

namespace vex::test {

// A port whose line is a script. Chunks become readable at their time on
// the port's clock. Closing it drops the line: what was readable and what
// was still to come (the analyzer gives up a reply when the port goes).
class ScriptedPort final : public vex::AnalyzerPort {
public:
    qint64 now = 0;
    std::vector<QByteArray> written;
    int opens = 0;
    int closes = 0;
    std::set<int> dead;  // port numbers that fail to open
    std::vector<int> openedNumbers;
    // Called with each message written; may Deliver() a reply.
    std::function<void(ScriptedPort&, const QByteArray&)> onWrite;

    ScriptedPort() { open_ = true; number_ = 1; }

    void Deliver(qint64 delay, const QByteArray& data)
    {
        pending_.push_back({now + delay, data});
        std::stable_sort(pending_.begin(), pending_.end(), [](auto& a, auto& b) { return a.at < b.at; });
    }

    vex::AnalyzerLink::Clock Clock() { return [this] { return now; }; }

    bool open(int n) override
    {
        close();
        ++opens;
        number_ = n;
        openedNumbers.push_back(n);
        open_ = !dead.count(n);
        return open_;
    }
    void close() override
    {
        if (open_)
            ++closes;
        open_ = false;
        pending_.clear();
        arrived_.clear();
    }
    bool isOpen() const override { return open_; }
    int portNumber() const override { return number_; }
    bool write(const QByteArray& data) override
    {
        if (!open_)
            return false;
        written.push_back(data);
        if (onWrite)
            onWrite(*this, data);
        return true;
    }
    QByteArray readAll() override
    {
        Move_Due();
        QByteArray out;
        out.swap(arrived_);
        return out;
    }
    bool waitForReadyRead(int msecs) override
    {
        if (!open_)
            return false;
        if (Move_Due())
            return true;
        if (!pending_.empty() && pending_.front().at <= now + msecs) {
            now = pending_.front().at;
            return Move_Due();
        }
        now += msecs;
        return false;
    }

private:
    struct Chunk {
        qint64 at;
        QByteArray data;
    };
    bool Move_Due()
    {
        bool any = false;
        while (!pending_.empty() && pending_.front().at <= now) {
            arrived_ += pending_.front().data;
            pending_.pop_front();
            any = true;
        }
        return any;
    }
    std::deque<Chunk> pending_;
    QByteArray arrived_;
    bool open_ = false;
    int number_ = 0;
};

} // namespace vex::test
