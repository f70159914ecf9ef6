#include "reports/Report_Page.h"

#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "reports/Report_Printer.h"

#include <QDate>
#include <QFont>
#include <QPagedPaintDevice>

namespace vex {

const QString kReportFont = QStringLiteral("바탕");

namespace {

// "바탕" is the Korean serif face of the offices the program came from;
// here the Noto Serif CJK faces stand in for it.
void Map_Report_Font()
{
    static const bool mapped = [] {
        QFont::insertSubstitutions(kReportFont, {QStringLiteral("Noto Serif CJK KR"), QStringLiteral("Noto Serif KR"),
                                                 QStringLiteral("Noto Serif CJK JP"), QStringLiteral("Noto Serif CJK SC"),
                                                 QStringLiteral("Noto Sans CJK KR")});
        return true;
    }();
    (void)mapped;
}

} // namespace

Report_Page::Report_Page(Report_Printer& printer, const QString& title, bool landscape) : printer_(printer)
{
    Map_Report_Font();
    device_ = printer_.Begin_Doc(title, landscape);
    if (device_ && !painter_.begin(device_) && printer_.Error.isEmpty())
        printer_.Error = QStringLiteral("the device refused to start the document");
    if (!device_ || !painter_.isActive()) {
        ended_ = true;
        throw RunTimeError(printer_.Error.isEmpty() ? QStringLiteral("no document") : printer_.Error);
    }
    // The printable area in the printer's own scale of twips.
    surface_ = std::make_unique<Graph_Surface>(painter_, QRectF(0, 0, device_->width(), device_->height()), false);
    surface_->Set_FontName(kReportFont);
    Font(10);
}

Report_Page::~Report_Page()
{
    if (!ended_)
        End();
}

void Report_Page::Font(double points, bool bold)
{
    surface_->Set_FontSize(points);
    surface_->Set_FontBold(bold);
}

float Report_Page::Title(const QString& title, float y)
{
    Font(20, true);
    Graph_Surface& s = S();
    s.CurrentX = (s.ScaleWidth() - s.TextWidth(title)) / 2;
    s.CurrentY = y;
    s.Print(title);
    const float below = s.CurrentY;
    Font(10);
    return below;
}

void Report_Page::Print_Date(float y, float right)
{
    const QDate today = QDate::currentDate();
    Text(0, y,
         LoadResString(802) + QStringLiteral(" : ") +
             QStringLiteral("%1.%2.%3").arg(today.year()).arg(today.month(), 2, 10, QLatin1Char('0')).arg(today.day(), 2, 10, QLatin1Char('0')));
    const Cls_Config* cfg = G().Config.get();
    if (cfg && !cfg->U_Name.isEmpty())
        Text_Right(right < 0 ? W() : right, y, cfg->U_Name);
}

void Report_Page::Text(float x, float y, const QString& text)
{
    S().CurrentX = x;
    S().CurrentY = y;
    S().Print(text);
}

void Report_Page::Text_Centre(float x1, float x2, float y, const QString& text)
{
    Text((x1 + x2 - S().TextWidth(text)) / 2, y, text);
}

void Report_Page::Text_Right(float x2, float y, const QString& text)
{
    Text(x2 - S().TextWidth(text), y, text);
}

void Report_Page::Box(float x1, float y1, float x2, float y2)
{
    S().DrawWidth = 1;
    S().DrawStyle = 0;
    S().Box(x1, y1, x2, y2);
}

void Report_Page::Row(float y, float h, const std::vector<float>& edges, const QStringList& texts, bool centre)
{
    if (edges.size() < 2)
        return;
    Box(edges.front(), y, edges.back(), y + h);
    for (size_t i = 1; i + 1 < edges.size(); ++i)
        S().Line(edges[i], y, edges[i], y + h);
    const float top = y + (h - S().TextHeight(QStringLiteral("AAA"))) / 2;
    const float pad = S().TextWidth(QStringLiteral(" "));
    for (int i = 0; i < texts.size() && size_t(i) + 1 < edges.size(); ++i) {
        if (texts[i].isEmpty())
            continue;
        if (centre)
            Text_Centre(edges[size_t(i)], edges[size_t(i) + 1], top, texts[i]);
        else
            Text(edges[size_t(i)] + pad, top, texts[i]);
    }
}

void Report_Page::New_Page()
{
    device_->newPage();
    ++pages_;
    S().CurrentX = 0;
    S().CurrentY = 0;
}

bool Report_Page::End()
{
    ended_ = true;
    surface_.reset();
    if (painter_.isActive())
        painter_.end();
    return device_ && printer_.End_Doc();
}

bool Report_Page::Finish()
{
    if (!End())
        throw RunTimeError(printer_.Error);
    return true;
}

std::vector<float> Edges(float x, float width, std::initializer_list<float> fractions)
{
    std::vector<float> edges;
    for (const float f : fractions)
        edges.push_back(x + width * f);
    return edges;
}

} // namespace vex
