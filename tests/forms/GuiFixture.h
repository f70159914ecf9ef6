#pragma once
// A fresh application folder and the desktop program on it, driven through
// its windows. Boxes are recorded instead of shown, the end of the process
// and opened documents are recorded instead of done.
#include "app/App_Setup.h"
#include "core/Mod_Main.h"
#include "forms/MDIForm_Main.h"
#include "forms/Msg_Box.h"
#include "forms/frm_Splash.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"
#include "support/CliRun.h"
#include "support/TempApp.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <vector>

namespace vex::test {

// Types text into a widget key by key, as a keyboard with an input method
// does: each character arrives as the text of a key press (QTest's key
// table knows Latin-1 only).
inline void Type_Keys(QWidget* w, const QString& text)
{
    for (const QChar c : text) {
        if (c.unicode() < 0x80) {
            QTest::keyClick(w, c.toLatin1());
            continue;
        }
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &press);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &release);
    }
}

class GuiTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedLang_ = qgetenv("VEX_LANG");
        hadLang_ = qEnvironmentVariableIsSet("VEX_LANG");
        qputenv("VEX_LANG", "ko");
        qputenv("VEX_USB_ROOTS", "");
        ASSERT_TRUE(Init_App_Folder(app.Dir()));
        forms::Set_End_Hook([this](int code) { ends.push_back(code); });
        forms::Set_Url_Hook([this](const QUrl& url) { urls.push_back(url); });
    }
    void TearDown() override
    {
        QList<QPointer<QWidget>> windows;
        for (QWidget* w : QApplication::topLevelWidgets())
            if (!w->parentWidget())
                windows << w;
        for (const QPointer<QWidget>& w : windows)
            delete w.data();
        QApplication::processEvents();
        forms::Set_End_Hook({});
        forms::Set_Url_Hook({});
        if (hadLang_)
            qputenv("VEX_LANG", savedLang_);
        else
            qunsetenv("VEX_LANG");
        qunsetenv("VEX_USB_ROOTS");
    }

    // The login window, loaded and shown as at start.
    forms::frm_Splash* Start()
    {
        auto* splash = new forms::frm_Splash(app.Dir());
        splash->show();
        QApplication::processEvents();
        return splash;
    }
    // Start and a press of OK with the factory account.
    forms::MDIForm_Main* Login()
    {
        forms::frm_Splash* splash = Start();
        QTest::mouseClick(splash->cmdOK, Qt::LeftButton);
        QApplication::processEvents();
        return forms::MDIForm_Main::Instance();
    }
    // Two days of a generated USB medium (car 12AB00, driver 000123, 260105
    // and 260106) received into the application folder by vexcli.
    void Receive_Usb_Days()
    {
        static QTemporaryDir medium;
        static bool made = false;
        if (!made) {
            const CliRun r = Vexcli({"sample", "usb", "--model", "250", "--out", medium.path(), "--car", "12AB00",
                                     "--driver", "000123", "--from", "260105", "--days", "2"});
            ASSERT_EQ(r.code, 0) << r.err.toStdString();
            made = true;
        }
        const CliRun r = Vexcli({"--app-dir", app.Dir(), "receive", "usb", "--model", "250", "--medium", medium.path()});
        ASSERT_EQ(r.code, 0) << r.err.toStdString();
    }
    // Rows of a statement on the open connection.
    int Rows(const QString& sql, const QVariantList& values = {})
    {
        return G().DB->DB_RSet_D_D(sql, values).RecordCount();
    }
    QString Value(const QString& sql, const QString& column, const QVariantList& values = {})
    {
        Recordset rs = G().DB->DB_RSet_D_D(sql, values);
        return rs.RecordCount() > 0 ? rs.Text(column) : QStringLiteral("<no row>");
    }

    TempApp app;
    forms::Msg_Recorder msgs;
    std::vector<int> ends;
    std::vector<QUrl> urls;

private:
    QByteArray savedLang_;
    bool hadLang_ = false;
};

} // namespace vex::test
