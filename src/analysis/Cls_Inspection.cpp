#include "analysis/Cls_Inspection.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/VbText.h"
#include "store/Cls_DB.h"

#include <cmath>

namespace vex {

namespace {

constexpr int16_t kErrGrid_Draw = 1056;

} // namespace

vex::Cls_BaseInspection& Cls_Inspection::Cls_BaseInspection()
{
    if (!base_)
        base_ = std::make_unique<vex::Cls_BaseInspection>();
    return *base_;
}

Cls_Inspection& Inspection()
{
    static Cls_Inspection shared;
    return shared;
}

const std::array<int, 12>& Inspection_Items()
{
    static const std::array<int, 12> items = {889, 879, 880, 882, 883, 1205, 1206, 1207, 1208, 1209, 1210, 892};
    return items;
}

std::vector<Inspection_Share> Inspection_Shares(Cls_DB& db, const QString& car)
{
    const auto& items = Inspection_Items();
    return Inspection_Shares(db, car, std::vector<int>(items.begin(), items.end()));
}

std::vector<Inspection_Share> Inspection_Shares(Cls_DB& db, const QString& car, const std::vector<int>& items)
{
    double running = 0;
    {
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT D_F24 FROM S_D1 WHERE D_F1=?"), {car});
        if (rs.RecordCount() > 0)
            running = Val(rs.Text(QStringLiteral("D_F24")));
    }
    std::vector<Inspection_Share> shares;
    for (const int id : items) {
        const QString item = LoadResString(id);
        Inspection_Share s{item, QStringLiteral("0%"), false};
        Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_M1 WHERE D_F1=? and  D_F2=?"), {car, item});
        if (rs.RecordCount() > 0) {
            s.found = true;
            s.item = rs.Text(QStringLiteral("D_F2"));
            const double used = Val(rs.Text(QStringLiteral("D_F5")));
            if (running != 0)
                s.share = QString::number(std::lround(used * 100 / running)) + QLatin1Char('%');
            else
                Err_Proc(kErrGrid_Draw, QStringLiteral("%1 of car %2: no running figure in S_D1.D_F24, no share")
                                            .arg(item, car));
        }
        shares.push_back(s);
    }
    return shares;
}

} // namespace vex
