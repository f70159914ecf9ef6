#include "acquisition/Inbox.h"

#include "acquisition/Cls_IO.h"
#include "acquisition/Inbox_Names.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

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

int Inbox_Pass(Cls_DB& db, const std::function<void(const Inbox_File&)>& done)
{
    const QDir inbox(App_Path(G().App_Dir, QStringLiteral("\\new")));
    int looked = 0;
    // By name, as the desk's file system lists a folder: a pack's days come
    // in the order they were driven, so a day filed twice ends as the later file.
    // Hidden names too: on the desk a name such as "..x.dat" is no hidden file.
    for (const QString& name : inbox.entryList(QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase)) {
        const QString ending = QFileInfo(name).suffix().toUpper();
        if (Is_Speed_File_Name(name))
            continue; // the user's seconds export, no recording
        const QString path = inbox.filePath(name);
        Inbox_File file{name, ending};
        bool keep = false;
        const int failuresBefore = db.Engine_Failures();
        if (ending == QLatin1String("VEX")) {
            file.kind = QStringLiteral("Vex");
            Cls_IO& io = *G().IO;
            file.result = io.Pack_File_Read1(db, path);
            file.why = io.Refusal;
            file.undriven = io.Erased;
        } else if (auto it = Decoders().find(ending); it != Decoders().end()) {
            const Inbox_Verdict verdict = it->second(db, path);
            keep = verdict.keep;
            file.why = verdict.why;
            file.result = keep ? 1 : 0;
        } else {
            continue; // not a recording this pass knows
        }
        if (db.Engine_Failures() != failuresBefore) {
            // Rows of this file did not reach the database: it stays.
            keep = true;
            file.result = 1;
            file.why = QStringLiteral("database: ") + db.Last_Engine_Failure();
        }
        ++looked;
        if (!keep && QFile::exists(path)) {
            file.removed = QFile::remove(path);
            QFile::remove(Filing_Note_Path(path));
        }
        if (done)
            done(file);
    }
    return looked;
}

} // namespace vex
