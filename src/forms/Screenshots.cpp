#include "forms/Screenshots.h"

#include "core/Failure_Text.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "forms/Frm_consume.h"
#include "forms/Frm_daydrive.h"
#include "forms/frm_daystatus.h"
#include "forms/frm_overfuel.h"
#include "forms/Frm_oversp.h"
#include "forms/MDIForm_Main.h"
#include "forms/Keep_Progress.h"
#include "forms/Msg_Box.h"
#include "forms/Vex_Form.h"
#include "forms/frmReport_AvgDay.h"
#include "forms/frmReport_DriveDay1.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_QuickBrake.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/frm_Splash.h"
#include "forms/logic/View_Logic.h"
#include "registers/Register_Rules.h"
#include "registers/Routes.h"
#include "store/Cls_DB.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <memory>

namespace vex::forms {

namespace {

// The layouts and polish a window has posted are done before it is grabbed;
// grab() paints the widget itself, so no paint event need arrive.
bool Save(QWidget* w, const QString& path)
{
    QCoreApplication::sendPostedEvents();
    return w->grab().save(path);
}

// The windows closed are deleted before the next one opens.
void Delete_Closed()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void Add_Sample_Rows()
{
    Cls_DB& db = *G().DB;
    if (!Register_List(db, Car_Register()).rows.empty())
        return;
    const QStringList cars[] = {
        {"123400", "A-01", "서울 12가 3456", "2024-03-02", "FF", "250", "4.25", "80", "3.0"},
        {"123500", "A-02", "서울 34나 7890", "2023-11-15", "FF", "130", "4.25", "90", "3.0"},
        {"220100", "B-11", "경기 56다 1122", "2025-01-20", "FF", "260", "4.25", "80", "2.8"},
    };
    for (const QStringList& c : cars)
        Register_Save(db, Car_Register(), Adding, c);
    const QStringList drivers[] = {
        {"567800", "김민수", "E-1001", "800101-1234567", "11-22-333333-44", "02-555-0101"},
        {"567900", "이영희", "E-1002", "850505-2345678", "11-23-444444-55", "02-555-0102"},
    };
    for (const QStringList& d : drivers)
        Register_Save(db, Driver_Register(), Adding, d);
    Register_Save(db, Equipment_Register(), Adding, {"엔진오일", "2026-10-01", "교환", "10000"}, "123400");
    Register_Save(db, Equipment_Register(), Adding, {"타이어", "2026-09-12", "앞바퀴 2개", "40000"}, "123400");
    Route_Save(db, QStringLiteral("101번"), QStringLiteral("80"), {"123400", "123500"}, {});
}

// The windows that show a stored day, shot on the newest day the folder
// holds (a received medium); without one they show their empty frames.
const QStringList& Day_Views()
{
    static const QStringList views = {
        QStringLiteral("frmReport_Operation"), QStringLiteral("frmReport_SecOperation"),
        QStringLiteral("frmReport_QuickBrake"), QStringLiteral("Frm_daydrive"), QStringLiteral("Frm_oversp"),
        QStringLiteral("frmReport_AvgDay"), QStringLiteral("frmReport_DayAVG"), QStringLiteral("frmReport_DriveDay1"),
        QStringLiteral("frm_daystatus"), QStringLiteral("Frm_consume"), QStringLiteral("frm_overfuel")};
    return views;
}

int Shoot_Day_Views(MDIForm_Main* main, const std::function<QString(const QString&)>& path)
{
    Report_Selection& sel = Selection();
    Recordset newest = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D1 ORDER BY D_F4 DESC, D_F1"));
    if (newest.RecordCount() > 0) {
        sel.Car_Code = newest.Text(QStringLiteral("D_F2"));
        sel.Driver_Code = newest.Text(QStringLiteral("D_F3"));
        sel.Start_Date = newest.Text(QStringLiteral("D_F4"));
    }
    int n = 0;
    auto shoot = [&](Vex_Form* f, const QString& name) {
        f->show();
        n += Save(f, path(name));
    };
    auto* day = Open<frmReport_Operation>(main);
    day->Load_Selection();
    shoot(day, QStringLiteral("frmReport_Operation_24"));
    day->Picture2_MouseUp(day->Graph_State().Make_X(8 * 60 + 10));
    day->Option1_Click(0);
    shoot(day, QStringLiteral("frmReport_Operation_1"));
    auto* hour = Open<frmReport_SecOperation>(main);
    hour->Show_Hour(sel.Car_Code, sel.Driver_Code, sel.Start_Date, 8, 10 * 60);
    shoot(hour, QStringLiteral("frmReport_SecOperation"));
    // The seconds of the day's first quick brake, the cursor on its second.
    Recordset brakes = G().DB->DB_RSet_D_D(QStringLiteral("SELECT * FROM D_D2 WHERE D_F1=?"),
                                           {sel.Car_Code + sel.Driver_Code + sel.Start_Date});
    const QString first = brakes.RecordCount() > 0 ? brakes.Text(QStringLiteral("D_F2")).left(6) : QString();
    if (first.size() == 6 && first != QLatin1String("000000")) {
        hour->Show_Hour(sel.Car_Code, sel.Driver_Code, sel.Start_Date, first.left(2).toInt(),
                        first.mid(2, 2).toInt() * 60 + first.mid(4, 2).toInt());
        shoot(hour, QStringLiteral("frmReport_SecOperation_brake"));
    }
    auto* brake = Open<frmReport_QuickBrake>(main);
    brake->Load_Selection();
    shoot(brake, QStringLiteral("frmReport_QuickBrake"));
    auto* avg = Open<frmReport_AvgDay>(main);
    avg->Command1_Click();
    shoot(avg, QStringLiteral("frmReport_AvgDay"));
    auto* byDay = Open<frmReport_DayAVG>(main);
    byDay->Command1_Click();
    shoot(byDay, QStringLiteral("frmReport_DayAVG"));
    shoot(Open<Frm_daydrive>(main), QStringLiteral("Frm_daydrive"));
    auto* daily = Open<frmReport_DriveDay1>(main);
    daily->Show_Day();
    shoot(daily, QStringLiteral("frmReport_DriveDay1"));
    auto* events = Open<Frm_oversp>(main);
    events->Show_Trip(sel.Car_Code, sel.Driver_Code, sel.Start_Date);
    shoot(events, QStringLiteral("Frm_oversp"));
    auto* days = Open<frm_daystatus>(main);
    days->Show(sel.Car_Code, false, sel.Start_Date.left(4));
    shoot(days, QStringLiteral("frm_daystatus"));
    auto* fuel = Open<Frm_consume>(main);
    fuel->Show_Day(QDate::fromString(QStringLiteral("20") + sel.Start_Date, QStringLiteral("yyyyMMdd")));
    shoot(fuel, QStringLiteral("Frm_consume"));
    auto* over = Open<frm_overfuel>(main);
    over->Query();
    shoot(over, QStringLiteral("frm_overfuel"));
    for (Vex_Form* f : {static_cast<Vex_Form*>(day), static_cast<Vex_Form*>(hour), static_cast<Vex_Form*>(brake),
                        static_cast<Vex_Form*>(avg), static_cast<Vex_Form*>(byDay), static_cast<Vex_Form*>(daily),
                        static_cast<Vex_Form*>(events), static_cast<Vex_Form*>(days), static_cast<Vex_Form*>(fuel),
                        static_cast<Vex_Form*>(over)})
        f->close();
    if (Vex_Form* grid = Find_Form(QStringLiteral("Frm_daydrive")))
        grid->close();
    Delete_Closed();
    return n;
}

// The boxes and Qt's own dialogs as they meet a person: a failure in plain
// words, a question that deletes (No by default, saying what goes), and the
// print and preview dialogs in the language of the system.
int Shoot_Boxes(MDIForm_Main* main, const std::function<QString(const QString&)>& path)
{
    int n = 0;
    const Msg_Record failure{
        Plain_Failure(QStringLiteral("DB 생성 오류   Cls_DB - DB_RSet_D_D: database or disk is full")),
        QStringLiteral("차량 운행 기록 분석 프로그램 - 데이터 백업"), QMessageBox::Warning, QMessageBox::Ok};
    const Msg_Record question{LoadResString(1150) + QStringLiteral("\n")
                                  + Days_To_Delete(vex::Selection{QStringLiteral("260101"), QStringLiteral("260131"),
                                                    QStringLiteral("123400"), QStringLiteral("ALL")}),
                              G().Prog_Title, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::No};
    for (const auto& [record, name] : {std::pair{failure, "box_failure"}, std::pair{question, "box_delete"}}) {
        std::unique_ptr<QMessageBox> box(Make_Box(record, main));
        box->show();
        n += Save(box.get(), path(QString::fromLatin1(name)));
    }
    QPrinter printer;
    QPrintDialog print(&printer, main);
    print.show();
    n += Save(&print, path(QStringLiteral("dialog_print")));
    print.close();
    QPrintPreviewDialog preview(&printer, main);
    preview.show();
    n += Save(&preview, path(QStringLiteral("dialog_preview")));
    preview.close();
    return n;
}

} // namespace

int Write_Screenshots(const QString& appDir, const QString& dir, const QString& prefix, bool sampleRows)
{
    QDir().mkpath(dir);
    Msg_Recorder boxes; // no modal box stops the run
    Set_End_Hook([](int) {});
    int n = 0;
    auto path = [&](const QString& name) { return QDir(dir).filePath(prefix + QLatin1Char('_') + name + QStringLiteral(".png")); };

    auto* splash = new frm_Splash(appDir);
    splash->show();
    n += Save(splash, path(QStringLiteral("frm_Splash")));
    splash->cmdOK_Click();
    MDIForm_Main* main = MDIForm_Main::Instance();
    if (!main)
        return n;
    if (sampleRows && G().DB)
        Add_Sample_Rows();
    main->Node(14)->setSelected(true);
    main->TreeView1->setCurrentItem(main->Node(14));
    n += Save(main, path(QStringLiteral("MDIForm_Main")));
    for (const QString& name : Built_Forms()) {
        if (Day_Views().contains(name))
            continue;
        // The loading window is a reception's own, at its own size.
        Vex_Form* f = name == QLatin1String("frm_Pack_check") ? Create_Form(name, main) : main->Open_Window(name);
        if (f)
            f->show();
        if (!f)
            continue;
        n += Save(f, path(name));
        f->close();
        Delete_Closed();
    }
    if (G().DB)
        n += Shoot_Day_Views(main, path);
    n += Shoot_Boxes(main, path);
    Set_End_Hook({});
    delete main;
    return n;
}

} // namespace vex::forms
