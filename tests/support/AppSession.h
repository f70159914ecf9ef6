#pragma once
// A started application on a fresh folder: Main_Start has run, the database
// is open and the settings are loaded, as after a login.
#include "support/TempApp.h"

namespace vex::test {

class AppSession : public TempApp {
public:
    AppSession();
};

} // namespace vex::test
