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

TEST(ErrProc, LogsEveryErrorWithItsOwnLabelAndDropsNone)
{
    test::TempApp app;
    G().App_Dir = app.Dir();

    EXPECT_FALSE(Guarded(1088, [] { throw RunTimeError("Invalid use of Null"); }));
    EXPECT_TRUE(Guarded(1088, [] {}));
    // The keeping, transfer and grid routines have codes of their own.
    EXPECT_FALSE(Guarded(kErrZip, [] { throw RunTimeError("zip error 19"); }));
    // A code without a label is written all the same.
    Err_Proc(1000, "below the table");

    const QStringList lines = Log_Text(app).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3);
    const QStringList cells = lines[0].split('\t');
    ASSERT_EQ(cells.size(), 4);
    EXPECT_EQ(cells[1], "1088");
    EXPECT_EQ(cells[2], "Cls_Config - DB_Edit");
    EXPECT_EQ(cells[3], "Invalid use of Null");
    EXPECT_EQ(lines[1].split('\t').mid(1), (QStringList{"2016", "Package - Zip", "zip error 19"}));
    EXPECT_EQ(lines[2].split('\t').mid(1), (QStringList{"1000", "code 1000", "below the table"}));
    EXPECT_EQ(Err_Last(), "code 1000: below the table");

    // Every code of the program's own block has its own label.
    QStringList labels;
    for (int code = kErrOptimise; code <= kErrRegisterCodes; ++code) {
        const QString label = Err_Label(code);
        EXPECT_EQ(label.split(" - ").size(), 2) << code;
        EXPECT_FALSE(labels.contains(label)) << label.toStdString();
        labels << label;
    }
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
