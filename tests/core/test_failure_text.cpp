// Failures reach a person as what failed and what to do, in the system's
// language, never as a routine's label.
#include "core/Failure_Text.h"
#include "core/Messages.h"

#include <gtest/gtest.h>

using namespace vex;

TEST(FailureText, TechnicalReasonsBecomeWhatToDo)
{
    const QByteArray before = qgetenv("VEX_LANG");
    qputenv("VEX_LANG", "ko");
    // The system's own words stay as they are.
    for (const QString& own : {QStringLiteral("삭제 되었습니다."), QStringLiteral("연결실패"),
                               QStringLiteral("동일한 차량번호 데이터가 존재합니다"), QString()})
        EXPECT_EQ(Plain_Failure(own), own);

    // A full disk behind a routine's label: the Part's words, then what to
    // do, then the reason without the label.
    QString t = Plain_Failure("최적화가 실패되었읍니다.   Cls_DB - DB_RSet_D_D: database or disk is full");
    EXPECT_EQ(t, "최적화가 실패되었읍니다.\n" + LoadResString(5060) + "\n(database or disk is full)");
    EXPECT_FALSE(t.contains("Cls_DB"));

    struct Case {
        const char* text;
        int message;
    } cases[] = {
        {"Cls_DB - DB_Save_D_D_usb: Path/File access error: /x/new/a.ntd (No space left on device)", 5060},
        {"DB 생성 오류 Cls_DB - DB_RSet_D_D: attempt to write a readonly database", 5061},
        {"Cls_DB - DB_RSet_D_D: database is locked", 5062},
        {"Cls_DB - DB_RSet_D_D: zip error 19: Not a zip archive", 5063},
        {"연결실패 (Login denied)", 5064},
        {"연결실패 (Couldn't connect to server)", 5065},
        {"Cls_DB - DB_RSet_D_D: something nobody foresaw", 5067},
    };
    for (const Case& c : cases) {
        t = Plain_Failure(QString::fromUtf8(c.text));
        EXPECT_TRUE(t.contains(LoadResString(c.message))) << c.text << " -> " << t.toStdString();
        EXPECT_FALSE(t.contains(" - DB_")) << t.toStdString();
    }
    // In English for an English system.
    qputenv("VEX_LANG", "en");
    EXPECT_TRUE(Plain_Failure("Cls_DB - DB_RSet_D_D: No space left on device").startsWith("The disk is full"));
    if (before.isNull())
        qunsetenv("VEX_LANG");
    else
        qputenv("VEX_LANG", before);
}
