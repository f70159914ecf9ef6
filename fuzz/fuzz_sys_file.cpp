// A system page of any bytes: accepted with repaired stamps, or refused.
#include "FuzzApp.h"

#include "acquisition/Cls_IO.h"
#include "core/Mod_Main.h"
#include "store/Cls_DB.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    vex::fuzz::Write(vex::fuzz::App() + QStringLiteral("/Dat/SysRead.Vex"), data, size);
    if (vex::G().IO->Pack_SysFile_Read()) {
        // An accepted page always carries stamps of ten characters that start with digits.
        const vex::Cls_DB& db = *vex::G().DB;
        for (const QString* s : {&db.SysPackLastWrite, &db.SysDBWriteDate})
            if (s->size() != 10 || !s->left(6).toInt())
                std::abort();
    }
    return 0;
}
