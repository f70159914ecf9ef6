// A model "130" log of any bytes: the three regions decoded and stored, or
// skipped; never more. The first input byte chooses the form: a file of the
// bytes as they are (cut short anywhere), or a whole log with the bytes laid
// into the hour, event and minute regions so that every pass sees them.
#include "FuzzApp.h"

#include "acquisition/UsbRecorder.h"

#include <QByteArray>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace vex;
    const QString path = fuzz::App() + QStringLiteral("/new/12AB00260105.dat");
    if (size == 0)
        return 0;
    Usb_State() = Usb_Reception{QStringLiteral("12AB00"), QStringLiteral("000123"), {}, {}, {}};
    if (data[0] & 1) {
        fuzz::Write(path, data + 1, size - 1);
    } else {
        QByteArray log(kDat130Filed, char(0xFF));
        const auto* p = reinterpret_cast<const char*>(data + 1);
        const qsizetype n = qsizetype(size - 1);
        const qsizetype third = n / 3;
        log.replace(0, third, QByteArray(p, third));
        log.replace(kEventRegion130, third, QByteArray(p + third, third));
        log.replace(kMinuteRegion130B - 2 * kMinuteRecord130, n - 2 * third, QByteArray(p + 2 * third, n - 2 * third));
        fuzz::Write(path, reinterpret_cast<const uint8_t*>(log.constData()), size_t(log.size()));
    }
    if (!Decode_Dat130(path))
        std::abort();
    return 0;
}
