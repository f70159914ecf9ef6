#include "core/Messages.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

#include <optional>

namespace {

using vex::Has_Message;
using vex::Lang;
using vex::LoadResString;

// Sets VEX_LANG for one test and puts the previous value back afterwards.
class LangEnv {
public:
    explicit LangEnv(const char* value)
    {
        if (qEnvironmentVariableIsSet("VEX_LANG"))
            saved_ = qgetenv("VEX_LANG");
        Set(value);
    }
    ~LangEnv()
    {
        if (saved_)
            qputenv("VEX_LANG", *saved_);
        else
            qunsetenv("VEX_LANG");
    }
    void Set(const char* value)
    {
        if (value)
            qputenv("VEX_LANG", value);
        else
            qunsetenv("VEX_LANG");
    }

private:
    std::optional<QByteArray> saved_;
};

int Count(Lang lang)
{
    int n = 0;
    for (int id = 1; id <= 2000; ++id)
        n += Has_Message(id, lang) ? 1 : 0;
    return n;
}

TEST(Messages, RowsPerLanguage)
{
    EXPECT_EQ(Count(Lang::Korean), 529);
    EXPECT_EQ(Count(Lang::English), 521);
    EXPECT_EQ(Count(Lang::Chinese), 516);

    // Nothing outside 101..1300.
    EXPECT_FALSE(Has_Message(100, Lang::Korean));
    EXPECT_FALSE(Has_Message(1301, Lang::Korean));

    // Ids that were never assigned, in any language.
    for (int id : {803, 811, 1151, 1173, 1174, 1180, 1189, 1201, 1226, 1276, 109, 149, 208, 499}) {
        for (Lang lang : {Lang::Korean, Lang::English, Lang::Chinese}) {
            EXPECT_FALSE(Has_Message(id, lang)) << id;
            EXPECT_TRUE(LoadResString(id, lang).isEmpty()) << id;
        }
    }

    // The late additions: no Chinese, or Korean only.
    for (int id : {1288, 1289, 1290, 1297, 1298}) {
        EXPECT_TRUE(Has_Message(id, Lang::Korean)) << id;
        EXPECT_TRUE(Has_Message(id, Lang::English)) << id;
        EXPECT_FALSE(Has_Message(id, Lang::Chinese)) << id;
    }
    for (int id : {1291, 1292, 1293, 1294, 1295, 1296, 1299, 1300}) {
        EXPECT_TRUE(Has_Message(id, Lang::Korean)) << id;
        EXPECT_FALSE(Has_Message(id, Lang::English)) << id;
        EXPECT_FALSE(Has_Message(id, Lang::Chinese)) << id;
    }
}

TEST(Messages, TextsAreKeptExactly)
{
    EXPECT_EQ(LoadResString(150, Lang::Korean),
              QString::fromUtf8("Database에 정상적으로 저장 되었습니다."));
    EXPECT_EQ(LoadResString(150, Lang::English), QStringLiteral("Normally saved in the database."));
    EXPECT_EQ(LoadResString(157, Lang::Korean),
              QString::fromUtf8("비 정상적인 사용자이므로, 프로그램이 종료 됩니다."));
    EXPECT_EQ(LoadResString(157, Lang::English),
              QStringLiteral("Program exists since you are an abnormal user."));
    EXPECT_EQ(LoadResString(1143, Lang::Korean),
              QString::fromUtf8("RPM 표시 갯수는 9를 넘을수 없습니다. 다시 입력하여 주십시오."));
    EXPECT_EQ(LoadResString(1143, Lang::English),
              QStringLiteral("RPM layout number can not pass over 9. Please input again."));

    // Blanks at either end and doubled inside are part of the text.
    EXPECT_EQ(LoadResString(600, Lang::English), QStringLiteral("Pack Reading "));
    EXPECT_EQ(LoadResString(612, Lang::English), QStringLiteral("Selective Pack Reading  "));
    EXPECT_EQ(LoadResString(178, Lang::English), QStringLiteral("File  creating error"));
    EXPECT_EQ(LoadResString(1271, Lang::Korean), QString::fromUtf8("대상 "));

    // Inner quotes are stored as they are.
    EXPECT_EQ(LoadResString(207, Lang::English),
              QStringLiteral("Connection failure. Check analyzer and click \"Connect analyzer\" button !"));

    // The Korean-only rows keep their Korean, even where it reads like English.
    EXPECT_EQ(LoadResString(1291, Lang::Korean), QString::fromUtf8("방향지시등(L)"));
    EXPECT_EQ(LoadResString(1295, Lang::Korean), QStringLiteral("Spare1"));
    EXPECT_EQ(LoadResString(1300, Lang::Korean), QString::fromUtf8("과속종료시간"));
}

TEST(Messages, FallbackWhenARowIsMissing)
{
    // No Chinese row: English comes instead; no English either: Korean.
    EXPECT_EQ(LoadResString(1288, Lang::Chinese), QStringLiteral("Speed for 1 hour before stop"));
    EXPECT_EQ(LoadResString(1291, Lang::Chinese), QString::fromUtf8("방향지시등(L)"));
    EXPECT_EQ(LoadResString(1299, Lang::English), QString::fromUtf8("과속시작시간"));
    // A row that exists is never replaced.
    EXPECT_EQ(LoadResString(504, Lang::Korean), QString::fromUtf8("종료"));
    EXPECT_EQ(LoadResString(504, Lang::English), QStringLiteral("Exit"));
    EXPECT_FALSE(LoadResString(504, Lang::Chinese).isEmpty());
    EXPECT_NE(LoadResString(504, Lang::Chinese), QStringLiteral("Exit"));
}

TEST(Messages, SystemLanguageFromEnvironment)
{
    LangEnv env("ko");
    EXPECT_EQ(vex::System_Lang(), Lang::Korean);
    EXPECT_EQ(LoadResString(507), QString::fromUtf8("확인"));

    env.Set("EN");
    EXPECT_EQ(vex::System_Lang(), Lang::English);
    EXPECT_EQ(LoadResString(507), QStringLiteral("OK"));

    env.Set("zh");
    EXPECT_EQ(vex::System_Lang(), Lang::Chinese);
    EXPECT_EQ(LoadResString(1288), QStringLiteral("Speed for 1 hour before stop"));
    EXPECT_EQ(LoadResString(1291), QString::fromUtf8("방향지시등(L)"));

    env.Set("ko_KR");
    EXPECT_EQ(vex::System_Lang(), Lang::Korean);

    // Any fourth language is English.
    env.Set("de");
    EXPECT_EQ(vex::System_Lang(), Lang::English);
    EXPECT_EQ(LoadResString(150), QStringLiteral("Normally saved in the database."));
}

} // namespace
