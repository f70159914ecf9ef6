// Work in a child process with limits: its answer comes back whole, and a
// child that warns without end, grows without end or never answers is
// stopped and named, while this process goes on.
#include "platform/Bounded_Child.h"

#include <QThread>
#include <cstdio>
#include <gtest/gtest.h>
#include <vector>

using namespace vex;

TEST(Bounded_Child, AnswersComeBackAndRunawaysAreStopped)
{
    const QByteArray big(3 << 20, 'x'); // more than a pipe holds at once
    QString error;
    std::optional<QByteArray> got = Run_Bounded([&] { return big; }, {}, &error);
    ASSERT_TRUE(got) << error.toStdString();
    EXPECT_EQ(*got, big);

    got = Run_Bounded(
        [] {
            for (;;)
                fputs("warning: row 1 of page 47 points to itself\n", stderr);
            return QByteArray();
        },
        {}, &error);
    EXPECT_FALSE(got);
    EXPECT_EQ(error, "endless warnings");

    Child_Limits small;
    small.extraBytes = 64 << 20;
    got = Run_Bounded(
        [] {
            std::vector<std::vector<char>> hog;
            for (;;)
                hog.emplace_back(1 << 20, 'h');
            return QByteArray();
        },
        small, &error);
    EXPECT_FALSE(got);
    EXPECT_EQ(error, "out of memory");

    Child_Limits quick;
    quick.seconds = 1;
    got = Run_Bounded(
        [] {
            for (;;)
                QThread::sleep(60);
            return QByteArray();
        },
        quick, &error);
    EXPECT_FALSE(got);
    EXPECT_EQ(error, "no answer within 1 s");
}
