#include "forms/Grid_View.h"

#include "analysis/Graph_Surface.h"
#include "analysis/Status_Grids.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "forms/Report_Print.h"
#include "store/Cls_DB.h"

#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTableWidget>
#include <algorithm>

namespace vex::forms {

QTableWidget* New_Grid(QWidget* parent, const char* objectName)
{
    auto* grid = new QTableWidget(parent);
    grid->setObjectName(QLatin1String(objectName));
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->verticalHeader()->hide();
    return grid;
}

QDateEdit* New_Day_Edit(QWidget* parent, const char* objectName)
{
    auto* edit = new QDateEdit(parent);
    edit->setObjectName(QLatin1String(objectName));
    edit->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    edit->setCalendarPopup(true);
    return edit;
}

QPushButton* New_Button(QWidget* parent, const QString& caption, const char* objectName)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QLatin1String(objectName));
    return button;
}

void Grid_Window_Layout(QWidget* window, const std::vector<std::pair<QString, QWidget*>>& fields,
                        const std::vector<QPushButton*>& buttons, QTableWidget* grid)
{
    auto* top = new QHBoxLayout;
    for (const auto& [label, field] : fields) {
        top->addWidget(new QLabel(label, window));
        top->addWidget(field);
    }
    top->addStretch();
    for (QPushButton* b : buttons)
        top->addWidget(b);
    auto* box = new QVBoxLayout(window);
    box->addLayout(top);
    box->addWidget(grid, 1);
}

QDate Newest_Stored_Day(int16_t errCode)
{
    QDate day = QDate::currentDate();
    Guarded(errCode, [&] {
        const QString newest = Newest_Trip_Day(*G().DB);
        if (newest.isEmpty())
            return;
        const QDate stored = QDate::fromString(QStringLiteral("20") + newest, QStringLiteral("yyyyMMdd"));
        if (stored.isValid())
            day = stored;
    });
    return day;
}

void Fill_Grid(QTableWidget* grid, const Grid_Table& table, const QStringList& extraHeads)
{
    grid->clear();
    const QStringList heads = table.heads + extraHeads;
    grid->setColumnCount(int(heads.size()));
    grid->setHorizontalHeaderLabels(heads);
    grid->setRowCount(int(table.rows.size()));
    for (int r = 0; r < int(table.rows.size()); ++r) {
        const QStringList& cells = table.rows[size_t(r)];
        for (int c = 0; c < cells.size(); ++c)
            grid->setItem(r, c, new QTableWidgetItem(cells[c]));
        for (int e = 0; e < extraHeads.size(); ++e)
            grid->setItem(r, int(cells.size()) + e, new QTableWidgetItem(extraHeads[e]));
    }
    grid->resizeColumnsToContents();
}

void Print_Grid(QWidget* parent, const QString& title, const QString& subtitle, const Grid_Table& table)
{
    Print_With_Dialog(parent, true, [&](QPagedPaintDevice& device) {
        QPainter p(&device);
        Graph_Surface s(p, QRectF(0, 0, device.width(), device.height()), false);
        const float left = s.ScaleWidth() * 0.03f, right = s.ScaleWidth() * 0.97f;
        // Columns as wide as their longest text, spread over the page.
        s.Set_FontSize(9);
        std::vector<float> widths(size_t(table.heads.size()), 0.f);
        for (int c = 0; c < table.heads.size(); ++c) {
            widths[size_t(c)] = s.TextWidth(table.heads[c]);
            for (const QStringList& row : table.rows)
                if (c < row.size())
                    widths[size_t(c)] = std::max(widths[size_t(c)], s.TextWidth(row[c]));
        }
        float total = 0;
        for (float w : widths)
            total += w;
        std::vector<float> edges{left};
        for (float w : widths)
            edges.push_back(edges.back() + (total > 0 ? w / total : 0) * (right - left));
        const float pitch = s.TextHeight(QStringLiteral("AAA")) * 1.4f;

        auto head = [&] {
            Page_Title(s, title);
            s.Set_FontSize(9);
            s.CurrentX = left;
            s.Print(subtitle);
            s.CurrentY += pitch * 0.5f;
        };
        auto row = [&](const QStringList& cells) {
            const float y = s.CurrentY;
            s.Line(left, y, right, y);
            s.Line(left, y + pitch, right, y + pitch);
            for (size_t e = 0; e < edges.size(); ++e)
                s.Line(edges[e], y, edges[e], y + pitch);
            for (int c = 0; c < cells.size() && size_t(c) + 1 < edges.size(); ++c) {
                s.CurrentX = edges[size_t(c)] + (edges[size_t(c) + 1] - edges[size_t(c)] - s.TextWidth(cells[c])) / 2;
                s.CurrentY = y + (pitch - s.TextHeight(cells[c])) / 2;
                s.Print(cells[c]);
            }
            s.CurrentY = y + pitch;
        };
        head();
        row(table.heads);
        for (const QStringList& cells : table.rows) {
            if (s.CurrentY + pitch > s.ScaleHeight()) {
                device.newPage();
                s.CurrentY = 0;
                row(table.heads);
            }
            row(cells);
        }
    });
}

} // namespace vex::forms
