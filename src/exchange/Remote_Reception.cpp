#include "exchange/Remote_Reception.h"

#include "core/Codes.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "core/Printable.h"
#include "exchange/Data_Package.h"
#include "exchange/Received_Files.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"
#include "store/Day_Store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vex {

namespace {

const QString kNoLink = QStringLiteral("연결실패");
const QString kNoData = QStringLiteral("데이터가 없읍니다");

QString Exp_Dir()
{
    return App_Path(G().App_Dir, QStringLiteral("\\exp"));
}

bool Is_Zip(const QString& name)
{
    return name.endsWith(QLatin1String(".zip")) || name.endsWith(QLatin1String(".ZIP"));
}

QString With_Why(const QString& text, const QString& error)
{
    return error.isEmpty() ? text : text + QStringLiteral(" (") + error + QLatin1Char(')');
}

} // namespace

QString Trip_File_Target(const QString& path)
{
    const QString tail = path.right(22);
    if (tail.size() != 22 || tail.right(4).toUpper() != QLatin1String(".VEX"))
        return {};
    const QString car = tail.left(6), date = tail.mid(6, 6), time = tail.mid(12, 6);
    if (!Is_Code(car) || !Is_Day(date) || time.size() != 6 || !std::all_of(time.begin(), time.end(), [](QChar c) {
            return c >= u'0' && c <= u'9';
        }))
        return {};
    return QStringLiteral("\\pack\\%1\\%2\\%2%3.vex").arg(car, date, time);
}

void Remote_Load(Cls_DB& live, Remote_Outcome& out, const Exchange_Progress& progress,
                 const std::function<void(const QString&)>& say)
{
    const auto tell = [&](const QString& message) {
        out.messages << message;
        if (say)
            say(message);
    };
    out.loadingRan = true;
    const QString exp = Exp_Dir();
    const QStringList files = Received_Names(exp);
    if (files.isEmpty())
        return;
    if (std::none_of(files.begin(), files.end(), Is_Zip)) {
        tell(kNoData);
        return;
    }
    tell(LoadResString(1241));
    const auto done = [&](const QString& name) {
        QFile::remove(QDir(exp).filePath(name));
        Received_Drop(exp, name);
        out.loaded << name;
    };
    // Refused: out of the way of every later press, kept for a look.
    const auto setAside = [&](const QString& name, const QString& why) {
        const QString aside = QDir(exp).filePath(QStringLiteral("refused"));
        QDir().mkpath(aside);
        QFile::remove(QDir(aside).filePath(name));
        if (!QFile::rename(QDir(exp).filePath(name), QDir(aside).filePath(name)))
            QFile::remove(QDir(exp).filePath(name));
        Received_Drop(exp, name);
        out.kept << name + QStringLiteral(": ") + why;
    };
    // Packages: each through the import of packages, whole or not at all.
    for (const QString& name : Received_Names(exp)) {
        if (!Is_Zip(name))
            continue;
        const Exchange_Report r =
            Import_Package(live, QDir(exp).filePath(name), true, progress, Ledger_Road::Remote, QStringLiteral(" by FTP"));
        out.rowsRefused << r.refused;
        if (r.ok)
            done(name);
        else
            setAside(name, r.message);
    }
    // Loose trip files: filed by the last 22 characters of their path.
    for (const QString& name : Received_Names(exp)) {
        if (name.right(3).toUpper() != QLatin1String("VEX"))
            continue;
        const QString from = QDir(exp).filePath(name), target = Trip_File_Target(from);
        if (target.isEmpty()) {
            setAside(name, QStringLiteral("no car, day and time in its name"));
            continue;
        }
        if (Guarded(kErrRemoteLoad, [&] { Store_Day_File_From(live, target, from); }))
            done(name);
    }
    // Loose databases, table by table.
    for (const QString& name : Received_Names(exp)) {
        if (!(name.endsWith(QLatin1String("exp.mdb")) || name.right(3) == QLatin1String("mdb")
              || name.right(3) == QLatin1String("MDB")))
            continue;
        const QString path = QDir(exp).filePath(name);
        QString error;
        const std::unique_ptr<Db_Source> source = Db_Source::Open(path, &error);
        const bool ok = source && Guarded(kErrRemoteLoad, [&] {
            std::vector<Source_Table> read;
            for (const QString& t : Package_Tables())
                read.push_back(source->Read(t));
            for (size_t i = 0; i < read.size(); ++i)
                Copy_Rows(live, Package_Tables()[int(i)], read[i], progress, &out.rowsRefused);
        });
        if (ok)
            done(name);
        else
            setAside(name, source ? Err_Last() : error);
    }
}

Remote_Outcome Remote_Transfer(const Ftp_Settings& s, const std::function<void(const QString&)>& each)
{
    Remote_Outcome out;
    const QString exp = Exp_Dir();
    QStringList skip; // files that failed in the first pass
    const auto finish = [&](bool loadingDue) {
        out.loadingDue = loadingDue;
        out.passedOver.removeDuplicates();
        out.refused.removeDuplicates();
        return out;
    };
    for (int passNo = 1; passNo <= 2; ++passNo) {
        const Ftp_Pass pass = Ftp_Run_Pass(s, exp, each, skip);
        out.downloaded << pass.downloaded;
        out.passedOver << pass.passedOver;
        for (const QString& name : pass.damaged)
            out.refused << name + QStringLiteral(": arrived damaged, left on the server");
        skip << pass.damaged;
        switch (pass.end) {
        case Ftp_Pass_End::Done:
            continue;
        case Ftp_Pass_End::No_Session:
            // No account: nothing on the network, the loading step runs on
            // what lies in "\exp".
            out.messages << kNoLink;
            if (passNo == 1 && s.agent != QLatin1String("00000000"))
                out.messages << kNoLink;
            if (passNo == 2 || s.agent == QLatin1String("00000000"))
                return finish(true);
            continue;
        case Ftp_Pass_End::No_Host:
            return finish(false);
        case Ftp_Pass_End::Connect_Failed:
            out.messages << With_Why(kNoLink, pass.error);
            return finish(passNo == 2);
        case Ftp_Pass_End::Find_Failed:
            if (passNo == 1)
                out.messages << kNoData;
            return finish(passNo == 2);
        case Ftp_Pass_End::Download_Failed:
            out.messages << With_Why(kNoLink, pass.error);
            out.refused << Printable(pass.failed, 80) + QStringLiteral(": ") + pass.error;
            skip << pass.failed;
            continue;
        }
    }
    return finish(true);
}

Remote_Outcome Remote_Reception(Cls_DB& live, const Ftp_Settings& s, const std::function<void(const QString&)>& each,
                                const Exchange_Progress& progress)
{
    Remote_Outcome out = Remote_Transfer(s, each);
    if (out.loadingDue)
        Remote_Load(live, out, progress);
    return out;
}

} // namespace vex
