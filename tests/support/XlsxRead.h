#pragma once
// A saved workbook read back through openpyxl (Debian's /usr/bin/python3),
// so the tests see what a spreadsheet program sees.
#include <QMap>
#include <QString>
#include <QStringList>

namespace vex::test {

struct Xlsx_Sheet {
    bool ok = false;          // openpyxl read the file and found the sheet
    QString error;
    QStringList sheets;
    int charts = 0;
    QMap<QString, QString> values;  // "B5" -> value as text
    QMap<QString, QString> formats; // "B5" -> border|number format|font size
    QString Value(const QString& ref) const { return values.value(ref); }
    // Highest row with a value or a border.
    int Last_Row() const;
};

Xlsx_Sheet Read_Xlsx(const QString& path, const QString& sheet);

} // namespace vex::test
