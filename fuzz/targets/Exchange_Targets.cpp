// What comes from other sites: a package of any bytes imported as a user
// imports one, and the names an FTP listing brings. Nothing of either may
// write outside the application folder; a name taken for a file of "\exp"
// must stay in it, and a trip file's place must be "\pack\<car>\<day>\".
#include "targets/Fuzz_Targets.h"

#include "acquisition/Inbox_Names.h"
#include "core/Mod_Main.h"
#include "exchange/Data_Package.h"
#include "exchange/Db_Source.h"
#include "exchange/Ftp_Transfer.h"
#include "exchange/Remote_Reception.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"
#include "store/Day_Store.h"

#include <QDir>

namespace vex::fuzz {

void Package(Sandbox& box, std::span<const uint8_t> input)
{
    const QByteArray bytes = Bytes(input);
    const QString zip = box.Write(QStringLiteral("Exp/in.zip"), bytes);
    Import_Package(*G().DB, zip);
    // The header decides, whatever the name: the first bytes tell.
    const Db_File_Kind kind = Db_Header_Kind(bytes.left(32));
    if (bytes.startsWith(QByteArrayLiteral("SQLite format 3\0")) != (kind == Db_File_Kind::Sqlite))
        box.Fault(QStringLiteral("the SQLite header was judged wrongly"));
}

void Remote_Names(Sandbox& box, std::span<const uint8_t> input)
{
    const QString exp = box.Path(QStringLiteral("Exp"));
    const QString pack = box.Path(QStringLiteral("pack"));
    for (const QString& name : Listing_Names(Bytes(input))) {
        if (name.contains(QChar(0)))
            box.Fault(QStringLiteral("a listed name keeps its NUL"));
        if (Plain_Remote_Name(name) && !Inside_Folder(exp, exp + QLatin1Char('/') + name))
            box.Fault(QStringLiteral("the name '%1' leaves \\exp").arg(name));
        const QString target = Trip_File_Target(exp + QLatin1Char('/') + name);
        if (target.isEmpty())
            continue;
        const QString local = box.Path(target);
        const QStringList parts = QDir(pack).relativeFilePath(local).split(QLatin1Char('/'));
        if (!Inside_Folder(pack, local) || parts.size() != 3 || !Is_Code(parts[0]) || !Is_Day(parts[1])
            || Day_File_Key(target).isEmpty())
            box.Fault(QStringLiteral("the trip file '%1' goes to '%2'").arg(name, target));
    }
}

} // namespace vex::fuzz
