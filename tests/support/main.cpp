// The tests run inside a Qt application, as the programs do: serial ports
// and processes want an event dispatcher on the main thread, and the graph
// canvas wants fonts (offscreen, when no platform is named).
#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
