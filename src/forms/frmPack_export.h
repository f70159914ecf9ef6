#pragma once
// Export of a selection into a package, then, when asked, its delete.
#include "forms/Selection_Form.h"

#include <QLineEdit>

namespace vex::forms {

class frmPack_export : public Selection_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frmPack_export";
    explicit frmPack_export(QWidget* parent = nullptr);
    QLineEdit* Text_Name; // the package's name in "\exp"

protected:
    void Run() override;
};

} // namespace vex::forms
