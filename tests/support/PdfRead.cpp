#include "support/PdfRead.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>

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

QString Wait_For_Cups_Pdf(qint64 sentMs, int timeoutMs)
{
    const QDir out(qEnvironmentVariable("VEX_TEST_CUPS_OUT"));
    const qint64 until = QDateTime::currentMSecsSinceEpoch() + timeoutMs;
    while (QDateTime::currentMSecsSinceEpoch() < until) {
        // cups-pdf writes under its own name and closes the file at the end:
        // a file is taken once its size holds still.
        const QFileInfoList files = out.entryInfoList({QStringLiteral("*.pdf")}, QDir::Files, QDir::Time);
        for (const QFileInfo& f : files) {
            if (f.lastModified().toMSecsSinceEpoch() + 1000 < sentMs)
                continue;
            const qint64 size = f.size();
            QThread::msleep(300);
            if (size > 0 && QFileInfo(f.filePath()).size() == size && Pdf_Pages(f.filePath()) > 0)
                return f.filePath();
        }
        QThread::msleep(200);
    }
    return {};
}

} // namespace vex::test
