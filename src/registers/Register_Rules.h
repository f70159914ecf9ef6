#pragma once
// The registers of cars (S_D1), drivers (S_D2) and equipment (S_M1): a
// grid of rows, a row of fields, four buttons in the windows, and the
// commands "vexcli car" and "vexcli driver". The rules they share live here:
// which field goes to which column, the values of a new row and of a Null,
// the checks of Save, Delete and the search.
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <vector>

namespace vex {

class Cls_DB;

struct Register_Field {
    QString column;        // D_Fn
    int captionId = 0;     // caption from the message table, else fixedCaption
    QString fixedCaption;
    QString newValue;      // value of a new row ("\today" for the date)
    QString nullValue;     // value shown for a Null ("\today" for the date)
    bool date = false;     // a date control
    bool written = true;   // Save writes it
    QString blankMeans;    // a field holding a single blank is stored as this
};

struct Register_Def {
    QString table;
    QString formName;
    int titleId = 0;
    QString fixedTitle;
    std::vector<Register_Field> fields; // field 0 is the code
    std::vector<int> grid;              // fields shown in the grid
    std::vector<int> gridHeads;         // their heads (message ids)
    QStringList searchColumns;          // the filters of search fields 0, 1, 2
    QString scopeColumn;                // equipment: the car the rows belong to
    int loadCode = 0, buttonCode = 0;
};

const Register_Def& Car_Register();
const Register_Def& Driver_Register();
const Register_Def& Equipment_Register();

QString Field_Caption(const Register_Field& f);
// The value of a new row, and the value shown for a Null, with "today"
// resolved.
QString New_Value(const Register_Field& f);
QString Null_Value(const Register_Field& f);

// The rows as the grid lists them: all columns of the table, ordered by
// the code; `scope` limits them to one car (equipment). A search fills
// `searchColumn` and `pattern` (the user supplies any wildcard; '*' and '?'
// work as '%' and '_').
struct Register_Rows {
    QStringList columns;
    std::vector<QVariantList> rows;
};
Register_Rows Register_List(Cls_DB& db, const Register_Def& def, const QString& scope = {},
                            const QString& searchColumn = {}, const QString& pattern = {});

enum Register_Mode { Browse = 0, Adding = 1, Editing = 2 };

// Save of the fields (values in field order). Returns the message id: 152
// no code, 153 a code that exists (adding), 150 saved, 151 when the write
// failed.
int Register_Save(Cls_DB& db, const Register_Def& def, Register_Mode mode, const QStringList& values,
                  const QString& scope = {});
// Deletes the row of the code: true when deleted.
bool Register_Delete(Cls_DB& db, const Register_Def& def, const QString& code, const QString& scope = {});

// The car codes for the equipment window's car list.
QStringList Car_Codes(Cls_DB& db);

} // namespace vex
