#pragma once
// A small window that shows the database loading of a reception.
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QProgressBar>

namespace vex::forms {

class frm_Pack_check : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_Pack_check";
    explicit frm_Pack_check(QWidget* parent = nullptr);
    QLabel* Label1;
    QProgressBar* ProgressBar1;
};

} // namespace vex::forms
