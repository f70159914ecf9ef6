#include "registers/DriverMedium.h"

#include "core/Err_Proc.h"
#include "core/VbText.h"
#include "platform/UsbMedia.h"

#include <QFile>

namespace vex {

namespace {

// The form that writes the medium shares the handler code of the driver
// register's buttons.
constexpr int16_t kErrDriverCommand = 1037;

void Write_At(const QString& path, qint64 at, const QByteArray& bytes)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadWrite))
        throw RunTimeError(QStringLiteral("Path/File access error: ") + path);
    if (f.size() < at && !f.resize(at))
        throw RunTimeError(QStringLiteral("Disk full: ") + path);
    if (!f.seek(at) || f.write(bytes) != bytes.size())
        throw RunTimeError(QStringLiteral("Device I/O error: ") + path);
}

} // namespace

bool Driver_Code_Bytes(const QString& code, unsigned char out[3])
{
    const QString padded = code.rightJustified(6, QLatin1Char('0'));
    for (int i = 0; i < 3; ++i) {
        const int hi = Hex_Digit(padded[2 * i]), lo = Hex_Digit(padded[2 * i + 1]);
        if (hi < 0 || lo < 0)
            return false;
        out[i] = static_cast<unsigned char>(hi * 16 + lo);
    }
    return true;
}

Driver_Medium_Result Write_Driver_To_Medium(const QString& mediumRoot, const QString& code)
{
    Driver_Medium_Result result;
    if (mediumRoot.isEmpty()) {
        result.message = QStringLiteral("메모리 팩이 없읍니다!");
        return result;
    }
    if (code.isEmpty())
        return result;
    Guarded(kErrDriverCommand, [&] {
        unsigned char b[3];
        if (!Driver_Code_Bytes(code, b))
            throw RunTimeError(QStringLiteral("Type mismatch: driver code \"%1\"").arg(code));
        const QByteArray three(reinterpret_cast<const char*>(b), 3);
        Usb_Medium medium;
        medium.root = mediumRoot;
        Write_At(medium.Master(), 32, three);
        Write_At(medium.Master(), 48, QByteArray::fromHex("AA00"));
        Write_At(medium.Driver_File(), 0, three);
        result.written = true;
        result.message = QStringLiteral("저장 완료되었읍니다.");
    });
    return result;
}

} // namespace vex
