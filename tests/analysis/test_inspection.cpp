// Maintenance shares of the daily report: each item's record against the
// car's running figure, "0%" without a record or without a figure.
#include "analysis/Cls_Inspection.h"
#include "core/Messages.h"
#include "store/IngestFixture.h"

using namespace vex;

namespace {
class Inspection_Shares_Test : public test::Ingest {};

QString Share_Of(const std::vector<Inspection_Share>& shares, const QString& item)
{
    for (const Inspection_Share& s : shares)
        if (s.item == item)
            return s.share;
    return "<none>";
}
} // namespace

TEST_P(Inspection_Shares_Test, EachItemIsItsRecordAgainstTheRunningFigure)
{
    const QString car = "000100";
    const QString oil = LoadResString(879), tyre = LoadResString(892), sensor = LoadResString(889);
    Put("S_D1", car, {"D_F24", "2000"});
    auto record = [&](const QString& item, const QString& used) {
        Recordset rs = db->DB_RSet_D_D("SELECT * FROM S_M1 WHERE D_F1=? AND D_F2=?", {car, item});
        rs.AddNew();
        rs.Set("D_F1", car);
        rs.Set("D_F2", item);
        rs.Set("D_F5", used);
        rs.Update();
    };
    record(oil, "500");
    record(tyre, "3000");
    // Another car's record is not this car's.
    Put("S_D1", "000200", {"D_F24", "100"});

    std::vector<Inspection_Share> shares = Inspection_Shares(*db, car);
    ASSERT_EQ(shares.size(), 12u);
    EXPECT_EQ(shares.front().item, sensor); // the order of the daily screen
    EXPECT_EQ(Share_Of(shares, oil), "25%");
    EXPECT_EQ(Share_Of(shares, tyre), "150%");
    EXPECT_EQ(Share_Of(shares, sensor), "0%");
    EXPECT_EQ(Share_Of(Inspection_Shares(*db, "000200"), oil), "0%");

    // An empty running figure counts 0: no share can be formed, and the log
    // says so instead of a division by zero.
    Put("S_D1", car, {"D_F24", ""});
    shares = Inspection_Shares(*db, car);
    EXPECT_EQ(Share_Of(shares, oil), "0%");
    EXPECT_TRUE(Err_Last().contains("D_F24"));

    // The base intervals are made once and kept with their object.
    Cls_Inspection inspection;
    inspection.Cls_BaseInspection().Base_Tire = 40000;
    EXPECT_EQ(&inspection.Cls_BaseInspection(), &inspection.Cls_BaseInspection());
    EXPECT_EQ(inspection.Cls_BaseInspection().Base_Tire, 40000);
}

VEX_INGEST_ENGINES(Inspection_Shares_Test);
