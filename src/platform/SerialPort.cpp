#include "platform/SerialPort.h"

#include <QDeadlineTimer>
#include <QSerialPort>

namespace vex {

namespace {

constexpr int kFirstPort = 1;
constexpr int kLastPort = 6;
// A command is a few dozen bytes; this only guards against a line that
// never drains (a pseudo-terminal whose other side stopped reading).
constexpr int kWriteDeadlineMs = 5000;

} // namespace

QString Serial_Port_Device(int n)
{
    if (n < kFirstPort)
        return {};
    const QByteArray list = qgetenv("VEX_SERIAL_PORTS");
    if (!list.isNull()) {
        const QStringList entries = QString::fromLocal8Bit(list).split(QLatin1Char(','));
        if (n > entries.size())
            return {};
        return entries.at(n - 1).trimmed();
    }
    if (n > kLastPort)
        return {};
    return QStringLiteral("/dev/ttyS%1").arg(n - 1);
}

SerialPort::SerialPort() : port_(std::make_unique<QSerialPort>()) {}

SerialPort::~SerialPort() = default;

QObject* SerialPort::Device()
{
    return port_.get();
}

bool SerialPort::open(int n)
{
    close();
    number_ = n;
    device_ = Serial_Port_Device(n);
    if (device_.isEmpty())
        return false;
    port_->setPortName(device_);
    // Line settings before the open, so that the open applies them at once.
    // A pseudo-terminal has no baud rate of its own and may refuse some of
    // them; that is no reason to give up a port that did open.
    port_->setBaudRate(QSerialPort::Baud115200);
    port_->setDataBits(QSerialPort::Data8);
    port_->setParity(QSerialPort::NoParity);
    port_->setStopBits(QSerialPort::OneStop);
    port_->setFlowControl(QSerialPort::NoFlowControl);
    if (!port_->open(QIODevice::ReadWrite))
        return false;
    // A fresh open starts with an empty input, like the analyzer's own
    // control: late bytes of an abandoned reply go with the old session.
    port_->clear(QSerialPort::Input);
    port_->clearError();
    return true;
}

void SerialPort::close()
{
    if (port_->isOpen())
        port_->close();
}

bool SerialPort::isOpen() const
{
    return port_->isOpen();
}

bool SerialPort::write(const QByteArray& data)
{
    if (!port_->isOpen())
        return false;
    if (port_->write(data) != data.size())
        return false;
    QDeadlineTimer deadline(kWriteDeadlineMs);
    while (port_->bytesToWrite() > 0) {
        if (deadline.hasExpired() || !port_->waitForBytesWritten(int(deadline.remainingTime())))
            return port_->bytesToWrite() == 0;
    }
    return true;
}

QByteArray SerialPort::readAll()
{
    if (!port_->isOpen())
        return {};
    return port_->readAll();
}

bool SerialPort::waitForReadyRead(int msecs)
{
    if (!port_->isOpen() || msecs < 0)
        return false;
    return port_->waitForReadyRead(msecs);
}

QString SerialPort::deviceName() const
{
    return device_;
}

QString SerialPort::errorText() const
{
    return port_->errorString();
}

} // namespace vex
