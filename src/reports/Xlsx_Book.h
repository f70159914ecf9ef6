#pragma once
// A spreadsheet report filled from a template (.xltx or .xlsx, Office Open
// XML). The template stays untouched: the workbook's parts are read from it
// with libzip, the one sheet is changed in memory with pugixml, and Save
// writes a complete copy under a temporary name that is then renamed, so a
// failed save never leaves a half-written workbook under the final name.
// A report longer than a sheet goes on in further sheets; a finished sheet
// waits as a file of its own until the save, so only one sheet is held in
// memory.
#include <QString>
#include <map>
#include <memory>

namespace vex {

class Xlsx_Book {
public:
    Xlsx_Book();
    ~Xlsx_Book();
    Xlsx_Book(const Xlsx_Book&) = delete;
    Xlsx_Book& operator=(const Xlsx_Book&) = delete;

    // Opens the template and takes the sheet of that name (the first sheet
    // when the name is empty). False with Error() set when the file is no
    // workbook or has no such sheet.
    bool Open(const QString& templatePath, const QString& sheetName);
    QString Error() const { return error_; }

    // Cells by reference ("B5") or by column and row (1-based).
    void Set_Text(int col, int row, const QString& text);
    void Set_Number(int col, int row, double value);
    void Set_Text(const QString& ref, const QString& text);
    void Set_Number(const QString& ref, double value);
    QString Text(int col, int row) const; // written or inline text, for checks

    // Gives row `to` the height and every cell format of row `from`.
    void Copy_Row_Format(int from, int to);

    // A new sheet after the present one, with its column widths, page set-up,
    // rows 1 to headRows (values and formats) and the formats of formatRow;
    // it becomes the present sheet. False with Error() set when the finished
    // sheet can't be kept.
    bool Add_Sheet(const QString& name, int headRows, int formatRow);
    int Sheet_Count() const;

    // Writes the filled workbook as .xlsx; false with Error() set.
    bool Save(const QString& path);

    static QString Column_Name(int col);            // 1 -> "A", 27 -> "AA"
    static bool Parse_Ref(const QString& ref, int& col, int& row);

private:
    struct Impl;
    std::unique_ptr<Impl> d;
    QString error_;
};

} // namespace vex
