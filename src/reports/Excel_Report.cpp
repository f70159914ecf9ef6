#include "reports/Excel_Report.h"

#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

#include <QDir>
#include <QFileInfo>

namespace vex {

bool Excel_Open(Xlsx_Book& book, const QString& sheetName, const QString& templatePath)
{
    return book.Open(templatePath, sheetName);
}

QString Excel_Template_Path(const QString& appDir, const QString& templateName)
{
    return App_Path(appDir, QStringLiteral("\\Excel\\") + templateName);
}

QString Excel_Report_Path(const QString& appDir, const QString& report, const Excel_Selection& sel)
{
    return App_Path(appDir, QStringLiteral("\\report\\%1_%2_%3.xlsx").arg(report, sel.from, sel.to));
}

namespace excel_detail {

Excel_Result No_Data()
{
    Excel_Result r;
    r.outcome = Excel_Result::No_Data;
    r.message = LoadResString(1135);
    return r;
}

Excel_Result Missing_Template(bool sayIt, int16_t errCode, const QString& why)
{
    Excel_Result r;
    r.outcome = Excel_Result::No_Template;
    Err_Proc(errCode, why);
    r.message = sayIt ? QStringLiteral("엑셀 파일이 존재하지 않습니다!") : why;
    return r;
}

void Tell_Rows(const Excel_Selection& sel, int done, int all)
{
    if (sel.progress)
        sel.progress(all > 0 ? done * 100 / all : 0, QStringLiteral("%1 / %2").arg(done).arg(all));
}

Excel_Result Save(Xlsx_Book& book, const QString& path, int16_t errCode)
{
    Excel_Result r;
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (book.Save(path)) {
        r.outcome = Excel_Result::Written;
        r.path = path;
    } else {
        Err_Proc(errCode, book.Error());
        r.message = book.Error();
    }
    return r;
}

Excel_Result Failed(int16_t errCode, const QString& why)
{
    Err_Proc(errCode, why);
    Excel_Result r;
    r.message = why;
    return r;
}

QString Car_Name(Cls_DB& db, const QString& car)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT * FROM S_D1 WHERE D_F1=?"), {car});
    if (rs.RecordCount() < 1)
        return {};
    const QString name = rs.Text(QStringLiteral("D_F2"));
    return name.isEmpty() ? rs.Text(QStringLiteral("D_F3")) : name;
}

QString Driver_Name(Cls_DB& db, const QString& driver)
{
    Recordset rs = db.DB_RSet_D_D(QStringLiteral("SELECT *  FROM S_D2 where D_F1= ?"), {driver});
    return rs.RecordCount() > 0 ? rs.Text(QStringLiteral("D_F2")) : QString();
}

QString Hh_Mm(const QString& hhmm)
{
    return hhmm.size() >= 4 ? hhmm.left(2) + QLatin1Char(':') + hhmm.mid(2, 2) : hhmm;
}

QString Hh_Mm_Ss(const QString& hhmmss)
{
    return hhmmss.size() >= 6 ? Hh_Mm(hhmmss) + QLatin1Char(':') + hhmmss.mid(4, 2) : Hh_Mm(hhmmss);
}

QStringList Overspeed_Band_Heads()
{
    return {Lang_Text(QStringLiteral("1~10Km/h 초과(분)"), QStringLiteral("1-10 km/h over (min)")),
            Lang_Text(QStringLiteral("11~19Km/h 초과(분)"), QStringLiteral("11-19 km/h over (min)")),
            Lang_Text(QStringLiteral("20Km/h 이상 초과(분)"), QStringLiteral("20+ km/h over (min)"))};
}

QString Overspeed_Band_Group()
{
    return Lang_Text(QStringLiteral("과속 시간"), QStringLiteral("Overspeed minutes"));
}

void Put_Period(Xlsx_Book& book, const Excel_Selection& sel, const QString& label, const QString& codeAndName)
{
    book.Set_Text(QStringLiteral("A2"), LoadResString(1214));
    book.Set_Text(QStringLiteral("B2"), Date_Dash(sel.from));
    book.Set_Text(QStringLiteral("D2"), LoadResString(1215));
    book.Set_Text(QStringLiteral("E2"), Date_Dash(sel.to));
    if (label.isEmpty())
        return;
    book.Set_Text(QStringLiteral("A3"), label);
    book.Set_Text(QStringLiteral("B3"), codeAndName);
}

} // namespace excel_detail

} // namespace vex
