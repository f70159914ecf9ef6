#pragma once
// The equipment register window.
#include "forms/Register_Form.h"

namespace vex::forms {

class frm_Equipment : public Register_Form {
public:
    static constexpr const char* kName = "frm_Equipment";
    explicit frm_Equipment(QWidget* parent = nullptr) : Register_Form(Equipment_Register(), parent) {}
};

} // namespace vex::forms
