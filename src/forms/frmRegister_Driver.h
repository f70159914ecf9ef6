#pragma once
// The driver register window.
#include "forms/Register_Form.h"

namespace vex::forms {

class frmRegister_Driver : public Register_Form {
public:
    static constexpr const char* kName = "frmRegister_Driver";
    explicit frmRegister_Driver(QWidget* parent = nullptr) : Register_Form(Driver_Register(), parent) {}
};

} // namespace vex::forms
