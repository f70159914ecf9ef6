#pragma once
// Delete of a selection's days, after asking; registers and day files stay.
#include "forms/Selection_Form.h"

namespace vex::forms {

class frmPack_delete : public Selection_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmPack_delete";
    explicit frmPack_delete(QWidget* parent = nullptr);

protected:
    void Run() override; // Cmd_delete
};

} // namespace vex::forms
