#pragma once
// Runs the real vexcli and collects what it printed.
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace vex::test {

struct CliRun {
    int code; // -1 when it crashed or hung
    QString out;
    QString err;
};

// The environment of a drawing vexcli in Korean, without a display.
QProcessEnvironment Korean_Offscreen();

CliRun Vexcli(const QStringList& args,
              const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment());

// How many lines of a vexcli report begin with the word ("stored", "read").
int Lines_Starting(const QString& out, const QString& word);

} // namespace vex::test
