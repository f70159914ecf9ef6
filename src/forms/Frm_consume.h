#pragma once
// "연료소모량 조회": the fuel estimate of every trip of a day, printed or
// written into day_fuel.xltx. Frm_consume1 is the same window a second
// time, opened from the day's status where Frm_consume opens from the
// month's excess.
#include "analysis/Status_Grids.h"
#include "forms/Vex_Form.h"

#include <QDateEdit>
#include <QPushButton>
#include <QTableWidget>

namespace vex::forms {

class Frm_consume : public Vex_Form {
    Q_OBJECT
public:
    static constexpr const char* kName = "Frm_consume";
    explicit Frm_consume(QWidget* parent = nullptr) : Frm_consume(QString::fromLatin1(kName), parent) {}

    QDateEdit* TDBDate1;   // 1033 the day
    QTableWidget* Grid1;
    QPushButton* Command1; // 1142 query
    QPushButton* Command2; // 704 print
    QPushButton* Command3; // "Excel"
    QPushButton* Command4; // 504 close

    void Show_Day(const QDate& day);
    void Query();
    void Excel_Export();

protected:
    Frm_consume(const QString& formName, QWidget* parent);

private:
    Grid_Table table_;
    QString day_;
};

class Frm_consume1 : public Frm_consume {
    Q_OBJECT
public:
    static constexpr const char* kName = "Frm_consume1";
    explicit Frm_consume1(QWidget* parent = nullptr) : Frm_consume(QString::fromLatin1(kName), parent) {}
};

} // namespace vex::forms
