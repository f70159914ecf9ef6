#pragma once
// The world a fuzz target runs in: an application folder on a memory file
// system (/dev/shm where the machine has one), its database in memory, the
// settings loaded. The folder stands seven empty folders deep in a private
// root, so that a file written above it, as a code of "..\.." in a path
// would, lands where the sandbox sees it.
//
// After each input the sandbox looks at what the decoders left: a file
// outside the application folder and a day row whose key isn't car, driver
// and day (six hexadecimal characters, six more, six digits) are faults.
// Then it removes what the input wrote, in the folder and in the database,
// and puts back from a copy made at the start what it replaced (a file of
// the started application made a folder, or made anew), so that every input
// starts from the same empty application. The folders
// are watched (inotify), so that an input that wrote nothing costs no walk
// over them.
#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QSqlQuery>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

class QTemporaryDir;

namespace vex::fuzz {

class Sandbox {
public:
    // Takes the faults. Without one a fault is printed and the process
    // aborts, which is how libFuzzer learns of it and keeps the input.
    using Fault_Sink = std::function<void(const QString&)>;

    // Resets the process-wide state and starts the application in a new
    // sandbox; the one made last is the current one.
    explicit Sandbox(Fault_Sink sink = {});
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    const QString& App() const { return app_; }
    // A path under the application folder, in the system's form or not
    // ("\new\x.Vex", "new/x.Vex"); one that is already there stays.
    QString Path(const QString& rel) const;
    // Writes bytes as the whole file at rel; returns its path.
    QString Write(const QString& rel, const QByteArray& bytes);
    // A file the harness keeps from input to input: not cleared.
    void Keep(const QString& path) { baseline_.insert(Path(path)); }

    // The checks after an input, then the clean-up. True when the input
    // left rows, or files besides those the harness wrote and the log.
    bool Finish_Input();
    void Fault(const QString& what) const;

private:
    void Watch(const QString& folder);
    // Paths created in the watched folders since the last call; every path
    // of the sandbox when the watch lost count.
    std::vector<QString> Created();
    bool Check_And_Clear_Files();
    // A path of the started application as it was, from the copy.
    void Restore(const QString& path);
    bool Check_And_Clear_Rows();
    qint64 Changes();

    Fault_Sink sink_;
    QString cwd_;
    std::unique_ptr<QTemporaryDir> tmp_;
    std::unique_ptr<QTemporaryDir> pristine_; // the started application folder, copied
    QString root_, app_;
    QSet<QString> levels_;   // the folders from the private root down to the application folder's parent
    QSet<QString> baseline_; // what the application folder holds when started
    QSet<QString> written_;  // files the harness wrote for the input
    int inotify_ = -1;
    QHash<int, QString> watched_;
    // Prepared once: the count of changed rows, the day rows of a bad key,
    // the deletes of everything but the settings.
    QSqlQuery changes_query_, bad_keys_query_;
    std::vector<QSqlQuery> deletes_;
    qint64 changes_ = 0; // the count when last cleared
};

// The sandbox of the running input: the newest one alive, else one made on
// first use that lives as long as the process.
Sandbox& Current_Sandbox();

// The input bytes as a QByteArray (a copy).
inline QByteArray Bytes(std::span<const uint8_t> data)
{
    return QByteArray(reinterpret_cast<const char*>(data.data()), qsizetype(data.size()));
}

} // namespace vex::fuzz
