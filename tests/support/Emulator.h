#pragma once
// One running vex-analyzer serving a pack image on a pseudo-terminal;
// stopped with SIGTERM when it goes.
#include <QProcess>
#include <QString>

namespace vex::test {

class Emulator {
public:
    explicit Emulator(const QString& image, const QString& faults = {});
    ~Emulator();
    Emulator(const Emulator&) = delete;
    Emulator& operator=(const Emulator&) = delete;

    // Device path of the pseudo-terminal; empty when the emulator didn't start.
    const QString& Tty() const { return tty_; }
    // Exit code after a SIGTERM: the emulator ends cleanly.
    int Stop();

private:
    QProcess process_;
    QString tty_;
};

} // namespace vex::test
