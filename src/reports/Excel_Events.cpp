// The event reports: one row a stored day, its event list walked item by
// item across the groups of the row; a full row continues on the next one
// in the record row's format.
#include "reports/Excel_Report.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

namespace vex {

namespace {

using namespace excel_detail;

// How one kind of list is laid out in its table and on its sheet.
struct Event_Layout {
    const char* report;     // file and template base name
    const char* templ;      // template file name, case as shipped
    const char* table;
    int16_t errCode;
    bool saysMissing;       // a missing template is told to the user
    int itemWidth;          // characters of one item of D_F2
    int groups;             // groups across a row
    int firstRow;           // the record row of the template
    bool swappedHead;       // car and driver above the period
};

const Event_Layout kOverspeed{"overspeed", "overspeed.XLTX", "D_D9", 1065, false, 6, 6, 6, false};
const Event_Layout kLongOver{"longover", "longover.XLTX", "D_D6", 1066, false, 18, 3, 5, false};
const Event_Layout kIdle{"idle", "idle.XLTX", "D_DI", 1067, false, 18, 3, 5, false};
const Event_Layout kBrake{"brake", "brake.xltx", "D_D2", 1070, true, 10, 1, 5, true};
const Event_Layout kAccel{"quick_speed", "quick_speed.xltx", "D_D4", 1071, true, 10, 1, 5, true};

// "&h" and two hex digits, as a number; a broken pair stays as its text.
void Put_Hex(Xlsx_Book& book, int col, int row, const QString& hex)
{
    bool ok = false;
    const int v = hex.toInt(&ok, 16);
    if (ok)
        book.Set_Number(col, row, v);
    else
        book.Set_Text(col, row, hex);
}

// One item into the group starting at column col.
void Put_Item(Xlsx_Book& book, const Event_Layout& k, int col, int row, const QString& item)
{
    if (k.itemWidth == 6) { // HHmm + speed
        book.Set_Text(col, row, Hh_Mm(item.left(4)));
        Put_Hex(book, col + 1, row, item.mid(4, 2));
    } else if (k.itemWidth == 18) { // start, end, duration
        book.Set_Text(col, row, Hh_Mm_Ss(item.left(6)));
        book.Set_Text(col + 1, row, Hh_Mm_Ss(item.mid(6, 6)));
        book.Set_Text(col + 2, row, Hh_Mm_Ss(item.mid(12, 6)));
    } else { // time, speed before, speed after
        book.Set_Text(col, row, Hh_Mm_Ss(item.left(6)));
        Put_Hex(book, col + 1, row, item.mid(6, 2));
        Put_Hex(book, col + 2, row, item.mid(8, 2));
    }
}

int Group_Width(const Event_Layout& k)
{
    return k.itemWidth == 6 ? 2 : 3;
}

void Put_Event_Captions(Xlsx_Book& book, const Event_Layout& k)
{
    const int step = Group_Width(k);
    if (&k == &kOverspeed) {
        book.Set_Text(QStringLiteral("A4"), LoadResString(837));
        for (int g = 0; g < k.groups; ++g) {
            book.Set_Text(2 + g * step, 4, LoadResString(1154));
            book.Set_Text(2 + g * step, 5, LoadResString(849));
            book.Set_Text(3 + g * step, 5, LoadResString(818));
        }
    } else if (&k == &kLongOver || &k == &kIdle) {
        const bool idle = &k == &kIdle;
        book.Set_Text(QStringLiteral("A4"), idle ? QStringLiteral("운행일") : LoadResString(837));
        for (int g = 0; g < k.groups; ++g) {
            book.Set_Text(2 + g * step, 4, idle ? QStringLiteral("IDLE 시작시간") : LoadResString(1299));
            book.Set_Text(3 + g * step, 4, idle ? QStringLiteral("IDLE 종료시간") : LoadResString(1300));
            book.Set_Text(4 + g * step, 4, QStringLiteral("지속시간"));
        }
    } else if (&k == &kBrake) {
        book.Set_Text(QStringLiteral("A4"), LoadResString(837));
        book.Set_Text(QStringLiteral("B4"), LoadResString(814));
        book.Set_Text(QStringLiteral("C4"), LoadResString(815));
        book.Set_Text(QStringLiteral("D4"), LoadResString(816));
    } else {
        book.Set_Text(QStringLiteral("A4"), LoadResString(837));
        book.Set_Text(QStringLiteral("B4"), QStringLiteral("시간"));
        book.Set_Text(QStringLiteral("C4"), QStringLiteral("직전속도"));
        book.Set_Text(QStringLiteral("D4"), QStringLiteral("직후속도"));
    }
}

void Put_Head(Xlsx_Book& book, const Event_Layout& k, Cls_DB& db, const Excel_Selection& sel)
{
    const QString driver = sel.driver + QStringLiteral(" / ") + Driver_Name(db, sel.driver);
    const QString car = sel.car + QStringLiteral(" / ") + Car_Name(db, sel.car);
    if (k.swappedHead) {
        book.Set_Text(QStringLiteral("A2"), LoadResString(632));
        book.Set_Text(QStringLiteral("B2"), car);
        book.Set_Text(QStringLiteral("C2"), LoadResString(633));
        book.Set_Text(QStringLiteral("D2"), driver);
        book.Set_Text(QStringLiteral("A3"), LoadResString(1214));
        book.Set_Text(QStringLiteral("B3"), Date_Dash(sel.from));
        book.Set_Text(QStringLiteral("C3"), LoadResString(1215));
        book.Set_Text(QStringLiteral("D3"), Date_Dash(sel.to));
        return;
    }
    book.Set_Text(QStringLiteral("A2"), LoadResString(1214));
    book.Set_Text(QStringLiteral("B2"), Date_Dash(sel.from));
    book.Set_Text(QStringLiteral("D2"), LoadResString(1215));
    book.Set_Text(QStringLiteral("E2"), Date_Dash(sel.to));
    book.Set_Text(QStringLiteral("A3"), LoadResString(632));
    book.Set_Text(QStringLiteral("B3"), car);
    book.Set_Text(QStringLiteral("D3"), LoadResString(633));
    book.Set_Text(QStringLiteral("E3"), driver);
}

Excel_Result Event_Report(const Event_Layout& k, Cls_DB& db, const QString& appDir, const Excel_Selection& sel,
                          const QString& out)
{
    Recordset rs = db.DB_RSet_D_D(
        QStringLiteral("SELECT * FROM %1 WHERE (RIGHT(D_F1,6)) >=? AND (RIGHT(D_F1,6)) <= ? AND  (LEFT(D_F1,6)) = ? "
                       "AND  (MID(D_F1,7,6)) = ? ORDER BY D_F1").arg(QLatin1String(k.table)),
        {sel.from, sel.to, sel.car, sel.driver});
    if (rs.RecordCount() < 1)
        return No_Data();
    Xlsx_Book book;
    if (!Excel_Open(book, QStringLiteral("list"), Excel_Template_Path(appDir, QLatin1String(k.templ))))
        return Missing_Template(k.saysMissing, k.errCode, book.Error());
    Put_Event_Captions(book, k);
    Put_Head(book, k, db, sel);

    const int step = Group_Width(k);
    int row = k.firstRow;
    for (rs.MoveFirst(); !rs.EOF_(); rs.MoveNext()) {
        const QString day = Date_Dash(rs.Text(QStringLiteral("D_F1")).right(6));
        const QString list = rs.Text(QStringLiteral("D_F2"));
        book.Copy_Row_Format(k.firstRow, row);
        book.Set_Text(1, row, day);
        int group = 0;
        for (int at = 0; at + k.itemWidth <= list.size(); at += k.itemWidth) {
            const QString item = list.mid(at, k.itemWidth);
            if (item.startsWith(QStringLiteral("000000")))
                break;
            if (group == k.groups) {
                ++row;
                book.Copy_Row_Format(k.firstRow, row);
                book.Set_Text(1, row, day);
                group = 0;
            }
            Put_Item(book, k, 2 + group * step, row, item);
            ++group;
        }
        ++row;
    }
    return Save(book, out.isEmpty() ? Excel_Report_Path(appDir, QLatin1String(k.report), sel) : out, k.errCode);
}

} // namespace

Excel_Result CAL_RECORD_DATA(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kOverspeed.errCode, [&] { return Event_Report(kOverspeed, db, appDir, sel, out); });
}

Excel_Result CAL_LONG_OVER(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kLongOver.errCode, [&] { return Event_Report(kLongOver, db, appDir, sel, out); });
}

Excel_Result CAL_SECTION_RUN(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kIdle.errCode, [&] { return Event_Report(kIdle, db, appDir, sel, out); });
}

Excel_Result CAL_QUICK_BRAKE(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kBrake.errCode, [&] { return Event_Report(kBrake, db, appDir, sel, out); });
}

Excel_Result CAL_TIME_SPEED(Cls_DB& db, const QString& appDir, const Excel_Selection& sel, const QString& out)
{
    return Trapped(kAccel.errCode, [&] { return Event_Report(kAccel, db, appDir, sel, out); });
}

} // namespace vex
