#pragma once
// The car register window.
#include "forms/Register_Form.h"

namespace vex::forms {

class frmRegister_Car : public Register_Form {
public:
    static constexpr const char* kName = "frmRegister_Car";
    explicit frmRegister_Car(QWidget* parent = nullptr) : Register_Form(Car_Register(), parent) {}
};

} // namespace vex::forms
