#include "acquisition/Inbox.h"

#include "acquisition/Cls_IO.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <map>

namespace vex {

namespace {

std::map<QString, Inbox_Decoder>& Decoders()
{
    static std::map<QString, Inbox_Decoder> decoders;
    return decoders;
}

} // namespace

void Register_Inbox_Decoder(const QString& ending, Inbox_Decoder decoder)
{
    Decoders()[ending.toUpper()] = std::move(decoder);
}

int Inbox_Pass(const std::function<void(const Inbox_File&)>& done)
{
    const QDir inbox(App_Path(G().App_Dir, QStringLiteral("\\new")));
    int decoded = 0;
    // By name, as the desk's file system lists a folder: a pack's days come
    // in the order they were driven, so a day filed twice ends as the later file.
    for (const QString& name : inbox.entryList(QDir::Files, QDir::Name | QDir::IgnoreCase)) {
        const QString ending = QFileInfo(name).suffix().toUpper();
        const QString path = inbox.filePath(name);
        Inbox_File file{name, ending};
        bool remove = true;
        if (ending == QLatin1String("VEX")) {
            file.kind = QStringLiteral("Vex");
            file.result = G().IO->Pack_File_Read1(path);
        } else if (auto it = Decoders().find(ending); it != Decoders().end()) {
            remove = it->second(path);
            file.result = remove ? 0 : 1;
        } else {
            continue; // not a recording this pass knows
        }
        ++decoded;
        if (remove && QFile::exists(path))
            file.removed = QFile::remove(path);
        if (done)
            done(file);
    }
    return decoded;
}

} // namespace vex
