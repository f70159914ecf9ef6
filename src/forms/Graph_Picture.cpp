#include "forms/Graph_Picture.h"

#include "analysis/Graph_Surface.h"

#include <QMouseEvent>
#include <QPainter>
#include <cmath>

namespace vex::forms {

Graph_Picture::Graph_Picture(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Picture2"));
    setMinimumSize(640, 360);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void Graph_Picture::Invalidate()
{
    stale_ = true;
    update();
}

// The picture is an image of 96 dots an inch, whatever the screen's
// resolution: 15 twips a pixel of the widget.
float Graph_Picture::Twips_Per_Pixel() const
{
    return 15.0f;
}

float Graph_Picture::Scale_Width() const
{
    return std::floor(float(width()) * Twips_Per_Pixel());
}

float Graph_Picture::Scale_Height() const
{
    return std::floor(float(height()) * Twips_Per_Pixel());
}

void Graph_Picture::Set_Cursor(float x, float top, float bottom)
{
    cursorX_ = x;
    cursorTop_ = top;
    cursorBottom_ = bottom;
    update();
}

const QImage& Graph_Picture::Image()
{
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    if (stale_ || image_.size() != pixels) {
        image_ = QImage(pixels, QImage::Format_RGB32);
        image_.setDevicePixelRatio(ratio);
        image_.setDotsPerMeterX(3780);
        image_.setDotsPerMeterY(3780);
        image_.fill(Qt::white);
        if (Draw) {
            QPainter p(&image_);
            Graph_Surface s(p, QRectF(QPointF(0, 0), QSizeF(size())), true);
            Draw(s);
        }
        stale_ = false;
    }
    return image_;
}

void Graph_Picture::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.drawImage(0, 0, Image());
    if (cursorX_ >= 0) {
        const float k = Twips_Per_Pixel();
        p.setPen(QPen(Qt::black, 1));
        p.drawLine(QLineF(cursorX_ / k, cursorTop_ / k, cursorX_ / k, cursorBottom_ / k));
    }
}

void Graph_Picture::resizeEvent(QResizeEvent* e)
{
    QWidget::resizeEvent(e);
    stale_ = true;
    if (Resized)
        Resized();
}

void Graph_Picture::mouseMoveEvent(QMouseEvent* e)
{
    setCursor(Qt::CrossCursor);
    QWidget::mouseMoveEvent(e);
}

void Graph_Picture::mouseReleaseEvent(QMouseEvent* e)
{
    if (Clicked && e->button() == Qt::LeftButton) {
        const float k = Twips_Per_Pixel();
        Clicked(float(e->position().x()) * k, float(e->position().y()) * k);
    }
}

} // namespace vex::forms
