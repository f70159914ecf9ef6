#pragma once
// The pages of one printed report: the painter on the printer's device, the
// graph surface over its printable area in twips (the printer's own scale,
// so that the graph geometry works unchanged on paper), the face "바탕",
// and the ruled rows the forms on paper are made of.
#include "analysis/Graph_Surface.h"

#include <QPainter>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

class QPagedPaintDevice;

namespace vex {

class Report_Printer;

// The face every report prints in; mapped to an installed Korean serif face.
extern const QString kReportFont; // "바탕"

class Report_Page {
public:
    // The common opening: A4 in the orientation, the document titled, the
    // face "바탕". Throws RunTimeError when the device can't be opened.
    Report_Page(Report_Printer& printer, const QString& title, bool landscape);
    ~Report_Page();
    Report_Page(const Report_Page&) = delete;
    Report_Page& operator=(const Report_Page&) = delete;

    Graph_Surface& S() { return *surface_; }
    float W() const { return surface_->ScaleWidth(); }
    float H() const { return surface_->ScaleHeight(); }
    // One line of the present font: the height of "AAA".
    float Pitch() const { return surface_->TextHeight(QStringLiteral("AAA")); }
    void Font(double points, bool bold = false);

    // The title, FontSize 20 and bold, centred at y; answers the y below it.
    float Title(const QString& title, float y = 0);
    // "출력일 : yyyy.MM.dd" at the left and the company's name at the
    // right (at right, or the page's edge), on the line at y.
    void Print_Date(float y, float right = -1);

    void Text(float x, float y, const QString& text);
    void Text_Centre(float x1, float x2, float y, const QString& text);
    void Text_Right(float x2, float y, const QString& text);
    // A ruled row from y to y + h: a box around it, a rule at every edge
    // between (edges from the left edge to the right, one more than texts),
    // each text centred in its cell (left-aligned with centre false).
    void Row(float y, float h, const std::vector<float>& edges, const QStringList& texts, bool centre = true);
    void Box(float x1, float y1, float x2, float y2);

    // The next sheet; the surface stays with its scale.
    void New_Page();
    int Page_Count() const { return pages_; }
    // Ends the painter and the document; throws RunTimeError when the pages
    // did not get out. True when they did.
    bool Finish();

private:
    bool End();

    Report_Printer& printer_;
    QPagedPaintDevice* device_ = nullptr;
    QPainter painter_;
    std::unique_ptr<Graph_Surface> surface_;
    int pages_ = 1;
    bool ended_ = false;
};

// Edges of cells as fractions of a width from x (0 and 1 included).
std::vector<float> Edges(float x, float width, std::initializer_list<float> fractions);

} // namespace vex
