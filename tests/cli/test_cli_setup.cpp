// A site made ready without the desktop: registers and settings through the
// rules and messages of their windows, and every command and spreadsheet
// kind the program has named alike in --help, the README and the man page.
#include "support/CliRun.h"
#include "support/TempApp.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using vex::test::CliRun;
using vex::test::Vexcli;

namespace {

QString Read_Text(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

// The lines of a listing whose first cell is code.
QStringList Row_Of(const QString& listing, const QString& code)
{
    for (const QString& line : listing.split('\n'))
        if (line.startsWith(code + '\t'))
            return line.split('\t');
    return {};
}

} // namespace

TEST(CliSetup, CarsAndDriversFollowTheRulesOfTheirWindows)
{
    vex::test::TempApp app;
    const QString dir = app.Path("site");
    auto Run = [&](QStringList args) { return Vexcli(QStringList{"--app-dir", dir} + args); };

    // A new car takes the window's values for what is not given.
    CliRun r = Run({"car", "add", "12AB00", "--plate", "서울12가3456", "--date", "2025-03-01"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("database", Qt::CaseInsensitive)) << r.out.toStdString(); // message 150
    r = Run({"car", "list"});
    ASSERT_EQ(r.code, 0);
    QStringList car = Row_Of(r.out, "12AB00");
    ASSERT_EQ(car.size(), 9) << r.out.toStdString();
    EXPECT_EQ(car[2], "서울12가3456");
    EXPECT_EQ(car[3], "2025-03-01");
    EXPECT_EQ(car[4], "FF") << "IO setting of a new car";
    EXPECT_EQ(car[7], "80") << "standard speed of a new car";
    EXPECT_EQ(car[8], "3.0");

    // The code is unique and required; an unknown field is refused before
    // anything is written.
    r = Run({"car", "add", "12AB00"});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.contains("중복된 코드") || r.err.contains("code")) << r.err.toStdString(); // message 153
    EXPECT_EQ(Run({"car", "add"}).code, 2);
    EXPECT_EQ(Run({"car", "set", "12AB00", "--colour", "red"}).code, 2);
    EXPECT_EQ(Run({"car", "set", "12AB00", "--date", "yesterday"}).code, 2);

    // Set changes the fields named and keeps the others; a single blank in
    // the IO field is stored as "FF".
    r = Run({"car", "set", "12AB00", "--speed", "90", "--io", " "});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    car = Row_Of(Run({"car", "list"}).out, "12AB00");
    EXPECT_EQ(car[7], "90");
    EXPECT_EQ(car[4], "FF");
    EXPECT_EQ(car[2], "서울12가3456");
    EXPECT_EQ(Run({"car", "set", "99ZZ00", "--speed", "90"}).code, 1);

    // Drivers, and the window's search by its third field (the resident number).
    ASSERT_EQ(Run({"driver", "add", "000123", "--name", "홍길동", "--resident", "800101-1"}).code, 0);
    ASSERT_EQ(Run({"driver", "add", "000124", "--name", "김철수", "--resident", "900101-2"}).code, 0);
    r = Run({"driver", "list", "--search", "--resident", "8*"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_FALSE(Row_Of(r.out, "000123").isEmpty());
    EXPECT_TRUE(Row_Of(r.out, "000124").isEmpty());
    EXPECT_TRUE(r.out.contains("1 row(s)"));
    EXPECT_EQ(Run({"driver", "list", "--search", "--name", "홍*"}).code, 2) << "the window searches no name";

    // A delete asks first.
    EXPECT_EQ(Run({"driver", "delete", "000124"}).code, 2);
    r = Run({"driver", "delete", "000124", "--yes"});
    EXPECT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(Run({"driver", "list"}).out.contains("1 row(s)"));
    EXPECT_EQ(Run({"driver", "delete", "000124", "--yes"}).code, 1);
}

TEST(CliSetup, SettingsAreSetAsTheSettingsWindowSavesThem)
{
    vex::test::TempApp app;
    const QString dir = app.Path("site");
    auto Run = [&](QStringList args) { return Vexcli(QStringList{"--app-dir", dir} + args); };
    auto Value = [](const QString& out, const QString& field) {
        const QRegularExpression line("^" + field + "\\s+(.*)$", QRegularExpression::MultilineOption);
        return line.match(out).captured(1);
    };

    CliRun r = Run({"config", "show"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(Value(r.out, "S_CompanyCode"), "00000000");
    EXPECT_EQ(Value(r.out, "U_Pass"), "********") << "a password is never printed";

    r = Run({"config", "set", "U_Name", "대한운수", "S_IP", "127.0.0.1", "S_CompanyCode", "12345678", "RPM_Marks", "9",
             "C_RPM", "1", "U_Pass", "NEW"});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    r = Run({"config", "show"});
    EXPECT_EQ(Value(r.out, "U_Name"), "대한운수");
    EXPECT_EQ(Value(r.out, "S_IP"), "127.0.0.1");
    EXPECT_EQ(Value(r.out, "S_CompanyCode"), "12345678") << "read back at the next start";
    EXPECT_EQ(Value(r.out, "RPM_Marks"), "9") << "stored as 90, shown divided by 10";
    EXPECT_EQ(Value(r.out, "C_RPM"), "1");

    // The window's checks: at most 9 marks, numbers where numbers go; and
    // the command line's own: a company code of 8 digits, boxes of 0 or 1.
    EXPECT_EQ(Run({"config", "set", "RPM_Marks", "10"}).code, 1);
    EXPECT_EQ(Run({"config", "set", "Idle_Minutes", "ten"}).code, 1);
    EXPECT_EQ(Run({"config", "set", "S_CompanyCode", "1234"}).code, 2);
    EXPECT_EQ(Run({"config", "set", "C_Oil", "yes"}).code, 2);
    EXPECT_EQ(Run({"config", "set", "Nothing", "1"}).code, 2);
    EXPECT_EQ(Value(Run({"config", "show"}).out, "RPM_Marks"), "9") << "nothing stored by a refused save";
}

TEST(CliSetup, HelpReadmeAndManualNameEveryCommandAndKind)
{
    const CliRun help = Vexcli({"--help"});
    ASSERT_EQ(help.code, 0);
    QStringList commands;
    QStringList kinds;
    for (const QString& line : help.out.split('\n')) {
        static const QRegularExpression command("^  ([a-z]+)\\b");
        const auto m = command.match(line);
        if (m.hasMatch() && !commands.contains(m.captured(1)))
            commands << m.captured(1);
        const int at = line.indexOf("KIND is one of: ");
        if (at >= 0)
            kinds = line.mid(at + 16).trimmed().split('|');
    }
    EXPECT_EQ(commands.size(), 30) << commands.join(' ').toStdString();
    EXPECT_EQ(kinds.size(), 18) << kinds.join(' ').toStdString();

    const QString root = QStringLiteral(VEX_TEST_SUPPORT) + "/../..";
    const QString readme = Read_Text(root + "/README.md");
    const QString manual = Read_Text(root + "/packaging/vexcli.1");
    ASSERT_FALSE(readme.isEmpty());
    ASSERT_FALSE(manual.isEmpty());
    vex::test::TempApp app;
    for (const QString& c : commands) {
        // The program has it: it never answers "unknown command".
        EXPECT_FALSE(Vexcli({"--app-dir", app.Path("site"), c, "--no-such-option"}).err.contains("unknown command"))
            << c.toStdString();
        EXPECT_TRUE(readme.contains(QRegularExpression("`" + c + "[ `]"))) << "README lacks " << c.toStdString();
        EXPECT_TRUE(manual.contains(QRegularExpression("^\\.B[IR]? (.*\\\\fB)?" + c + "\\b",
                                                       QRegularExpression::MultilineOption)))
            << "the manual lacks " << c.toStdString();
    }
    for (const QString& k : kinds) {
        EXPECT_TRUE(readme.contains("`" + k + "`")) << "README lacks the kind " << k.toStdString();
        EXPECT_TRUE(manual.contains(QRegularExpression("\\b" + k + "[,.]"))) << "the manual lacks " << k.toStdString();
    }
}
