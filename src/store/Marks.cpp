// The driving mark of a trip and the overspeed minutes of the memory pack
// path.
#include "core/Cls_Config.h"
#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "store/EventDetector.h"
#include "store/Mark_Explanation.h"
#include "store/Marks.h"

namespace vex {

namespace {

constexpr int16_t kErrCAL_AVG = 1111;
constexpr int16_t kErrCAL_OVERSPEED_CNT = 1136;
constexpr int16_t kErrCAL_OVERSPEED_COUNT = 1137;

int16_t Count_Above(const QString& series, const Cls_Config& cfg)
{
    int16_t count = 0;
    for (int i = 0; i < kSeriesChars; i += 2)
        if (Hex_Cell(series, i) > cfg.B_Val4)
            ++count;
    return count;
}

} // namespace

QString Mark_Of(const Cls_Config& cfg, int16_t overspeed, float acceleration, float brake, int16_t idle,
                int16_t longOver, float distance)
{
    return Explain_Mark(cfg, {overspeed, acceleration, brake, idle, longOver, distance}).mark;
}

QString Cls_DB::CAL_AVG(int16_t overspeed, float acceleration, float brake, int16_t idle, int16_t longOver,
                        float distance)
{
    QString result;
    Guarded(kErrCAL_AVG, [&] {
        result = Mark_Of(*G().Config, overspeed, acceleration, brake, idle, longOver, distance);
    });
    return result;
}

int16_t Cls_DB::CAL_OVERSPEED_CNT()
{
    int16_t count = 0;
    Guarded(kErrCAL_OVERSPEED_CNT, [&] {
        // The car's D_F23 is fetched and not used: the pack path counts
        // against B_Val4, read again for every cell.
        Recordset rs = DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {CarCode});
        if (rs.RecordCount() > 0)
            (void)rs.Field(QStringLiteral("D_F23"));
        rs.Close();
        count = Count_Above(Sec_Data, *G().Config);
    });
    return count;
}

int16_t Cls_DB::CAL_OVERSPEED_COUNT(const QString& series)
{
    int16_t count = 0;
    Guarded(kErrCAL_OVERSPEED_COUNT, [&] { count = Count_Above(series, *G().Config); });
    return count;
}

} // namespace vex
