#include "analysis/Graph_Surface.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintDevice>
#include <QPalette>
#include <algorithm>
#include <cmath>

namespace vex {

namespace {

constexpr double kTwipsPerInch = 1440;
constexpr double kTwipsPerPoint = 20;
// Pen widths are counted in pixels; on a printer or a PDF page a pixel is
// taken as 1/150 inch at least, so that lines stay visible on paper.
constexpr double kFinestPixel = kTwipsPerInch / 150;

} // namespace

QColor Vb_Color(uint32_t value)
{
    if (value == kWindowText) {
        if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
            return QGuiApplication::palette().color(QPalette::WindowText);
        return Qt::black;
    }
    return QColor(int(value & 0xFF), int((value >> 8) & 0xFF), int((value >> 16) & 0xFF));
}

Graph_Surface::Graph_Surface(QPainter& painter, const QRectF& target, bool screen)
    : painter_(painter), screen_(screen)
{
    painter_.save();
    const QPaintDevice* device = painter_.device();
    const double dpi = device && device->logicalDpiX() > 0 ? device->logicalDpiX() : 96.0;
    const double perUnit = kTwipsPerInch / dpi;
    scaleWidth_ = float(std::floor(target.width() * perUnit));
    scaleHeight_ = float(std::floor(target.height() * perUnit));
    pixel_ = float(std::max(perUnit, kFinestPixel));
    const QRect viewport = target.toAlignedRect();
    painter_.setViewport(viewport);
    painter_.setWindow(0, 0, std::max(1, int(scaleWidth_)), std::max(1, int(scaleHeight_)));
    painter_.setRenderHint(QPainter::Antialiasing, false);
    painter_.setRenderHint(QPainter::TextAntialiasing, true);
    font_ = QGuiApplication::font();
    Set_FontSize(8);
}

Graph_Surface::~Graph_Surface()
{
    painter_.restore();
}

void Graph_Surface::Set_FontSize(double points)
{
    fontSize_ = points;
    // The size in twips: the window's scale brings it to the device.
    font_.setPixelSize(std::max(1, int(std::lround(points * kTwipsPerPoint))));
    painter_.setFont(font_);
}

void Graph_Surface::Set_FontName(const QString& name)
{
    font_.setFamily(name);
    // A named face is a paper face. Without shaping, the CJK faces keep
    // their plain digits next to Latin letters, so that every glyph of a
    // printed document still tells its character (a PDF stays searchable).
    font_.setStyleStrategy(QFont::PreferNoShaping);
    painter_.setFont(font_);
}

void Graph_Surface::Set_FontBold(bool bold)
{
    font_.setBold(bold);
    painter_.setFont(font_);
}

void Graph_Surface::Use_Pen(uint32_t color)
{
    QPen pen(Vb_Color(color));
    pen.setWidthF(std::max(1, DrawWidth) * pixel_);
    pen.setStyle(DrawStyle == 2 ? Qt::DotLine : DrawStyle == 1 ? Qt::DashLine : Qt::SolidLine);
    pen.setCapStyle(Qt::FlatCap);
    painter_.setPen(pen);
}

void Graph_Surface::Line(float x1, float y1, float x2, float y2, uint32_t color)
{
    Use_Pen(color);
    painter_.drawLine(QLineF(x1, y1, x2, y2));
}

void Graph_Surface::Box(float x1, float y1, float x2, float y2, uint32_t color)
{
    Use_Pen(color);
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRect(QRectF(QPointF(x1, y1), QPointF(x2, y2)).normalized());
}

void Graph_Surface::Filled_Box(float x1, float y1, float x2, float y2, uint32_t color)
{
    painter_.fillRect(QRectF(QPointF(x1, y1), QPointF(x2, y2)).normalized(), Vb_Color(color));
}

float Graph_Surface::TextWidth(const QString& text) const
{
    return float(QFontMetricsF(font_).horizontalAdvance(text));
}

float Graph_Surface::TextHeight(const QString& /*text*/) const
{
    return float(QFontMetricsF(font_).height());
}

void Graph_Surface::Print(const QString& text, uint32_t color)
{
    const QFontMetricsF fm(font_);
    painter_.setPen(Vb_Color(color));
    painter_.drawText(QPointF(CurrentX, CurrentY + fm.ascent()), text);
    CurrentX = 0;
    CurrentY += float(fm.height());
}

} // namespace vex
