// vex-analyzer: an analyzer with a memory pack in it, on a pseudo-terminal.
//
//   vex-analyzer --image IMAGE [--fault KIND]... [--verbose]
//
// Opens a pseudo-terminal, prints the path of its slave side as the first
// line on stdout and answers there until SIGTERM or SIGINT:
//
//   "NAMESENDOF"                     -> "STARTSIOENDOF"
//   "CHECKENDOF"                     -> "STARTYESENDOF" ("STARTNOENDOF" without a pack)
//   "START" bb pp aaaa llll "ENDOF"  -> "START" hex of the bytes "ENDOF", from IMAGE
//   "WRITE" aaaaaaaa vv "ENDOF"      -> stores byte vv at that offset of the
//                                       system page (bank 00, page 00) and
//                                       saves IMAGE; no reply
//
// IMAGE is a pack image file (PackImage: the raw 1 MiB address space).
// Replies go out at the pace of a 115,200 baud line, ten bits a byte.
//
// Faults, to try the desktop's side of a bad line; several may be given,
// repeated or comma-separated. Those that concern replies apply to reads
// only, so that the analyzer can still be found and asked for the pack:
//   no-reply   reads are never answered
//   late       reads are answered 1.6 s after the command
//   garbage    every reply has bytes in front of "START"
//   cut        read replies stop before "ENDOF"
//   stale      from the second read on, each read is answered with the
//              previous read's reply
//   no-pack    "CHECKENDOF" answers "STARTNOENDOF"
#include "acquisition/PackImage.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <optional>
#include <set>
#include <string>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t g_stop = 0;

void On_Signal(int) { g_stop = 1; }

constexpr double kBytesPerSecond = 115200.0 / 10.0;
constexpr int kChunk = 64;
constexpr auto kLateDelay = std::chrono::milliseconds(1600);

struct Options {
    QString image;
    std::set<QString> faults;
    bool verbose = false;
};

const std::set<QString> kKnownFaults{"no-reply", "late", "garbage", "cut", "stale", "no-pack"};

int Usage(const char* why)
{
    std::fprintf(stderr, "vex-analyzer: %s\nusage: vex-analyzer --image IMAGE [--fault KIND]... [--verbose]\n"
                         "faults: no-reply, late, garbage, cut, stale, no-pack\n", why);
    return 2;
}

class Analyzer {
public:
    Analyzer(int master, QString imagePath, vex::PackImage image, Options options)
        : master_(master), imagePath_(std::move(imagePath)), image_(std::move(image)), options_(std::move(options))
    {
    }

    // Reads commands until a signal stops it. False on a failure of the line.
    bool Serve()
    {
        while (!g_stop) {
            pollfd p{master_, POLLIN, 0};
            const int n = ::poll(&p, 1, 200);
            if (n < 0) {
                if (errno == EINTR)
                    continue;
                std::perror("vex-analyzer: poll");
                return false;
            }
            if (n == 0 || !(p.revents & POLLIN))
                continue;
            char buf[4096];
            const ssize_t got = ::read(master_, buf, sizeof buf);
            if (got < 0) {
                if (errno == EINTR || errno == EAGAIN || errno == EIO)
                    continue;
                std::perror("vex-analyzer: read");
                return false;
            }
            input_.append(buf, got);
            Take_Commands();
        }
        return true;
    }

private:
    bool Fault(const char* kind) const { return options_.faults.count(QString::fromLatin1(kind)) > 0; }

    // Every command ends with "ENDOF"; whatever stands in front of its
    // keyword is line noise and is passed over.
    void Take_Commands()
    {
        static const QByteArray end("ENDOF");
        for (qsizetype at = input_.indexOf(end); at >= 0 && !g_stop; at = input_.indexOf(end)) {
            QByteArray body = input_.left(at);
            input_.remove(0, at + end.size());
            Command(body);
        }
    }

    void Command(const QByteArray& text)
    {
        // The keyword nearest the end wins: "xxNAMES" is a name query.
        qsizetype best = -1;
        QByteArray keyword;
        for (const char* k : {"NAMES", "CHECK", "START", "WRITE"}) {
            const qsizetype at = text.lastIndexOf(k);
            if (at > best) {
                best = at;
                keyword = k;
            }
        }
        if (best < 0) {
            Log("ignored: " + text);
            return;
        }
        const QByteArray args = text.mid(best + keyword.size());
        Log(keyword + args + "ENDOF");
        if (keyword == "NAMES" && args.isEmpty())
            Reply("SIO");
        else if (keyword == "CHECK" && args.isEmpty())
            Reply(Fault("no-pack") ? "NO" : "YES");
        else if (keyword == "START" && args.size() == 12 && Is_Hex(args))
            Read(args);
        else if (keyword == "WRITE" && args.size() == 10 && Is_Hex(args))
            Write(args);
        else
            Log("ignored: " + text);
    }

    void Read(const QByteArray& args)
    {
        const vex::PackAddress at{args.mid(0, 2).toInt(nullptr, 16), args.mid(2, 2).toInt(nullptr, 16),
                                  args.mid(4, 4).toInt(nullptr, 16), args.mid(8, 4).toInt(nullptr, 16)};
        const QByteArray data = image_.Read_Hex(at).toLatin1();
        if (Fault("no-reply"))
            return;
        QByteArray payload = data;
        if (Fault("stale")) {
            payload = previousRead_.value_or(data);
            previousRead_ = data;
        }
        if (Fault("late")) {
            std::this_thread::sleep_for(kLateDelay);
            if (g_stop)
                return;
        }
        Reply(payload, Fault("cut"));
    }

    void Write(const QByteArray& args)
    {
        const int offset = int(args.left(8).toUInt(nullptr, 16));
        const int value = args.mid(8, 2).toInt(nullptr, 16);
        if (offset < 0 || offset >= vex::PackImage::kPageBytes) {
            Log("write beyond the system page ignored");
            return;
        }
        image_.Set_Byte(0, 0, offset, uint8_t(value));
        if (!image_.Save(imagePath_))
            std::fprintf(stderr, "vex-analyzer: cannot save %s\n", qPrintable(imagePath_));
    }

    void Reply(const QByteArray& payload, bool cut = false)
    {
        QByteArray out;
        if (Fault("garbage"))
            out += QByteArray("\x00\x7F" "xq#", 5);
        out += "START" + payload;
        if (cut)
            out.chop(qMin<qsizetype>(out.size() - 5, 3)); // lose the last few characters too
        else
            out += "ENDOF";
        Send_Paced(out);
    }

    // At the line's speed: each chunk leaves no earlier than its bytes
    // would have taken on the wire.
    void Send_Paced(const QByteArray& out)
    {
        using Clock = std::chrono::steady_clock;
        const auto start = Clock::now();
        qsizetype sent = 0;
        while (sent < out.size() && !g_stop) {
            const qsizetype n = qMin<qsizetype>(kChunk, out.size() - sent);
            const ssize_t w = ::write(master_, out.constData() + sent, size_t(n));
            if (w < 0) {
                if (errno == EINTR)
                    continue;
                if (errno == EAGAIN) {
                    std::this_thread::sleep_for(std::chrono::milliseconds(5));
                    continue;
                }
                std::perror("vex-analyzer: write");
                return;
            }
            sent += w;
            const auto due = start + std::chrono::microseconds(qint64(sent * 1e6 / kBytesPerSecond));
            std::this_thread::sleep_until(due);
        }
    }

    static bool Is_Hex(const QByteArray& s)
    {
        for (char c : s) {
            if (!((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f')))
                return false;
        }
        return true;
    }

    void Log(const QByteArray& line) const
    {
        if (options_.verbose)
            std::fprintf(stderr, "vex-analyzer: %s\n", line.constData());
    }

    int master_;
    QString imagePath_;
    vex::PackImage image_;
    Options options_;
    QByteArray input_;
    std::optional<QByteArray> previousRead_;
};

} // namespace

int main(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--image" && i + 1 < argc) {
            options.image = QString::fromLocal8Bit(argv[++i]);
        } else if (arg == "--fault" && i + 1 < argc) {
            for (const QString& kind : QString::fromLocal8Bit(argv[++i]).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
                if (!kKnownFaults.count(kind.trimmed()))
                    return Usage("unknown fault");
                options.faults.insert(kind.trimmed());
            }
        } else if (arg == "--verbose") {
            options.verbose = true;
        } else {
            return Usage("bad argument");
        }
    }
    if (options.image.isEmpty())
        return Usage("--image is required");
    std::optional<vex::PackImage> image = vex::PackImage::Load(options.image);
    if (!image) {
        std::fprintf(stderr, "vex-analyzer: %s is not a pack image (missing, or not %d bytes)\n",
                     qPrintable(options.image), vex::PackImage::kBytes);
        return 2;
    }

    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) {
        std::perror("vex-analyzer: pseudo-terminal");
        return 1;
    }
    const char* slaveName = ::ptsname(master);
    if (!slaveName) {
        std::perror("vex-analyzer: ptsname");
        return 1;
    }
    const std::string slavePath = slaveName;
    // The slave side stays open here for the whole run: its raw settings
    // then survive the desktop closing and reopening the port, and the
    // master never sees a hang-up between two sessions.
    const int slave = ::open(slavePath.c_str(), O_RDWR | O_NOCTTY);
    termios tio{};
    if (slave < 0 || ::tcgetattr(slave, &tio) != 0) {
        std::perror("vex-analyzer: slave side");
        return 1;
    }
    ::cfmakeraw(&tio);
    ::cfsetispeed(&tio, B115200);
    ::cfsetospeed(&tio, B115200);
    ::tcsetattr(slave, TCSANOW, &tio);

    struct sigaction sa {};
    sa.sa_handler = On_Signal;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = 0; // no restart: poll returns at once
    ::sigaction(SIGTERM, &sa, nullptr);
    ::sigaction(SIGINT, &sa, nullptr);

    std::printf("%s\n", slavePath.c_str());
    std::fflush(stdout);

    Analyzer analyzer(master, options.image, std::move(*image), options);
    const bool ok = analyzer.Serve();
    ::close(slave);
    ::close(master);
    return ok ? 0 : 1;
}
