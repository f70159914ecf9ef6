#pragma once
// The drawing surface of every graph: one QPainter on any paint device (a
// window, a printer or PDF page, an image), seen through a logical
// coordinate system of twips (1/1440 inch) laid over a target rectangle.
// The graph code draws with the operations the picture controls and the
// printer always offered (Line, boxes, DrawWidth, DrawStyle, FontSize,
// TextWidth, CurrentX/CurrentY and Print), so one routine draws on all of
// them and only the proportions differ.
#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRectF>
#include <cstdint>

namespace vex {

// A colour as the system writes it, 0x00BBGGRR; kWindowText is the
// system's window text colour.
inline constexpr uint32_t kWindowText = 0x80000008;
QColor Vb_Color(uint32_t value);

class Graph_Surface {
public:
    // target is in the painter's coordinates; its size in twips follows the
    // device's logical resolution (15 twips a pixel at 96 dpi). screen tells
    // a window from paper, where some colours differ. The painter's state is
    // restored when the surface goes.
    Graph_Surface(QPainter& painter, const QRectF& target, bool screen);
    ~Graph_Surface();
    Graph_Surface(const Graph_Surface&) = delete;
    Graph_Surface& operator=(const Graph_Surface&) = delete;

    float ScaleWidth() const { return scaleWidth_; }
    float ScaleHeight() const { return scaleHeight_; }
    bool Screen() const { return screen_; }
    // Twips of one pixel of the device (at most 1/150 inch on fine devices),
    // the unit of DrawWidth.
    float Pixel() const { return pixel_; }

    int DrawWidth = 1; // pixels
    int DrawMode = 13; // 13 copy pen: the only mode the graphs use
    int DrawStyle = 0; // 0 solid, 2 dotted
    void Set_FontSize(double points);
    double FontSize() const { return fontSize_; }
    // The face by its name ("바탕" on paper); the program's own face until set.
    void Set_FontName(const QString& name);
    QString FontName() const { return font_.family(); }
    void Set_FontBold(bool bold);
    bool FontBold() const { return font_.bold(); }
    float CurrentX = 0;
    float CurrentY = 0;

    void Line(float x1, float y1, float x2, float y2, uint32_t color = kWindowText);
    void Box(float x1, float y1, float x2, float y2, uint32_t color = kWindowText);
    void Filled_Box(float x1, float y1, float x2, float y2, uint32_t color);
    float TextWidth(const QString& text) const;
    float TextHeight(const QString& text) const;
    // Text with its top left at CurrentX, CurrentY; then, as a printed line
    // does, CurrentX goes back to 0 and CurrentY one line down.
    void Print(const QString& text, uint32_t color = kWindowText);

    QPainter& Painter() { return painter_; }

private:
    void Use_Pen(uint32_t color);

    QPainter& painter_;
    bool screen_;
    float scaleWidth_ = 0;
    float scaleHeight_ = 0;
    float pixel_ = 15;
    double fontSize_ = 8;
    QFont font_;
};

} // namespace vex
