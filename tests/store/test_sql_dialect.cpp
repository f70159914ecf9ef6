#include "store/SqlDialect.h"

#include <gtest/gtest.h>

using namespace vex;

TEST(SqlDialect, JetIdiomsBecomeTheEnginesOwn)
{
    const QString month = "SELECT DISTINCT ('20' + Left(D_F4,2) + '/' + Mid(D_F4,3,2))as D_F0, "
                          "(Left(D_F4,2) + Mid(D_F4,3,2)) as D_F1 FROM D_D1";
    EXPECT_EQ(Translate_Sql(month, Engine::Sqlite),
              "SELECT DISTINCT ('20' || substr(D_F4,1,2) || '/' || substr(D_F4,3,2))as D_F0, "
              "(substr(D_F4,1,2) || substr(D_F4,3,2)) as D_F1 FROM D_D1");
    EXPECT_EQ(Translate_Sql(month, Engine::Postgres),
              "SELECT DISTINCT ('20' || substr(D_F4,1,2) || '/' || substr(D_F4,3,2))as D_F0, "
              "(substr(D_F4,1,2) || substr(D_F4,3,2)) as D_F1 FROM D_D1");
    EXPECT_EQ(Translate_Sql(month, Engine::Odbc), month); // the source's driver speaks Jet

    EXPECT_EQ(Translate_Sql("DELETE * FROM D_H", Engine::Sqlite), "DELETE FROM D_H");
    // Numbers still add; a join keyword is no function; text in quotes stays.
    EXPECT_EQ(Translate_Sql("SELECT D_F8 + D_F9 FROM D_D1 LEFT JOIN S_D1 ON x WHERE a='LEFT(+)'",
                            Engine::Sqlite),
              "SELECT D_F8 + D_F9 FROM D_D1 LEFT JOIN S_D1 ON x WHERE a='LEFT(+)'");
    EXPECT_EQ(Translate_Sql("SELECT * FROM D_D1 WHERE (RIGHT(D_F1,6)) >= ? AND 'it''s' + x = ''",
                            Engine::Postgres),
              "SELECT * FROM D_D1 WHERE (right(D_F1,6)) >= ? AND 'it''s' || x = ''");
}

TEST(SqlDialect, WrittenCountsTakeTheEnginesOwnSubstr)
{
    // The forms an index of the schema is built on, nested ones too; the car
    // part is one expression whether LEFT or MID selects it.
    const QString idle = "SELECT * FROM D_DI WHERE (LEFT(D_F1,6)) = ? AND Left(RIGHT(D_F1,6),4) = ? AND MID(D_F1,1,6) = ?";
    EXPECT_EQ(Translate_Sql(idle, Engine::Sqlite),
              "SELECT * FROM D_DI WHERE (substr(D_F1,1,6)) = ? AND substr(substr(D_F1,-6),1,4) = ? AND substr(D_F1,1,6) = ?");
    EXPECT_EQ(Translate_Sql(idle, Engine::Postgres),
              "SELECT * FROM D_DI WHERE (substr(D_F1,1,6)) = ? AND substr(right(D_F1,6),1,4) = ? AND substr(D_F1,1,6) = ?");
    EXPECT_EQ(Translate_Sql("SELECT * FROM D_D3 WHERE Mid(D_F1, 5, 4)=? AND MID(D_F1,7) = ?", Engine::Sqlite),
              "SELECT * FROM D_D3 WHERE substr(D_F1, 5, 4)=? AND substr(D_F1,7) = ?");
    EXPECT_EQ(Translate_Sql("SELECT LEFT(D_F1,0) + x FROM D_D1", Engine::Sqlite), "SELECT substr(D_F1,1,0) || x FROM D_D1");

    // Where SQLite's substr() would answer otherwise (RIGHT(x,0) is empty,
    // substr(x,0) the whole text; a start before the first character) or the
    // count is computed, the registered functions count, and the server's
    // own left() and right().
    const QString odd = "SELECT RIGHT(D_F1,0), MID(D_F1,0,2), LEFT(D_F1,?), RIGHT(D_F1,3+3) FROM D_D1";
    EXPECT_EQ(Translate_Sql(odd, Engine::Sqlite),
              "SELECT vex_right(D_F1,0), vex_mid(D_F1,0,2), vex_left(D_F1,?), vex_right(D_F1,3+3) FROM D_D1");
    EXPECT_EQ(Translate_Sql(odd, Engine::Postgres),
              "SELECT right(D_F1,0), substr(D_F1,0,2), left(D_F1,?), right(D_F1,3+3) FROM D_D1");
    // A call left open is no call to rewrite.
    EXPECT_EQ(Translate_Sql("SELECT LEFT(D_F1,6", Engine::Sqlite), "SELECT vex_left(D_F1,6");
}
