#include "store/SqlDialect.h"

#include <gtest/gtest.h>

using namespace vex;

TEST(SqlDialect, JetIdiomsBecomeTheEnginesOwn)
{
    const QString month = "SELECT DISTINCT ('20' + Left(D_F4,2) + '/' + Mid(D_F4,3,2))as D_F0, "
                          "(Left(D_F4,2) + Mid(D_F4,3,2)) as D_F1 FROM D_D1";
    EXPECT_EQ(Translate_Sql(month, Engine::Sqlite),
              "SELECT DISTINCT ('20' || vex_left(D_F4,2) || '/' || vex_mid(D_F4,3,2))as D_F0, "
              "(vex_left(D_F4,2) || vex_mid(D_F4,3,2)) as D_F1 FROM D_D1");
    EXPECT_EQ(Translate_Sql(month, Engine::Postgres),
              "SELECT DISTINCT ('20' || left(D_F4,2) || '/' || substr(D_F4,3,2))as D_F0, "
              "(left(D_F4,2) || substr(D_F4,3,2)) as D_F1 FROM D_D1");
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
