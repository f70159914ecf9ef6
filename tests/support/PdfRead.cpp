#include "support/PdfRead.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QEventLoop>
#include <QFile>
#include <QFileSystemWatcher>
#include <QTimer>

namespace vex::test {

namespace {

QString Run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(program, args);
    if (!p.waitForFinished(60000))
        return {};
    return QString::fromUtf8(p.readAllStandardOutput());
}

QString Info(const QString& path, const QString& key)
{
    static const QRegularExpression line(QStringLiteral("^([^:]+):\\s*(.*)$"));
    for (const QString& l : Run(QStringLiteral("pdfinfo"), {path}).split(QLatin1Char('\n'))) {
        const auto m = line.match(l);
        if (m.hasMatch() && m.captured(1) == key)
            return m.captured(2).trimmed();
    }
    return {};
}

} // namespace

QString Pdf_Text(const QString& path, int first, int last)
{
    QStringList args;
    if (first > 0)
        args << QStringLiteral("-f") << QString::number(first);
    if (last > 0)
        args << QStringLiteral("-l") << QString::number(last);
    args << path << QStringLiteral("-");
    return Run(QStringLiteral("pdftotext"), args);
}

int Pdf_Pages(const QString& path)
{
    return Info(path, QStringLiteral("Pages")).toInt();
}

QString Pdf_Page_Size(const QString& path)
{
    // "595 x 842 pts (A4)", "841.89 x 595.276 pts"
    const QString size = Info(path, QStringLiteral("Page size"));
    const double w = size.section(QLatin1Char(' '), 0, 0).toDouble();
    const double h = size.section(QLatin1Char(' '), 2, 2).toDouble();
    auto near = [](double a, double b) { return a > b - 1.5 && a < b + 1.5; };
    if (near(w, 595.28) && near(h, 841.89))
        return QStringLiteral("A4 portrait");
    if (near(w, 841.89) && near(h, 595.28))
        return QStringLiteral("A4 landscape");
    return size;
}

QString Cups_Printer(QString* reason)
{
    const QString name = qEnvironmentVariable("VEX_TEST_CUPS_PRINTER");
    if (name.isEmpty() && reason)
        *reason = QStringLiteral("no CUPS queue: the test script starts cupsd with a cups-pdf printer and sets "
                                 "VEX_TEST_CUPS_PRINTER (scripts/cups-server.sh); the printer path is not tested");
    return name;
}

namespace {

// cups-pdf has ghostscript write the PDF in place; ghostscript writes the
// cross-reference table and the closing "%%EOF" last, so a file that ends
// with it and reads as pages is whole.
bool Whole_Pdf(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly) || f.size() < 16)
        return false;
    f.seek(f.size() - 16);
    return f.read(16).contains("%%EOF") && Pdf_Pages(path) > 0;
}

} // namespace

QString Wait_For_Cups_Pdf(qint64 sentMs, int timeoutMs)
{
    // Told by the file system: a new file in the folder, each write to a
    // file of the job. The deadline only ends a wait for a job that never
    // comes.
    const QString folder = qEnvironmentVariable("VEX_TEST_CUPS_OUT");
    QFileSystemWatcher watcher({folder});
    QEventLoop loop;
    QString found;
    const auto look = [&] {
        const QFileInfoList files =
            QDir(folder).entryInfoList({QStringLiteral("*.pdf")}, QDir::Files, QDir::Time);
        for (const QFileInfo& f : files) {
            if (f.lastModified().toMSecsSinceEpoch() + 1000 < sentMs)
                continue;
            if (!watcher.files().contains(f.filePath()))
                watcher.addPath(f.filePath());
            if (Whole_Pdf(f.filePath())) {
                found = f.filePath();
                loop.quit();
                return;
            }
        }
    };
    QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &loop, look);
    QObject::connect(&watcher, &QFileSystemWatcher::fileChanged, &loop, look);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    look();
    if (found.isEmpty())
        loop.exec();
    return found;
}

} // namespace vex::test
