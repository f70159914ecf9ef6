#pragma once
// A paint device that keeps only the texts drawn on it, each with the box
// it covers on the device (96 dpi pixels), so that a test can ask whether
// labels run into each other or into a plot. Lines and fills are dropped.
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QRectF>
#include <QString>
#include <QTextItem>
#include <memory>
#include <vector>

namespace vex::test {

class Text_Recorder : public QPaintDevice {
public:
    struct Item {
        QString text;
        QRectF box;
    };
    explicit Text_Recorder(QSize size) : size_(size), engine_(std::make_unique<Engine>(this)) {}
    QPaintEngine* paintEngine() const override { return engine_.get(); }
    const std::vector<Item>& Items() const { return items_; }

protected:
    int metric(PaintDeviceMetric m) const override
    {
        switch (m) {
        case PdmWidth: return size_.width();
        case PdmHeight: return size_.height();
        case PdmWidthMM: return size_.width() * 254 / 960;
        case PdmHeightMM: return size_.height() * 254 / 960;
        case PdmDpiX: case PdmDpiY: case PdmPhysicalDpiX: case PdmPhysicalDpiY: return 96;
        case PdmDepth: return 32;
        case PdmNumColors: return 1 << 24;
        case PdmDevicePixelRatio: return 1;
        case PdmDevicePixelRatioScaled: return int(QPaintDevice::devicePixelRatioFScale());
        default: return 0;
        }
    }

private:
    class Engine : public QPaintEngine {
    public:
        explicit Engine(Text_Recorder* owner) : QPaintEngine(AllFeatures), owner_(owner) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawLines(const QLineF*, int) override {}
        void drawRects(const QRectF*, int) override {}
        void drawTextItem(const QPointF& p, const QTextItem& t) override
        {
            const QRectF local(p.x(), p.y() - t.ascent(), t.width(), t.ascent() + t.descent());
            owner_->items_.push_back({t.text(), painter()->combinedTransform().mapRect(local)});
        }
        Type type() const override { return User; }

    private:
        Text_Recorder* owner_;
    };
    friend class Engine;

    QSize size_;
    std::unique_ptr<Engine> engine_;
    std::vector<Item> items_;
};

} // namespace vex::test
