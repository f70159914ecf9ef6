#include "acquisition/DumpView.h"
#include "cli/Commands.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <gtest/gtest.h>

using namespace vex;

namespace {

const QString kDumpData = QStringLiteral(VEX_TEST_DATA "/dump/");

QString Latin1_File(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll()) : QString();
}

void Write(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

} // namespace

TEST(DumpView, MakeSpaceGivesEvenTextAnExtraBlank)
{
    EXPECT_EQ(Make_Space(""), " ");
    EXPECT_EQ(Make_Space("A"), "A ");
    EXPECT_EQ(Make_Space("AABB"), "AA BB  ");
    EXPECT_EQ(Make_Space("AABBC"), "AA BB C ");
}

// Two short lines of a pack file: full blocks, a line end inside a block and
// a last block of odd length.
TEST(DumpView, GoldenOfASmallFile)
{
    const QString expected = Latin1_File(kDumpData + "pack_small.dump");
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_EQ(Make_32Line(kDumpData + "pack_small.Vex"), expected);
}

TEST(DumpView, RowsStopAfterAddress07E0)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("Read.Vex");
    // A day line of 4,094 characters and its line end, then more lines.
    Write(path, QByteArray(4094, 'A') + "\r\n" + QByteArray(4094, 'B') + "\r\n");

    const QStringList rows = Make_32Line(path).split('\n');
    // Header, ruler, 64 rows of which the last is split by the page's "\n",
    // and the empty rest behind the final line end.
    ASSERT_EQ(rows.size(), 2 + 64 + 1 + 1);
    EXPECT_EQ(rows[0].size(), 103);
    EXPECT_EQ(rows[1], QString(103, '-'));
    EXPECT_TRUE(rows[2].startsWith("0000 :  AA AA "));
    EXPECT_EQ(rows[3].left(8), "0020 :  ");
    // The last row holds the end of the page with its line end.
    EXPECT_EQ(rows[65], "07E0 :  " + QString("AA ").repeated(31) + "\r");
    EXPECT_EQ(rows[66], "  ");
    EXPECT_FALSE(Make_32Line(path).contains("BB"));

    Write(path, QByteArray());
    EXPECT_EQ(Make_32Line(path).count('\n'), 2);
    EXPECT_EQ(Make_32Line(dir.filePath("missing.Vex")), "");
}

TEST(DumpView, CommandPrintsTheDumpOrFails)
{
    QString out, err;
    QTextStream outS(&out), errS(&err);
    cli::Context ctx{QString(), {kDumpData + "pack_small.Vex"}, outS, errS};
    EXPECT_EQ(cli::Cmd_Dump(ctx), 0);
    outS.flush();
    EXPECT_EQ(out, Latin1_File(kDumpData + "pack_small.dump"));
    EXPECT_TRUE(err.isEmpty());

    out.clear();
    ctx.args = QStringList{kDumpData + "no_such.Vex"};
    EXPECT_EQ(cli::Cmd_Dump(ctx), 2);
    errS.flush();
    EXPECT_TRUE(err.contains("no_such.Vex"));
    EXPECT_TRUE(out.isEmpty());

    ctx.args = QStringList{kDumpData};
    EXPECT_EQ(cli::Cmd_Dump(ctx), 2);
    ctx.args = QStringList{};
    EXPECT_EQ(cli::Cmd_Dump(ctx), 2);
}
