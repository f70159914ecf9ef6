// Qt's own dialogs speak the language of the system's texts.
#include "forms/Qt_Language.h"

#include <QCoreApplication>
#include <QTranslator>
#include <gtest/gtest.h>

using namespace vex;

TEST(QtLanguage, QtsOwnDialogsFollowTheLanguageInUse)
{
    EXPECT_EQ(forms::Install_Qt_Translations(Lang::English), nullptr) << "English needs no catalogue";
    for (const auto& [lang, cancel] : {std::pair{Lang::Korean, QStringLiteral("취소")},
                                       std::pair{Lang::Chinese, QStringLiteral("取消")}}) {
        QTranslator* catalogue = forms::Install_Qt_Translations(lang);
        ASSERT_NE(catalogue, nullptr) << "Qt's translations are not installed";
        // The button of every message box and file dialog, and the print
        // preview's toolbar.
        EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), cancel);
        EXPECT_NE(QCoreApplication::translate("QPrintPreviewDialog", "Print Preview"), "Print Preview");
        QCoreApplication::removeTranslator(catalogue);
        delete catalogue;
    }
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), "Cancel");
}
