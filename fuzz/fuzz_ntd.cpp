// A day file in \new of any bytes: stored, kept for a later pass, or
// dropped as no day; never more. The first input byte chooses the form: the
// bytes as they are, a saved day of full length, or the day file of the
// "250" road; the bytes fill the header and the start of the arrays.
#include "FuzzApp.h"

#include "acquisition/UsbRecorder.h"
#include "store/DayFile.h"

#include <QByteArray>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace vex;
    if (size == 0)
        return 0;
    const QString path = fuzz::App() + QStringLiteral("/new/fuzz.NTD");
    const auto* p = reinterpret_cast<const char*>(data + 1);
    const qsizetype n = qsizetype(size - 1);
    QByteArray file;
    switch (data[0] % 3) {
    case 0: file = QByteArray(p, n); break;
    case 1:
        file = QByteArray(kSavedNtdFile + data[0] / 3, '\0');
        file.replace(0, std::min<qsizetype>(n, file.size()), QByteArray(p, std::min<qsizetype>(n, file.size())));
        break;
    default:
        file = QByteArray(kNtdFile, '\0');
        file.replace(1, std::min<qsizetype>(n, file.size() - 1), QByteArray(p, std::min<qsizetype>(n, file.size() - 1)));
        break;
    }
    fuzz::Write(path, reinterpret_cast<const uint8_t*>(file.constData()), size_t(file.size()));
    Decode_Ntd(path);
    return 0;
}
