#include "acquisition/Reception.h"

#include "acquisition/UsbRecorder.h"
#include "core/Err_Proc.h"
#include "core/Messages.h"
#include "core/Mod_Main.h"
#include "platform/AppFolder.h"
#include "store/Cls_DB.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

namespace vex {

namespace {

enum : int {
    kTextStored = 5001,
    kTextSkipped = 5002,
    kTextKept = 5003,
    kTextRefused = 5004,
    kTextFailed = 5005,
    kTextFolder = 5006,
    kTextDatabase = 5007,
    kTextNoSystemPage = 5009,
    kTextNotMarked = 5010,
    kTextNoLink = 5011,
    kTextUnsaved = 5018,
    kTextUndriven = 5019,
    kTextBadPack = 183,
    kTextPackCheck = 184,
};

// A folder the program can create a file in (a read-only mount or folder
// says no before anything is received into it).
bool Can_Write_In(const QString& folder)
{
    QTemporaryFile probe(folder + QStringLiteral("/.vex-probe-XXXXXX"));
    return probe.open();
}

// What Pack_Reads' code says went wrong before any day was read; empty for
// the codes that read days (0, 4) and for 5, which is told on its own.
QString Pack_Code_Failure(int16_t code)
{
    switch (code) {
    case 11: return LoadResString(kTextNoLink);
    case 16: return LoadResString(kTextPackCheck);
    case 17: return LoadResString(kTextBadPack);
    case 18: return LoadResString(kTextNoSystemPage);
    default: return code >= 13 && code <= 21 ? LoadResString(kTextBadPack) : QString();
    }
}

} // namespace

QString Reception_Outcome::Summary() const
{
    QStringList parts;
    if (!failure.isEmpty())
        parts << LoadResString(kTextFailed).arg(failure);
    parts << LoadResString(kTextStored).arg(stored.size());
    if (!skipped.empty()) {
        QStringList days;
        for (const Cls_IO::Skipped_Day& s : skipped)
            days << s.day.toString(QStringLiteral("yyMMdd")) + QStringLiteral(" (") + s.why + QLatin1Char(')');
        parts << LoadResString(kTextSkipped).arg(days.join(QStringLiteral(", ")));
    }
    if (!kept.isEmpty())
        parts << LoadResString(kTextKept).arg(kept.join(QStringLiteral(", ")));
    if (!undriven.isEmpty())
        parts << LoadResString(kTextUndriven).arg(undriven.join(QStringLiteral(", ")));
    if (!refused.isEmpty())
        parts << LoadResString(kTextRefused).arg(refused.join(QStringLiteral(", ")));
    return parts.join(QStringLiteral("; "));
}

QString Reception_Precheck(const Cls_DB* db)
{
    const Globals& g = G();
    const QString inbox = App_Path(g.App_Dir, QStringLiteral("\\new"));
    QDir().mkpath(inbox);
    for (const QString& folder : {g.App_Dir, inbox})
        if (!Can_Write_In(folder))
            return LoadResString(kTextFolder).arg(QDir::toNativeSeparators(folder));
    if (!db || db->DB_State() != 1) {
        const QString why = db && !db->Last_Engine_Failure().isEmpty() ? db->Last_Engine_Failure() : Err_Last();
        return LoadResString(kTextDatabase).arg(why);
    }
    return {};
}

void Run_Inbox(Cls_DB& db, Reception_Outcome& outcome, const Reception_Progress& progress, int doneBefore,
               const std::function<void(const Inbox_File&)>& each)
{
    Usb_Reception& usb = Usb_State();
    const int usbBefore = int(usb.stored.size());
    const int files = int(QDir(App_Path(G().App_Dir, QStringLiteral("\\new"))).entryList(QDir::Files | QDir::Hidden).size());
    int done = 0;
    // A progress that throws (a cancel) ends the pass after the file just
    // taken: the files not yet taken stay in \new for the next reception.
    struct Pass_Stopped {
        QString why;
    };
    try {
        Inbox_Pass(db, [&](const Inbox_File& f) {
            if (f.undriven) {
                outcome.undriven << f.name.mid(8, 6);
            } else if (f.kind == QLatin1String("Vex") && f.result == 0) {
                outcome.stored << G().IO->Decoded.Key();
            } else if (f.kind == QLatin1String("Vex") && f.removed) {
                outcome.refused << f.name + QStringLiteral(": ") + f.why;
            } else if (!f.removed && f.result != 0) {
                outcome.kept << f.name + QStringLiteral(": ") + f.why;
            }
            if (each)
                each(f);
            try {
                if (progress)
                    progress(doneBefore + ++done, doneBefore + files, QStringLiteral("file ") + f.name);
            } catch (const std::exception& e) {
                throw Pass_Stopped{QString::fromUtf8(e.what())};
            }
        });
    } catch (const Pass_Stopped& stopped) {
        outcome.failure = stopped.why;
    }
    for (int i = usbBefore; i < usb.stored.size(); ++i)
        if (!outcome.stored.contains(usb.stored[i]))
            outcome.stored << usb.stored[i];
}

int Read_Pack_Days(Reception_Outcome& outcome, bool useRange, const QDate& from, const QDate& to,
                   const Reception_Progress& progress)
{
    int daysRead = 0;
    Globals& g = G();
    Cls_IO& io = *g.IO;
    io.Range_Selected = useRange;
    if (useRange) {
        const QString a = from.toString(QStringLiteral("yyMMdd"));
        const QString b = to.toString(QStringLiteral("yyMMdd"));
        io.System_Page.packInsert = a + QStringLiteral("0000");
        io.System_Page.dbWriteDate = a + QStringLiteral("0000");
        io.System_Page.packLastWrite = b + QStringLiteral("2359");
    }
    // Each day read is a file to store after: the bar runs over both.
    const int waiting = int(QDir(App_Path(g.App_Dir, QStringLiteral("\\new"))).entryList(QDir::Files | QDir::Hidden).size());
    io.Progress = [&](int done, int all, const QDate& day) {
        daysRead = all;
        if (progress)
            progress(done, 2 * all + waiting, QStringLiteral("read ") + day.toString(QStringLiteral("yyMMdd")));
    };
    const int16_t code = io.Pack_Reads();
    io.Progress = nullptr;
    outcome.skipped = io.Skipped;
    outcome.failure = Pack_Code_Failure(code);
    if (code == 5)
        outcome.failure = LoadResString(kTextNotMarked);
    return daysRead;
}

Reception_Outcome Receive_Pack_Days(bool useRange, const QDate& from, const QDate& to,
                                    const Reception_Progress& progress,
                                    const std::function<void(const Inbox_File&)>& each)
{
    Reception_Outcome outcome;
    outcome.failure = Reception_Precheck(G().DB.get());
    if (!outcome.failure.isEmpty())
        return outcome;
    const int daysRead = Read_Pack_Days(outcome, useRange, from, to, progress);
    // Files of an earlier reception are taken as well, whatever the pack said.
    Run_Inbox(*G().DB, outcome, progress, daysRead, each);
    return outcome;
}

Filing_Note Usb_Reception_Note(const Usb_Master& master, const QString& from, const QString& to)
{
    return Filing_Note{master.car, master.driver, Is_Day(from) ? from : QStringLiteral("000101"),
                       Is_Day(to) ? to : QStringLiteral("991231")};
}

Reception_Outcome Receive_Usb_Log(Cls_DB& db, const QString& model, const QString& spdrPath, const Filing_Note& who,
                                  const Reception_Progress& progress,
                                  const std::function<void(const Inbox_File&)>& each)
{
    Reception_Outcome outcome;
    outcome.failure = Reception_Precheck(&db);
    if (outcome.failure.isEmpty())
        outcome.failure = No_Log_Refusal(spdrPath);
    if (!outcome.failure.isEmpty())
        return outcome;
    Usb_Reception& state = Usb_State();
    state = Usb_Reception{who.car, who.driver, who.from, who.to, {}};
    if (model == QLatin1String("130")) {
        if (File_Dat130(spdrPath, who, G().IO->Today_Date()).isEmpty())
            outcome.failure = Err_Last();
    } else if (!Decode_Dat250(db, spdrPath)) {
        outcome.failure = Err_Last();
    } else if (!state.unsaved.isEmpty()) {
        outcome.failure = LoadResString(kTextUnsaved).arg(state.unsaved.join(QStringLiteral(", ")));
    }
    // A progress that throws (a cancel) skips the inbox pass: what the log
    // filed in \new waits there for the next reception.
    bool goOn = true;
    try {
        if (progress)
            progress(1, 1, QStringLiteral("read ") + QFileInfo(spdrPath).fileName());
    } catch (const std::exception& e) {
        outcome.failure = QString::fromUtf8(e.what());
        goOn = false;
    }
    // Files of an earlier reception are taken as well.
    if (goOn)
        Run_Inbox(db, outcome, progress, 1, each);
    state = Usb_Reception{};
    return outcome;
}

} // namespace vex
