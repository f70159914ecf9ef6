#include "exchange/Day_Files_Move.h"

#include "core/Err_Proc.h"
#include "store/Cls_DB.h"
#include "store/DayFile.h"
#include "store/Day_Store.h"
#include "store/EventDetector.h"

#include <QDir>
#include <QDirIterator>

namespace vex {

namespace {

// The day files under "\pack" as system paths, in name order.
QStringList Local_Day_Files()
{
    const QDir pack(Local_Path(QStringLiteral("\\pack")));
    QStringList paths;
    for (QDirIterator files(pack.absolutePath(), {QStringLiteral("*.vex"), QStringLiteral("*.VEX")}, QDir::Files,
                            QDirIterator::Subdirectories);
         files.hasNext();)
        paths << QStringLiteral("\\pack\\") + pack.relativeFilePath(files.next()).replace(QLatin1Char('/'), QLatin1Char('\\'));
    paths.sort();
    return paths;
}

// The server's file with the entries of this machine's added where it has
// none: the merge of two recordings of one day.
QByteArray Merged(const DayFile& stored, const DayFile& local)
{
    DayFile out = stored;
    Merge_Entries(out.speed, local.speed, 1, kDaySeconds);
    Merge_Entries(out.engine, local.engine, 1, kDaySeconds);
    if (!local.half.empty()) {
        if (out.half.empty())
            out.half.assign(kHalfArray, 0);
        Merge_Entries(out.half, local.half, 1, 2 * kDaySeconds);
    }
    return Day_File_Bytes(out);
}

} // namespace

Day_Files_Move_Report Move_Day_Files_To_Database(Cls_DB& live, const std::function<void(int, int)>& progress)
{
    Day_Files_Move_Report r;
    if (!Day_Files_In_Database(live)) {
        r.message = QStringLiteral("the database is a file of this machine: its day files stay under \\pack");
        return r;
    }
    r.ok = Guarded(kErrDayFilesMove, [&] {
        Ensure_Day_File_Table(live);
        const QStringList paths = Local_Day_Files();
        for (int i = 0; i < paths.size(); ++i) {
            const QString& path = paths[i];
            const QString local = Local_Path(path);
            if (Day_File_Key(path).isEmpty()) {
                r.refused << local + QStringLiteral(": not the name of a day file");
            } else {
                // Read and checked before anything is written; each day in a
                // transaction of its own, held against a reception of the
                // same day on another PC.
                const QByteArray bytes = Read_Day_Bytes(live, Day_File_Ref{{}, local});
                try {
                    const DayFile file = Day_File_Of(bytes, local);
                    Cls_DB::Transaction day(live);
                    Lock_Day_File(live, path);
                    const Day_File_Ref stored = Find_Day_File(live, path);
                    if (stored.Found()) {
                        Store_Day_Bytes(live, path, Merged(Read_Day_File(live, stored), file));
                        ++r.merged;
                    } else {
                        Store_Day_Bytes(live, path, bytes);
                        ++r.stored;
                    }
                    day.Commit();
                } catch (const RunTimeError& e) {
                    if (live.Engine_Failures() > 0)
                        throw;
                    r.refused << QString::fromUtf8(e.what());
                }
            }
            if (progress)
                progress(i + 1, int(paths.size()));
        }
    });
    r.message = r.ok ? QStringLiteral("완료") : Err_Last();
    return r;
}

} // namespace vex
