#include "forms/frm_DriverTrend.h"

#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Excel_Show.h"
#include "forms/Msg_Box.h"
#include "forms/Report_Print.h"
#include "registers/Register_Lookup.h"
#include "reports/Cls_Report.h"
#include "reports/Report_Trust.h"
#include "store/Cls_DB.h"

#include <QDate>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <map>

namespace vex::forms {

// Average marks month by month: every driver a thin grey line, the fleet's
// average dashed, the chosen driver bold.
class Trend_Chart : public QWidget {
public:
    explicit Trend_Chart(QWidget* parent) : QWidget(parent) { setMinimumHeight(180); }

    void Set(const std::vector<Driver_Month>& rows, const QStringList& months, const QString& chosen)
    {
        months_ = months;
        chosen_ = chosen;
        marks_.clear();
        for (const Driver_Month& m : rows)
            marks_[m.driver][m.month] = m.averageMark;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        p.fillRect(rect(), Qt::white);
        const QRectF area = QRectF(rect()).adjusted(40, 10, -30, -24);
        p.setPen(Qt::black);
        p.drawRect(area);
        for (int mark = 0; mark <= 100; mark += 25) {
            const double y = area.bottom() - area.height() * mark / 100.0;
            p.setPen(QColor(220, 220, 220));
            p.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
            p.setPen(Qt::black);
            p.drawText(QRectF(0, y - 8, 36, 16), Qt::AlignRight | Qt::AlignVCenter, QString::number(mark));
        }
        const int n = int(months_.size());
        if (n == 0)
            return;
        auto x = [&](int i) { return n == 1 ? area.center().x() : area.left() + area.width() * i / (n - 1); };
        for (int i = 0; i < n; ++i) {
            const double left = std::clamp(x(i) - 30, 0.0, width() - 60.0);
            p.drawText(QRectF(left, area.bottom() + 4, 60, 18), Qt::AlignCenter, months_[i]);
        }
        auto line = [&](const std::map<QString, double>& byMonth, const QPen& pen) {
            p.setPen(pen);
            QPointF last;
            bool has = false;
            for (int i = 0; i < n; ++i) {
                const auto it = byMonth.find(months_[i]);
                if (it == byMonth.end()) {
                    has = false;
                    continue;
                }
                const QPointF at(x(i), area.bottom() - area.height() * std::clamp(it->second, 0.0, 100.0) / 100.0);
                if (has)
                    p.drawLine(last, at);
                p.drawEllipse(at, 2, 2);
                last = at;
                has = true;
            }
        };
        std::map<QString, std::pair<double, int>> fleet;
        for (const auto& [driver, byMonth] : marks_) {
            for (const auto& [month, mark] : byMonth) {
                fleet[month].first += mark;
                ++fleet[month].second;
            }
            if (driver != chosen_)
                line(byMonth, QPen(QColor(190, 190, 190), 1));
        }
        std::map<QString, double> average;
        for (const auto& [month, sum] : fleet)
            average[month] = sum.first / sum.second;
        line(average, QPen(Qt::darkBlue, 2, Qt::DashLine));
        if (marks_.count(chosen_))
            line(marks_[chosen_], QPen(Qt::red, 3));
    }

private:
    QStringList months_;
    QString chosen_;
    std::map<QString, std::map<QString, double>> marks_;
};

namespace {

bool Is_Month(const QString& yymm)
{
    return yymm.size() == 4 && Is_Day(yymm + QStringLiteral("01"));
}

QStringList Months(const QString& from, const QString& to)
{
    QStringList out;
    for (QDate d(2000 + from.left(2).toInt(), from.mid(2).toInt(), 1);
         d.toString(QStringLiteral("yyMM")) <= to && out.size() < 240; d = d.addMonths(1))
        out << d.toString(QStringLiteral("yyMM"));
    return out;
}

} // namespace

frm_DriverTrend::frm_DriverTrend(QWidget* parent) : Vex_Form(QString::fromLatin1(kName), parent)
{
    setWindowTitle(LoadResString(5115));
    const QDate now = QDate::currentDate();
    txtFrom = new QLineEdit(now.addMonths(-2).toString(QStringLiteral("yyMM")), this);
    txtTo = new QLineEdit(now.toString(QStringLiteral("yyMM")), this);
    txtDriver = new QLineEdit(this);
    txtFrom->setMaxLength(4);
    txtTo->setMaxLength(4);
    txtDriver->setMaxLength(6);
    cmdSearch = new QPushButton(Lang_Text(QStringLiteral("조회"), QStringLiteral("Search")), this);
    cmdPrint = new QPushButton(Lang_Text(QStringLiteral("인쇄"), QStringLiteral("Print")), this);
    cmdExcel = new QPushButton(Lang_Text(QStringLiteral("엑셀"), QStringLiteral("Spreadsheet")), this);
    cmdExcel->setObjectName(QStringLiteral("cmdExcel"));
    cmdClose = new QPushButton(Lang_Text(QStringLiteral("종료"), QStringLiteral("Close")), this);
    Grid = new QTableWidget(this);
    Grid->setObjectName(QStringLiteral("Grid"));
    Grid->setColumnCount(10);
    Grid->setHorizontalHeaderLabels(Driver_Month_Heads());
    Grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    Grid->verticalHeader()->hide();
    Chart = new Trend_Chart(this);

    auto* filters = new QHBoxLayout;
    filters->addWidget(new QLabel(Lang_Text(QStringLiteral("기간 (YYMM)"), QStringLiteral("months (YYMM)")), this));
    filters->addWidget(txtFrom);
    filters->addWidget(txtTo);
    filters->addWidget(new QLabel(LoadResString(633), this));
    filters->addWidget(txtDriver);
    filters->addWidget(cmdSearch);
    filters->addStretch();
    filters->addWidget(cmdExcel);
    filters->addWidget(cmdPrint);
    filters->addWidget(cmdClose);
    auto* box = new QVBoxLayout(this);
    box->addLayout(filters);
    box->addWidget(Chart, 1);
    box->addWidget(Grid, 2);

    connect(cmdSearch, &QPushButton::clicked, this, [this] { Search(); });
    connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
    connect(cmdExcel, &QPushButton::clicked, this, [this] {
        Excel_Show(Excel_Driver_Trend(*G().DB, G().App_Dir, rows_, txtFrom->text(), txtTo->text()));
    });
    connect(cmdPrint, &QPushButton::clicked, this, [this] {
        Cls_Report report;
        Print_Report(this, report, [this](Cls_Report&, Report_Printer& printer) {
            return Report_Driver_Trend(printer, *G().DB, rows_, txtFrom->text(), txtTo->text());
        });
    });
    Search();
}

bool frm_DriverTrend::Search()
{
    const QString from = txtFrom->text().trimmed(), to = txtTo->text().trimmed();
    const QString driver = txtDriver->text().trimmed().toUpper();
    if (!Is_Month(from) || !Is_Month(to) || from > to || (!driver.isEmpty() && !Is_Code(driver))) {
        Msg_Box(Lang_Text(QStringLiteral("기간은 YYMM으로, 앞의 달이 뒤의 달보다 늦지 않게 입력하세요"),
                          QStringLiteral("Give the months as YYMM, the first not after the second")));
        return false;
    }
    if (!G().DB)
        return false;
    Cls_DB& db = *G().DB;
    try {
        rows_ = Driver_Trends(db, from, to);
    } catch (const RunTimeError& e) {
        Msg_Box(QString::fromUtf8(e.what()));
        return false;
    }
    Chart->Set(rows_, Months(from, to), driver);
    if (!driver.isEmpty())
        rows_.erase(std::remove_if(rows_.begin(), rows_.end(), [&](const Driver_Month& m) { return m.driver != driver; }),
                    rows_.end());
    Grid->setRowCount(int(rows_.size()));
    std::map<QString, QString> names;
    for (int r = 0; r < int(rows_.size()); ++r) {
        const Driver_Month& m = rows_[size_t(r)];
        if (!names.count(m.driver))
            names[m.driver] = Driver_Name_Of(db, m.driver);
        const QStringList cells = Driver_Month_Cells(m, names[m.driver]);
        for (int c = 0; c < cells.size(); ++c)
            Grid->setItem(r, c, new QTableWidgetItem(cells[c]));
    }
    Grid->resizeColumnsToContents();
    return true;
}

} // namespace vex::forms
