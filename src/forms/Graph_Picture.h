#pragma once
// The picture of a view: what the graph code draws, kept as an image of the
// widget's size (at the screen's pixel ratio, so it stays sharp) and drawn
// again only when the picture changes or the widget is resized; the cursor
// line is laid over it, so that a cursor move repaints nothing else.
// Positions are in the surface's twips, as the graph code counts them.
#include <QImage>
#include <QWidget>
#include <functional>

namespace vex {
class Graph_Surface;
}

namespace vex::forms {

class Graph_Picture : public QWidget {
    Q_OBJECT
public:
    explicit Graph_Picture(QWidget* parent = nullptr);

    // Draws the picture on a surface of this widget's size.
    std::function<void(Graph_Surface&)> Draw;
    // Asks for the picture to be drawn again at the next paint.
    void Invalidate();
    // The size in twips a surface of this widget has.
    float Scale_Width() const;
    float Scale_Height() const;

    // The cursor, from top to bottom at x; a negative x hides it.
    void Set_Cursor(float x, float top, float bottom);
    float Cursor_X() const { return cursorX_; }

    // A click (at its release) at x, y in twips.
    std::function<void(float x, float y)> Clicked;
    std::function<void()> Resized;

    // The picture as it stands, drawn now if it must be.
    const QImage& Image();

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

private:
    float Twips_Per_Pixel() const;

    QImage image_;
    bool stale_ = true;
    float cursorX_ = -1, cursorTop_ = 0, cursorBottom_ = 0;
};

} // namespace vex::forms
