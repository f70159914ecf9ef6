#include "platform/Bounded_Child.h"

#include <QDeadlineTimer>
#include <QFile>
#include <cerrno>
#include <new>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vex {

namespace {

constexpr int kOut_Of_Memory = 4; // the child's exit status when its memory ran out

// The address space the process holds now (VmSize), in bytes.
qint64 Address_Space()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    return statm.readAll().split(' ').value(0).toLongLong() * sysconf(_SC_PAGESIZE);
}

void Write_All(int fd, const char* data, size_t size)
{
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            _exit(3);
        data += n;
        size -= size_t(n);
    }
}

[[noreturn]] void Child(const std::function<QByteArray()>& work, const Child_Limits& limits, int out, int err)
{
    ::dup2(err, STDERR_FILENO);
    const rlim_t space = rlim_t(Address_Space() + limits.extraBytes);
    const rlimit as{space, space};
    setrlimit(RLIMIT_AS, &as);
    const rlimit core{0, 0};
    setrlimit(RLIMIT_CORE, &core);
    QByteArray answer;
    try {
        answer = work();
    } catch (const std::bad_alloc&) {
        _exit(kOut_Of_Memory);
    } catch (...) {
        _exit(2);
    }
    const quint64 size = quint64(answer.size());
    Write_All(out, reinterpret_cast<const char*>(&size), sizeof size);
    Write_All(out, answer.constData(), size_t(answer.size()));
    _exit(0);
}

} // namespace

std::optional<QByteArray> Run_Bounded(const std::function<QByteArray()>& work, const Child_Limits& limits,
                                      QString* error)
{
    const auto fail = [&](const QString& why) -> std::optional<QByteArray> {
        if (error)
            *error = why;
        return std::nullopt;
    };
    int out[2], err[2];
    if (pipe2(out, O_CLOEXEC) != 0)
        return fail(QStringLiteral("no pipe"));
    if (pipe2(err, O_CLOEXEC) != 0) {
        ::close(out[0]);
        ::close(out[1]);
        return fail(QStringLiteral("no pipe"));
    }
    const pid_t pid = fork();
    if (pid == 0) {
        ::close(out[0]);
        ::close(err[0]);
        Child(work, limits, out[1], err[1]);
    }
    ::close(out[1]);
    ::close(err[1]);
    if (pid < 0) {
        ::close(out[0]);
        ::close(err[0]);
        return fail(QStringLiteral("cannot start a reader"));
    }
    QByteArray answer;
    qint64 warned = 0;
    QString why;
    QDeadlineTimer deadline(qint64(limits.seconds) * 1000);
    pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    int open = 2;
    char buf[1 << 16];
    while (open > 0 && why.isEmpty()) {
        if (deadline.hasExpired()) {
            why = QStringLiteral("no answer within %1 s").arg(limits.seconds);
            break;
        }
        const int ready = ::poll(fds, 2, int(std::min<qint64>(deadline.remainingTime(), 1000)));
        if (ready < 0 && errno != EINTR)
            break;
        for (pollfd& p : fds) {
            if (p.fd < 0 || !(p.revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            const ssize_t n = ::read(p.fd, buf, sizeof buf);
            if (n > 0 && p.fd == out[0]) {
                answer.append(buf, n);
            } else if (n > 0) {
                warned += n;
                if (warned > limits.warningBytes)
                    why = QStringLiteral("endless warnings");
            } else if (n == 0 || errno != EINTR) {
                ::close(p.fd);
                p.fd = -1;
                --open;
            }
        }
    }
    for (const pollfd& p : fds)
        if (p.fd >= 0)
            ::close(p.fd);
    if (!why.isEmpty())
        ::kill(pid, SIGKILL);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (!why.isEmpty())
        return fail(why);
    if (WIFSIGNALED(status))
        return fail(QStringLiteral("the reader died (signal %1)").arg(WTERMSIG(status)));
    if (WIFEXITED(status) && WEXITSTATUS(status) == kOut_Of_Memory)
        return fail(QStringLiteral("out of memory"));
    quint64 size = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || answer.size() < qsizetype(sizeof size))
        return fail(QStringLiteral("the reader failed"));
    memcpy(&size, answer.constData(), sizeof size);
    if (quint64(answer.size()) - sizeof size != size)
        return fail(QStringLiteral("the reader's answer is cut"));
    return answer.mid(sizeof size);
}

} // namespace vex
