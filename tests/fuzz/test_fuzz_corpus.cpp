// The committed fuzz corpora, replayed through the same bodies as the
// libFuzzer programs, so that every seed and every input a fuzz run kept
// runs clean in each test run, without clang.
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"
#include "targets/Fuzz_Targets.h"

#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <gtest/gtest.h>

using namespace vex;

namespace {

QByteArray Read_Bytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

std::span<const uint8_t> Span(const QByteArray& bytes)
{
    return {reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size())};
}

} // namespace

// Faults fail the test with the file that caused them. A seed made of an
// undamaged medium ("plain" in its name) is stored: one that no longer
// reaches the decoders (the harness's layout changed, a decoder came to
// want more) shows here rather than as a fuzz run that goes nowhere.
TEST(FuzzCorpus, EveryInputRunsCleanThroughItsTarget)
{
    QStringList faults;
    fuzz::Sandbox box([&](const QString& what) { faults << what; });
    for (const fuzz::Target& t : fuzz::Targets()) {
        const QDir dir(QStringLiteral(VEX_FUZZ_CORPUS "/") + QLatin1String(t.name));
        const QStringList files = dir.entryList(QDir::Files, QDir::Name);
        EXPECT_FALSE(files.isEmpty()) << "no corpus for " << t.name;
        for (const QString& name : files) {
            const QByteArray bytes = Read_Bytes(dir.filePath(name));
            const bool stored = fuzz::Run_Input(t, Span(bytes));
            EXPECT_TRUE(stored || !name.contains("plain")) << t.name << "/" << name.toStdString() << " stored nothing";
            for (const QString& what : std::as_const(faults))
                ADD_FAILURE() << t.name << "/" << name.toStdString() << ": " << what.toStdString();
            faults.clear();
        }
    }
}

TEST(FuzzCorpus, SandboxTakesAFileAboveTheFolderAndAKeyOfJunkForFaults)
{
    QStringList faults;
    fuzz::Sandbox box([&](const QString& what) { faults << what; });
    QFile above(box.App() + "/../../261101.vex");
    ASSERT_TRUE(above.open(QIODevice::WriteOnly));
    above.close();
    QSqlQuery q(QSqlDatabase::database(G().DB->Connection_Name(), false));
    ASSERT_TRUE(q.exec("INSERT INTO D_D1 (D_F1) VALUES ('00    00          ')"));
    ASSERT_TRUE(q.exec("INSERT INTO D_D3 (D_F1) VALUES ('12AB00000123261001')"));
    box.Write("\\new\\x.Vex", "input");

    EXPECT_TRUE(box.Finish_Input());
    ASSERT_EQ(faults.size(), 2) << faults.join('\n').toStdString();
    EXPECT_TRUE(faults[0].contains("261101.vex"));
    EXPECT_TRUE(faults[1].contains("D_D1 row keyed '00    00          '"));

    // All gone: the next input starts from the empty application.
    faults.clear();
    box.Write("\\new\\x.Vex", "input");
    EXPECT_FALSE(box.Finish_Input());
    EXPECT_TRUE(faults.isEmpty());
    EXPECT_FALSE(QFile::exists(box.App() + "/new/x.Vex"));
}

TEST(FuzzCorpus, SandboxPutsBackWhatAnInputReplacedAndNamesNeedARoot)
{
    QStringList faults;
    fuzz::Sandbox box([&](const QString& what) { faults << what; });
    // An input makes a folder of a file the application started with.
    const QString ini = box.App() + "/MORIX.INI";
    const QByteArray before = Read_Bytes(ini);
    ASSERT_FALSE(before.isEmpty());
    ASSERT_TRUE(QFile::remove(ini));
    ASSERT_TRUE(QDir().mkpath(ini + "/inside"));
    box.Finish_Input();
    EXPECT_EQ(Read_Bytes(ini), before) << "the next input sees the file again";
    EXPECT_TRUE(faults.isEmpty()) << faults.join('\n').toStdString();

    // A good log name under an empty root: the program never works so.
    const fuzz::Target* names = nullptr;
    for (const fuzz::Target& t : fuzz::Targets())
        if (QLatin1String(t.name) == QLatin1String("fuzz_inbox_names"))
            names = &t;
    ASSERT_TRUE(names);
    const QByteArray input("12AB00260105.dat\0\0", 18);
    fuzz::Run_Input(*names, Span(input));
    EXPECT_TRUE(faults.isEmpty()) << faults.join('\n').toStdString();
}
