#include "targets/Fuzz_Sandbox.h"

#include "acquisition/UsbRecorder.h"
#include "app/App_Setup.h"
#include "app/Start_Up.h"
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "registers/Settings_Load.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"
#include "store/Schema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdlib>
#include <filesystem>
#include <sys/inotify.h>
#include <unistd.h>

namespace vex::fuzz {

namespace {

namespace fs = std::filesystem;

constexpr int kDepth = 7; // empty folders between the private root and the application folder

Sandbox* current = nullptr;

// VEX_FUZZ_SANDBOXES when set (scripts/fuzz.sh removes it after a run, with
// the sandboxes that a crash left), else /dev/shm, else the temporary folder.
QString Memory_Folder()
{
    const QString chosen = qEnvironmentVariable("VEX_FUZZ_SANDBOXES");
    if (!chosen.isEmpty())
        return chosen;
    const QFileInfo shm(QStringLiteral("/dev/shm"));
    return shm.isDir() && shm.isWritable() ? shm.filePath() : QDir::tempPath();
}

// The day rows whose key isn't car, driver and day: six hexadecimal
// capitals, six more, six digits (GLOB tells capitals from small letters).
QString Bad_Keys_Sql()
{
    const QString pattern = QStringLiteral("[0-9A-F]").repeated(12) + QStringLiteral("[0-9]").repeated(6);
    QStringList parts;
    for (const Table& t : Schema_Tables())
        if (t.name.startsWith(QLatin1String("D_D")))
            parts << QStringLiteral("SELECT '%1', D_F1 FROM %1 WHERE D_F1 IS NULL OR D_F1 NOT GLOB '%2'").arg(t.name, pattern);
    return parts.join(QStringLiteral(" UNION ALL "));
}

QSqlQuery Prepare(const QString& sql)
{
    QSqlQuery q(QSqlDatabase::database(G().DB->Connection_Name(), false));
    q.setForwardOnly(true);
    q.prepare(sql);
    return q;
}

QString Parent(const QString& path)
{
    return path.left(path.lastIndexOf(QLatin1Char('/')));
}

} // namespace

Sandbox::Sandbox(Fault_Sink sink) : sink_(std::move(sink)), cwd_(QDir::currentPath())
{
    if (!QCoreApplication::instance()) {
        static int argc = 1;
        static char name[] = "vex-fuzz";
        static char* argv[] = {name, nullptr};
        static QCoreApplication app(argc, argv);
    }
    Main_Shutdown();
    G() = Globals();
    Usb_State() = Usb_Reception();

    tmp_ = std::make_unique<QTemporaryDir>(Memory_Folder() + QStringLiteral("/vex-fuzz-XXXXXX"));
    root_ = tmp_->path();
    app_ = root_;
    for (int level = 1; level <= kDepth; ++level) {
        levels_.insert(app_);
        app_ += QLatin1Char('/') + QString::number(level);
    }
    levels_.insert(app_);
    app_ += QStringLiteral("/app");
    QString why;
    if (!tmp_->isValid() || !Init_App_Folder(app_, &why) || !QDir().mkpath(app_ + QStringLiteral("/usb")))
        Fault(QStringLiteral("no application folder under %1: %2").arg(root_, why));
    Main_Start(app_);
    G().DB = std::make_unique<Cls_DB>(Sqlite_Memory_Target());
    G().DB->Ensure_Schema();
    if (!Load_Settings(*G().DB, *G().Config, G()))
        Fault(QStringLiteral("the settings of the memory database could not be loaded"));

    pristine_ = std::make_unique<QTemporaryDir>(Memory_Folder() + QStringLiteral("/vex-fuzz-pristine-XXXXXX"));
    std::error_code copied;
    fs::copy(app_.toStdString(), (pristine_->path() + QStringLiteral("/app")).toStdString(),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks, copied);
    if (!pristine_->isValid() || copied)
        Fault(QStringLiteral("no copy of the application folder under ") + pristine_->path());

    inotify_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    for (const QString& level : std::as_const(levels_))
        Watch(level);
    Watch(app_);
    for (const fs::directory_entry& e : fs::recursive_directory_iterator(app_.toStdString())) {
        const QString path = QString::fromStdString(e.path().string());
        baseline_.insert(path);
        if (e.is_directory() && !e.is_symlink())
            Watch(path);
    }
    changes_query_ = Prepare(QStringLiteral("SELECT total_changes()"));
    bad_keys_query_ = Prepare(Bad_Keys_Sql());
    // The settings rows stay as delivered; everything else goes.
    for (const Table& t : Schema_Tables())
        if (t.name != QLatin1String("S_D4") && t.name != QLatin1String("S_D10") && t.name != QLatin1String("S_D14"))
            deletes_.push_back(Prepare(QStringLiteral("DELETE FROM ") + t.name));
    Check_And_Clear_Rows();
    current = this;
}

Sandbox::~Sandbox()
{
    if (current == this)
        current = nullptr;
    if (inotify_ >= 0)
        close(inotify_);
    changes_query_ = QSqlQuery();
    bad_keys_query_ = QSqlQuery();
    deletes_.clear();
    Main_Shutdown();
    G() = Globals();
    Usb_State() = Usb_Reception();
    QDir::setCurrent(cwd_);
}

QString Sandbox::Path(const QString& rel) const
{
    return rel.startsWith(app_ + QLatin1Char('/')) ? rel : App_Path(app_, rel);
}

QString Sandbox::Write(const QString& rel, const QByteArray& bytes)
{
    const QString path = Path(rel);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        Fault(QStringLiteral("the harness could not write ") + path);
    written_.insert(path);
    return path;
}

void Sandbox::Fault(const QString& what) const
{
    if (sink_) {
        sink_(what);
        return;
    }
    QTextStream(stderr) << "vex fuzz fault: " << what << Qt::endl;
    std::abort();
}

bool Sandbox::Finish_Input()
{
    const bool files = Check_And_Clear_Files();
    const bool rows = Check_And_Clear_Rows();
    Usb_State() = Usb_Reception();
    return files || rows;
}

void Sandbox::Watch(const QString& folder)
{
    const int wd = inotify_add_watch(inotify_, folder.toLocal8Bit().constData(), IN_CREATE | IN_MOVED_TO);
    if (wd < 0)
        Fault(QStringLiteral("cannot watch ") + folder);
    watched_.insert(wd, folder);
}

std::vector<QString> Sandbox::Created()
{
    std::vector<QString> created;
    bool lost = false;
    alignas(inotify_event) char buffer[1 << 16];
    for (ssize_t n; (n = read(inotify_, buffer, sizeof buffer)) > 0;) {
        for (ssize_t at = 0; at < n;) {
            const auto* e = reinterpret_cast<const inotify_event*>(buffer + at);
            if (e->mask & IN_Q_OVERFLOW)
                lost = true;
            else if (e->len > 0)
                created.push_back(watched_.value(e->wd) + QLatin1Char('/') + QString::fromLocal8Bit(e->name));
            at += ssize_t(sizeof(inotify_event)) + e->len;
        }
    }
    if (lost) {
        created.clear();
        std::error_code ec;
        for (auto it = fs::recursive_directory_iterator(root_.toStdString(), ec); it != fs::recursive_directory_iterator();
             it.increment(ec))
            created.push_back(QString::fromStdString(it->path().string()));
    }
    return created;
}

// A path that is new in the folders between the private root and the
// application folder was written outside it; a path new under the
// application folder goes.
bool Sandbox::Check_And_Clear_Files()
{
    bool left = false, restored = false;
    const QString log = Err_Log_Path();
    for (const QString& path : Created()) {
        if (levels_.contains(path) || path == app_)
            continue;
        if (baseline_.contains(path)) {
            // Made anew by the input: as it was, whatever it is now.
            Restore(path);
            restored = true;
            continue;
        }
        std::error_code ec;
        if (!fs::exists(fs::symlink_status(path.toStdString(), ec)))
            continue; // made and removed again by the input, or gone with its folder
        if (levels_.contains(Parent(path)))
            Fault(QStringLiteral("written outside the application folder: ") + path);
        left = left || (!written_.contains(path) && path != log);
        fs::remove_all(path.toStdString(), ec);
    }
    written_.clear();
    if (restored)
        Created(); // the restore's own events
    return left;
}

void Sandbox::Restore(const QString& path)
{
    const std::string from = (pristine_->path() + QStringLiteral("/app") + path.mid(app_.size())).toStdString();
    std::error_code ec;
    if (!fs::exists(fs::symlink_status(from, ec)))
        return; // a file the harness keeps, not the application's
    fs::remove_all(path.toStdString(), ec);
    fs::copy(from, path.toStdString(), fs::copy_options::recursive | fs::copy_options::copy_symlinks, ec);
    if (ec)
        Fault(QStringLiteral("cannot put back ") + path);
    if (!fs::is_directory(fs::symlink_status(path.toStdString(), ec)))
        return;
    Watch(path);
    for (const fs::directory_entry& e : fs::recursive_directory_iterator(path.toStdString(), ec))
        if (e.is_directory() && !e.is_symlink())
            Watch(QString::fromStdString(e.path().string()));
}

qint64 Sandbox::Changes()
{
    if (!changes_query_.exec() || !changes_query_.next())
        Fault(QStringLiteral("no count of changes from the memory database"));
    const qint64 n = changes_query_.value(0).toLongLong();
    changes_query_.finish();
    return n;
}

bool Sandbox::Check_And_Clear_Rows()
{
    if (Changes() == changes_)
        return false; // the input stored nothing
    if (!bad_keys_query_.exec())
        Fault(QStringLiteral("the day rows could not be read: ") + bad_keys_query_.lastError().text());
    while (bad_keys_query_.next())
        Fault(QStringLiteral("%1 row keyed '%2'").arg(bad_keys_query_.value(0).toString(), bad_keys_query_.value(1).toString()));
    bad_keys_query_.finish();
    for (QSqlQuery& q : deletes_)
        q.exec();
    changes_ = Changes();
    return true;
}

Sandbox& Current_Sandbox()
{
    if (current)
        return *current;
    static Sandbox process;
    return process;
}

} // namespace vex::fuzz
