#pragma once
// The agency submission files: one text file for each car, driver and day
// of a period, in numbered folders under "\report". Cars of model "250"
// give the second form from their day file, every other car the minute form
// from the stored series. Lines end with CR LF; texts are written in the
// desk's Korean code page (CP949), as the agency reads them.
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace vex {

class Cls_DB;

// The company name and business number kept in S_D14 (D_F22 and D_F4). A
// D_F22 holding ".com" is the site's mail address and no company name: it
// reads as empty.
struct Agency_Identity {
    QString company, business;
};
Agency_Identity Load_Agency_Identity(Cls_DB& db);
// False with "회사명과 사업자번호를 입력하세요" when either is empty.
bool Save_Agency_Identity(Cls_DB& db, const Agency_Identity& id, QString* message);

// "0" prepended to width; a longer text stays whole.
QString Zero_Pad(const QString& text, int width);

// The header line (79 characters for a 12-character vehicle field) and the
// two data lines (68 characters each), without the line end.
QString Agency_Header(const QString& modelTag, const QString& vehicleId, const QString& business10,
                      const QString& driverCode);
// second -1 writes the minute form's "0000" in place of seconds and "00".
QString Agency_Data_Line(int distanceKm, const QString& day, int h, int m, int second, int speed, const QString& engine);
// "20" + day + "_" + vehicle + "_00_" + driver id (7) + ".TXT".
QString Agency_File_Name(const QString& day, const QString& vehicleId, const QString& driverCode);
// The engine field of the second form: engine byte x 40 x factor as the
// decimal text of a single, "0" prepended to four characters; a fraction
// stays and makes it longer.
QString Agency_Engine_Text(int engineByte, float factor);

// The widths of the fixed layout: the header (a vehicle field of 12
// characters) and each data line, without CR LF.
inline constexpr int kAgencyHeaderBytes = 79;
inline constexpr int kAgencyLineBytes = 68;

// What stops a run before it writes (stops: no company or business number,
// a start after the end, no rows), and what it will pass over or write
// differently than the layout: a car without a register row (model "120"),
// a day without its series or day file, and every header and data line
// that is not of the layout's width (a Korean vehicle id takes two bytes a
// character; an engine value of five digits widens its line), with its car
// and day. The files themselves are written as they always were.
struct Agency_Note {
    QString key;  // car + driver + day; empty for the run as a whole
    QString what;
    bool stops = false;
};
std::vector<Agency_Note> Agency_Check(Cls_DB& db, const Agency_Identity& id, const QString& from, const QString& to);

struct Agency_Result {
    bool ok = false;
    QString message;      // "완료", or why it stopped
    QStringList written;  // the files, in order
    int folders = 0;      // numbered folders made
};
using Agency_Progress = std::function<void(int done, int all)>;
// The files of the days from..to. Refusals: an empty company or business
// number, a start after the end (message 1169), no rows ("데이터가
// 없습니다"). A failure ends the run with "데이터생성실패" and the error;
// the files written so far stay.
Agency_Result Write_Agency_Files(Cls_DB& db, const Agency_Identity& id, const QString& from, const QString& to,
                                 const Agency_Progress& progress = {});

} // namespace vex
