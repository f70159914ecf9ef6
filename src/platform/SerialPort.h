#pragma once
// The serial port as the analyzer link sees it: a numbered port (1 to 6)
// that can be opened at the analyzer's line settings, closed, written to and
// drained. The link never touches a port device itself; it is handed an
// AnalyzerPort, so that tests can put a scripted port in its place.
//
// Port numbers map to devices as follows:
//   - by default port n is "/dev/ttyS<n-1>": 1 -> /dev/ttyS0 ... 6 -> /dev/ttyS5;
//   - when the environment variable VEX_SERIAL_PORTS is set, it is a
//     comma-separated list of device paths and entry k (0-based) is port k+1;
//     a port without an entry (or with an empty one) has no device and
//     cannot be opened. This is how a pseudo-terminal of the analyzer
//     emulator, or a USB adapter, takes the place of a numbered port.
#include <QByteArray>
#include <QString>
#include <memory>

class QObject;
class QSerialPort;

namespace vex {

class AnalyzerPort {
public:
    virtual ~AnalyzerPort() = default;

    // Opens port number n (1 to 6) at 115200 baud, no parity, 8 data bits,
    // 1 stop bit; a port that was open is closed first. The input starts
    // empty: whatever the line delivered before the open is gone.
    virtual bool open(int n) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    // Number of the port last given to open(); 0 before the first open.
    virtual int portNumber() const = 0;

    // Sends all of data before returning; false when the port is closed or
    // the line refused it.
    virtual bool write(const QByteArray& data) = 0;
    // All that has arrived and was not read yet; empty when nothing has.
    virtual QByteArray readAll() = 0;
    // Waits at most msecs for more input. True when some arrived (readAll()
    // then has it), false on timeout or when the port isn't open.
    virtual bool waitForReadyRead(int msecs) = 0;
    // The Qt object behind the port, which must live in the thread that
    // uses it; null when there is none.
    virtual QObject* Device() { return nullptr; }
};

// Device path of port number n, by the mapping above; empty when none.
QString Serial_Port_Device(int n);

// AnalyzerPort on a QSerialPort.
class SerialPort final : public AnalyzerPort {
public:
    SerialPort();
    ~SerialPort() override;
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;

    bool open(int n) override;
    void close() override;
    bool isOpen() const override;
    int portNumber() const override { return number_; }
    bool write(const QByteArray& data) override;
    QByteArray readAll() override;
    bool waitForReadyRead(int msecs) override;
    QObject* Device() override;

    // Device path of the open port (or of the last attempt), and the text of
    // the last failure, for messages of the command line.
    QString deviceName() const;
    QString errorText() const;

private:
    std::unique_ptr<QSerialPort> port_;
    int number_ = 0;
    QString device_;
};

} // namespace vex
