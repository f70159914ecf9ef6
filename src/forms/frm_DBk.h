#pragma once
// The check of the stored days: the newest day, against the desk's clock.
#include "forms/Vex_Form.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace vex::forms {

class frm_DBk : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "frm_DBk";
    explicit frm_DBk(QWidget* parent = nullptr);

    QLineEdit* Text_Day;  // the newest stored day
    QLabel* Label_Note;
    QPushButton* Cmd_OK;  // "확인"

    // Reads the days again; the message "데이터가 없습니다" without any.
    void Check();
};

} // namespace vex::forms
