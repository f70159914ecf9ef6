#include "FuzzApp.h"

#include "core/Cls_Config.h"
#include "core/Mod_Main.h"
#include "core/Settings_Load.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

namespace vex::fuzz {

const QString& App()
{
    static QString dir = [] {
        static int argc = 1;
        static char name[] = "fuzz";
        static char* argv[] = {name, nullptr};
        static QCoreApplication app(argc, argv);
        static QTemporaryDir tmp;
        Init_App_Folder(tmp.path());
        Main_Start(tmp.path());
        G().DB = std::make_unique<Cls_DB>();
        Load_Settings(*G().DB, *G().Config, G());
        return tmp.path();
    }();
    return dir;
}

void Write(const QString& path, const uint8_t* data, size_t size)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(reinterpret_cast<const char*>(data), qint64(size));
}

} // namespace vex::fuzz
