#include "analysis/Quick_Brake_Chart.h"

#include "analysis/Graph_Codes.h"
#include "analysis/Graph_Surface.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

#include <algorithm>

namespace vex {

namespace {

constexpr uint32_t kBrakeSpeedColor = 0xC00000;

// "MM월 dd일 HH시 mm분 ss초" of a stamp of ten digits.
QString Stamp_Text(const QString& digits)
{
    static const int parts[] = {1124, 1125, 1120, 1121, 1122};
    QStringList out;
    for (int i = 0; i < 5 && 2 * i + 2 <= digits.size(); ++i)
        out << digits.mid(2 * i, 2) + LoadResString(parts[i]);
    return out.join(QLatin1Char(' '));
}

} // namespace

bool Quick_Brake_Chart::Load(Cls_DB& db, const QString& car)
{
    bool found = false;
    Quick_Brack_Date.clear();
    Quick_Brack_Time.clear();
    Driver_Code.clear();
    Day.clear();
    Guarded(kErrSearch_Data, [&] {
        Recordset rs = db.DB_RSet_D_D(
            QStringLiteral("SELECT * FROM D_D2 WHERE LEFT(D_F1,6) = ? ORDER BY RIGHT(D_F1,6) DESC, D_F1 DESC"), {car});
        for (rs.MoveFirst(); !rs.EOF_() && !found; rs.MoveNext()) {
            const QString buffers = rs.Text(QStringLiteral("D_F3")).trimmed();
            if (buffers.isEmpty())
                continue;
            Quick_Brack_Date = buffers;
            Quick_Brack_Time = rs.Text(QStringLiteral("D_F4"));
            const QString key = rs.Text(QStringLiteral("D_F1"));
            Driver_Code = key.mid(6, 6);
            Day = key.right(6);
            found = true;
        }
        if (!found)
            Err_Proc(kErrSearch_Data, QStringLiteral("no quick-brake buffers of car %1 in D_D2").arg(car));
    });
    return found;
}

bool Quick_Brake_Chart::Empty_Slot(int slot) const
{
    auto Zeros = [](const QString& text) {
        for (QChar c : text)
            if (c != u'0' && c != u' ')
                return false;
        return true;
    };
    return Zeros(Quick_Brack_Date.mid((slot - 1) * 120, 120)) || Zeros(Quick_Brack_Time.mid((slot - 1) * 10, 10));
}

int16_t Quick_Brake_Chart::QB_Speed_Search(int n) const
{
    return n < 1 || n > int(BX_Count) ? 0 : speed_[size_t(n)];
}

void Quick_Brake_Chart::Quick_Brack_Graph(Graph_Surface& s, int slot)
{
    Guarded(kErrPicture_Base_Draw, [&] {
        speed_.fill(0);
        QB_Current_Point = 0;
        Stamp.clear();
        slot = std::clamp(slot, 1, 4);
        const QString buffer = Quick_Brack_Date.mid((slot - 1) * 120, 120);
        const QString stamp = Quick_Brack_Time.mid((slot - 1) * 10, 10);

        const float W = s.ScaleWidth(), H = s.ScaleHeight();
        BX_Count = 60;
        BY_Count = G().Max_Speed_Axis;
        BLeft = W * 0.01f;
        BRight = W * 0.99f;
        BTop = H * (Out_Direction == 0 ? 0.12f : 0.3f);
        BBottom = H * (Out_Direction == 0 ? 0.88f : 0.75f);
        BX2 = W * 0.2f;
        BX1 = (BLeft + BX2) / 2;
        BY1 = (BTop + BBottom) / 2;
        BX_Gap = (BRight - BX2) / BX_Count;
        BY_Gap = (BBottom - BTop) / BY_Count;

        s.DrawWidth = 1;
        s.DrawStyle = 0;
        s.Box(BLeft, BTop, BRight, BBottom);
        s.Line(BX2, BTop, BX2, BBottom);
        s.DrawStyle = 2;
        const uint32_t grid = s.Screen() ? 0xC0C0C0 : kWindowText;
        s.Set_FontSize(9);
        for (int i = 0; i * 10 <= int(BX_Count); ++i) {
            const float x = Sample_X(10 * i);
            if (i > 0 && 10 * i < int(BX_Count))
                s.Line(x, BTop, x, BBottom, grid);
            const QString label = QString::number(10 * i);
            s.CurrentX = x - s.TextWidth(label) / 2;
            s.CurrentY = BBottom + s.Pixel() * 2;
            s.Print(label);
        }
        s.Set_FontSize(8);
        for (int i = 0; i * 10 <= int(BY_Count); ++i) {
            const float y = BTop + float(10 * i) * BY_Gap;
            if (i > 0 && 10 * i < int(BY_Count))
                s.Line(BX2, y, BRight, y, grid);
            const QString label = QString::number(int(BY_Count) - 10 * i);
            s.CurrentX = BX2 - s.TextWidth(label + QStringLiteral("0"));
            s.CurrentY = y - s.TextHeight(label) / 2;
            s.Print(label);
        }
        s.DrawStyle = 0;
        const QString title = LoadResString(1126);
        const float line = s.TextHeight(title);
        s.CurrentX = BX1 - s.TextWidth(title) / 2;
        s.CurrentY = BY1 - line;
        s.Print(title);
        s.CurrentX = BX1 - s.TextWidth(QStringLiteral("(Km/h)")) / 2;
        s.CurrentY = BY1;
        s.Print(QStringLiteral("(Km/h)"));

        if (Empty_Slot(slot))
            return;
        for (int n = 1; n <= int(BX_Count) && 2 * n <= buffer.size(); ++n) {
            const int hi = Hex_Digit(buffer[2 * n - 2]), lo = Hex_Digit(buffer[2 * n - 1]);
            speed_[size_t(n)] = hi < 0 || lo < 0 ? 0 : int16_t(hi * 16 + lo);
        }
        auto Y = [&](int v) { return std::max(BTop, BBottom - float(v) * BY_Gap); };
        s.DrawWidth = Out_Direction == 0 ? 1 : 3;
        for (int n = 1; n < int(BX_Count); ++n)
            s.Line(Sample_X(n), Y(speed_[size_t(n)]), Sample_X(n + 1), Y(speed_[size_t(n + 1)]), kBrakeSpeedColor);
        s.DrawWidth = 1;
        QB_Current_Point = Sample_X(1);

        // The title, and an arrow under the point where the speed fell most.
        Stamp = Stamp_Text(stamp);
        const QString head = LoadResString(814) + QStringLiteral(" : ") + Stamp;
        s.Set_FontSize(10);
        s.CurrentX = (BX2 + BRight) / 2 - s.TextWidth(head) / 2;
        s.CurrentY = BTop + s.Pixel() * 4;
        s.Print(head);
        int stop = 1, fall = 0;
        for (int n = 2; n <= int(BX_Count); ++n)
            if (speed_[size_t(n - 1)] - speed_[size_t(n)] > fall) {
                fall = speed_[size_t(n - 1)] - speed_[size_t(n)];
                stop = n;
            }
        const QString arrow = QStringLiteral("↑");
        s.CurrentX = Sample_X(stop) - s.TextWidth(arrow) / 2;
        s.CurrentY = Y(speed_[size_t(stop)]) + s.Pixel() * 2;
        s.Print(arrow);
    });
}

} // namespace vex
