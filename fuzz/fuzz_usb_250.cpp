// A model "250" log of any bytes: its minute records filed as day files in
// \new, or skipped; never more. The day files are removed after each run
// (fuzz_ntd takes them further).
#include "FuzzApp.h"

#include "acquisition/UsbRecorder.h"

#include <QDir>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace vex;
    const QString& app = fuzz::App();
    const QString path = app + QStringLiteral("/usb/SPDR0403.dat");
    QDir().mkpath(app + QStringLiteral("/usb"));
    fuzz::Write(path, data, size);
    Usb_State() = Usb_Reception{QStringLiteral("12AB00"), QStringLiteral("000123"), {}, {}, {}};
    if (!Decode_Dat250(path))
        std::abort();
    const QString model = Detect_Model(path);
    if (model != QLatin1String("130"))
        std::abort(); // every log this small is a "130" by its size
    QDir inbox(app + QStringLiteral("/new"));
    for (const QString& name : inbox.entryList(QDir::Files))
        inbox.remove(name);
    return 0;
}
