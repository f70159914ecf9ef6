// A filed pack day of any bytes: decoded and stored, or refused; never more.
#include "FuzzApp.h"

#include "acquisition/Cls_IO.h"
#include "core/Mod_Main.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = vex::fuzz::App() + QStringLiteral("/new/fuzz.Vex");
    vex::fuzz::Write(path, data, size);
    const int16_t result = vex::G().IO->Pack_File_Read1(path);
    if (result != 0 && result != 1)
        std::abort();
    return 0;
}
