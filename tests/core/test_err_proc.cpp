#include "core/Err_Proc.h"
#include "core/Mod_Main.h"
#include "support/TempApp.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace vex;

namespace {
QString Log_Text(const test::TempApp& app)
{
    QFile f(app.Path("vex-error.log"));
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}
} // namespace

TEST(ErrProc, LogsEachHandledErrorWithItsLabelAndIgnoresUnknownCodes)
{
    test::TempApp app;
    G().App_Dir = app.Dir();

    EXPECT_FALSE(Guarded(1088, [] { throw RunTimeError("Invalid use of Null"); }));
    EXPECT_TRUE(Guarded(1088, [] {}));
    Err_Proc(1000, "below the table");
    Err_Proc(1165, "above the table");

    const QStringList lines = Log_Text(app).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 1);
    const QStringList cells = lines[0].split('\t');
    ASSERT_EQ(cells.size(), 4);
    EXPECT_EQ(cells[1], "1088");
    EXPECT_EQ(cells[2], "Cls_Config - DB_Edit");
    EXPECT_EQ(cells[3], "Invalid use of Null");
    EXPECT_EQ(Err_Last(), "Cls_Config - DB_Edit: Invalid use of Null");
}

TEST(ErrProc, AnUnwritableFolderStillEndsTheProcedureQuietly)
{
    test::TempApp app;
    G().App_Dir = app.Path("no/such/folder");
    int after = 0;
    EXPECT_FALSE(Guarded(1161, [&] {
        throw RunTimeError("boom");
        ++after;
    }));
    EXPECT_EQ(after, 0); // the procedure ends where it failed
    EXPECT_FALSE(QFile::exists(Err_Log_Path()));
}
