#include "cli/Graph_Output.h"

#include "analysis/Graph_Surface.h"

#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>

namespace vex::cli {

QString Take_Option(QStringList& args, const QString& name)
{
    const int i = int(args.indexOf(name));
    if (i < 0 || i + 1 >= args.size())
        return {};
    const QString value = args[i + 1];
    args.remove(i, 2);
    return value;
}

bool Number_Option(QStringList& args, const QString& name, int fallback, int low, int high, int& value,
                   const QList<int>& allowed)
{
    const QString text = Take_Option(args, name);
    if (text.isEmpty()) {
        value = fallback;
        return true;
    }
    bool ok = false;
    value = text.toInt(&ok);
    return ok && value >= low && value <= high && (allowed.isEmpty() || allowed.contains(value));
}

QString Take_Out_Path(QStringList& args)
{
    const QString out = Take_Option(args, QStringLiteral("--out"));
    return out.isEmpty() ? out : QFileInfo(out).absoluteFilePath();
}

bool Take_Output(QStringList& args, Graph_File& file, QString& reason)
{
    file.path = Take_Out_Path(args);
    const QString size = Take_Option(args, QStringLiteral("--size"));
    if (file.path.isEmpty()) {
        reason = QStringLiteral("--out FILE.png|FILE.pdf is needed");
        return false;
    }
    file.pdf = file.path.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive);
    if (!file.pdf && !file.path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        reason = QStringLiteral("--out names a .png or a .pdf file");
        return false;
    }
    if (!size.isEmpty()) {
        static const QRegularExpression wxh(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
        const auto m = wxh.match(size);
        if (!m.hasMatch() || m.captured(1).toInt() < 1 || m.captured(2).toInt() < 1) {
            reason = QStringLiteral("--size is WIDTHxHEIGHT in pixels, as 1920x1080");
            return false;
        }
        file.size = QSize(m.captured(1).toInt(), m.captured(2).toInt());
    }
    return true;
}

bool Render(const Graph_File& file, const QString& title, const QStringList& header,
            const std::function<void(Graph_Surface&, int16_t)>& draw, QString& reason)
{
    if (!file.pdf) {
        QImage image(file.size, QImage::Format_RGB32);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            Graph_Surface s(painter, image.rect(), true);
            draw(s, 0);
        }
        if (!image.save(file.path, "PNG")) {
            reason = QStringLiteral("cannot write ") + file.path;
            return false;
        }
        return true;
    }
    QPdfWriter pdf(file.path);
    pdf.setResolution(300);
    pdf.setTitle(title);
    pdf.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(10, 10, 10, 10),
                                  QPageLayout::Millimeter));
    QPainter painter;
    if (!painter.begin(&pdf)) {
        reason = QStringLiteral("cannot write ") + file.path;
        return false;
    }
    {
        Graph_Surface s(painter, QRectF(0, 0, pdf.width(), pdf.height()), false);
        s.Set_FontSize(20);
        s.CurrentX = (s.ScaleWidth() - s.TextWidth(title)) / 2;
        s.CurrentY = 0;
        s.Print(title);
        s.Set_FontSize(10);
        for (const QString& line : header) {
            s.CurrentX = s.ScaleWidth() * 0.0635f;
            s.Print(line);
        }
        draw(s, 2);
    }
    painter.end();
    return true;
}

} // namespace vex::cli
