#pragma once
// What the settings window (and "vexcli config") shows, and how its Save
// moves the fields into the settings and the database.
#include <QString>
#include <array>

namespace vex {

class Cls_Config;
class Cls_DB;
struct Globals;

// Fields 1 to 19 and check boxes 1 to 4, as the window numbers them
// (index 0 of each is unused).
struct Config_Fields {
    std::array<QString, 20> text;
    std::array<bool, 5> check{};
};

// The fields as the window fills them from the settings: the RPM count
// shown divided by 10, field 8 repeating the password.
Config_Fields Config_Show(const Cls_Config& cfg, const Globals& g);

enum class Config_Save_Result {
    Saved,          // message 150
    Failed,         // DB_Edit failed: message 151
    Count_Too_High, // message 1143, focus on field 17, editing stays on
    Bad_Number,     // a number field didn't convert: Save ends silently
};

// Save: fields 1..14 and 19 and the boxes into the class (field 8 after
// field 6, so the confirmation wins), the speed and RPM axes, the count
// test, RPM_Tick10, Idle_Minutes, then DB_Edit on the row of S_D14. What was
// moved before a failure stays in the class.
Config_Save_Result Config_Save(const Config_Fields& f, Cls_Config& cfg, Globals& g, Cls_DB& db);

// The check box of the RPM input being ticked: fields 16 and 17 from D_F18
// and D_F19 of the stored row (the count divided by 10), "3000" and "6" in
// place of zeros.
void Config_RPM_Ticked(Cls_DB& db, QString& field16, QString& field17);

// A number as the conversions of the window take it; false when the text
// is not one.
bool Config_Number(const QString& text, double& value);

} // namespace vex
