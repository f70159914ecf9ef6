// The windows this program has, by the names the tree and the buttons open
// them by.
#include "forms/Form_regio.h"
#include "forms/Frm_consume.h"
#include "forms/Frm_daydrive.h"
#include "forms/Frm_oversp.h"
#include "forms/Frm_drv.h"
#include "forms/MDIForm_Main.h"
#include "forms/Frm_st.h"
#include "forms/frmDB_Main.h"
#include "forms/frmDB_Main1.h"
#include "forms/frmPack_Read.h"
#include "forms/frmPack_delete.h"
#include "forms/frmPack_export.h"
#include "forms/frmPack_export1.h"
#include "forms/frmPack_export2.h"
#include "forms/frm_DBk.h"
#include "forms/frm_dbmove.h"
#include "forms/frmPack_Read1.h"
#include "forms/frmRegister_Average.h"
#include "forms/frmRegister_Car.h"
#include "forms/frmRegister_Driver.h"
#include "forms/frmReport_AvgDay.h"
#include "forms/frmReport_DriveDay1.h"
#include "forms/frmReport_Main.h"
#include "forms/frmReport_Operation.h"
#include "forms/frmReport_Reference.h"
#include "forms/frmReport_QuickBrake.h"
#include "forms/frmReport_SecOperation.h"
#include "forms/frm_About.h"
#include "forms/frm_CarCondition.h"
#include "forms/frm_Config.h"
#include "forms/frm_DriverTrend.h"
#include "forms/frm_Equipment.h"
#include "forms/frm_Ledger.h"
#include "forms/frm_MarkExplain.h"
#include "forms/frm_Nosun.h"
#include "forms/frm_Pack_check.h"
#include "forms/frm_dayreport.h"
#include "forms/frm_daystatus.h"
#include "forms/frm_overfuel.h"

#include <functional>
#include <map>

namespace vex::forms {

namespace {

template <class F>
std::pair<const QString, std::function<Vex_Form*(QWidget*)>> Entry()
{
    return {QString::fromLatin1(F::kName), [](QWidget* parent) -> Vex_Form* { return new F(parent); }};
}

} // namespace

Vex_Form* Create_Form(const QString& name, QWidget* parent)
{
    static const std::map<QString, std::function<Vex_Form*(QWidget*)>> factory = {
        Entry<frmRegister_Car>(), Entry<frmRegister_Driver>(), Entry<frm_Equipment>(),
        Entry<frm_Config>(),      Entry<Form_regio>(),         Entry<frm_Nosun>(),
        Entry<frm_About>(),       Entry<Frm_drv>(),            Entry<frmPack_Read>(),
        Entry<frmPack_Read1>(),   Entry<frm_Pack_check>(),
        Entry<frmReport_Main>(),  Entry<frmReport_Operation>(), Entry<frmReport_SecOperation>(),
        Entry<frmReport_QuickBrake>(), Entry<Frm_daydrive>(),   Entry<Frm_oversp>(),
        Entry<frmReport_AvgDay>(), Entry<frmReport_DayAVG>(),
        Entry<frmDB_Main>(),      Entry<frmDB_Main1>(),        Entry<frmPack_export>(),
        Entry<frmPack_export1>(), Entry<frmPack_export2>(),    Entry<frmPack_delete>(),
        Entry<frm_DBk>(),         Entry<frm_dbmove>(),          Entry<Frm_st>(),
        Entry<frmRegister_Average>(), Entry<frmReport_DriveDay1>(), Entry<frmReport_Reference>(),
        Entry<frm_CarCondition>(), Entry<frm_daystatus>(),     Entry<frm_dayreport>(),
        Entry<Frm_consume>(),     Entry<Frm_consume1>(),       Entry<frm_overfuel>(),
        Entry<frm_Ledger>(),      Entry<frm_DriverTrend>(),    Entry<frm_MarkExplain>(),
    };
    auto it = factory.find(name);
    return it == factory.end() ? nullptr : it->second(parent);
}

QStringList Built_Forms()
{
    return {QStringLiteral("frmRegister_Car"), QStringLiteral("frmRegister_Driver"), QStringLiteral("frm_Equipment"),
            QStringLiteral("frm_Config"),      QStringLiteral("Form_regio"),         QStringLiteral("frm_Nosun"),
            QStringLiteral("frm_About"),       QStringLiteral("Frm_drv"),            QStringLiteral("frmPack_Read"),
            QStringLiteral("frmPack_Read1"),   QStringLiteral("frm_Pack_check"),     QStringLiteral("frmReport_Main"),
            QStringLiteral("frmReport_Operation"), QStringLiteral("frmReport_SecOperation"),
            QStringLiteral("frmReport_QuickBrake"), QStringLiteral("Frm_daydrive"), QStringLiteral("Frm_oversp"),
            QStringLiteral("frmReport_AvgDay"), QStringLiteral("frmReport_DayAVG"),
            QStringLiteral("frmDB_Main"), QStringLiteral("frmDB_Main1"), QStringLiteral("frmPack_export"),
            QStringLiteral("frmPack_export1"), QStringLiteral("frmPack_export2"), QStringLiteral("frmPack_delete"),
            QStringLiteral("frm_DBk"), QStringLiteral("frm_dbmove"), QStringLiteral("Frm_st"),
            QStringLiteral("frmRegister_Average"), QStringLiteral("frmReport_DriveDay1"),
            QStringLiteral("frmReport_Reference"), QStringLiteral("frm_CarCondition"), QStringLiteral("frm_daystatus"),
            QStringLiteral("frm_dayreport"), QStringLiteral("Frm_consume"), QStringLiteral("Frm_consume1"),
            QStringLiteral("frm_overfuel"), QStringLiteral("frm_Ledger"), QStringLiteral("frm_DriverTrend"),
            QStringLiteral("frm_MarkExplain")};
}

} // namespace vex::forms
