#include "exchange/Ftp_Transfer.h"

#include "core/Cls_Config.h"
#include "core/Printable.h"
#include "exchange/Package.h"
#include "exchange/Received_Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <curl/curl.h>
#include <memory>

namespace vex {

namespace {

struct Curl_Closer {
    void operator()(CURL* c) const { curl_easy_cleanup(c); }
};
using Curl_Handle = std::unique_ptr<CURL, Curl_Closer>;

struct Multi_Closer {
    void operator()(CURLM* m) const { curl_multi_cleanup(m); }
};
using Multi_Handle = std::unique_ptr<CURLM, Multi_Closer>;

size_t To_Buffer(char* data, size_t size, size_t n, void* out)
{
    static_cast<QByteArray*>(out)->append(data, qsizetype(size * n));
    return size * n;
}

size_t To_File(char* data, size_t size, size_t n, void* out)
{
    return size_t(static_cast<QFile*>(out)->write(data, qint64(size * n)));
}

QString Url(const Ftp_Settings& s, const QString& name = {})
{
    return QStringLiteral("ftp://%1:%2/%3/%4")
        .arg(s.host)
        .arg(s.port)
        .arg(QString::fromLatin1(QUrl::toPercentEncoding(s.folder)), QString::fromLatin1(QUrl::toPercentEncoding(name)));
}

// A handle with what every call of the pass shares: passive mode, the
// account, the time limits.
Curl_Handle Session(const Ftp_Settings& s)
{
    Curl_Handle c(curl_easy_init());
    if (!c)
        return c;
    curl_easy_setopt(c.get(), CURLOPT_USERAGENT, s.agent.toUtf8().constData());
    curl_easy_setopt(c.get(), CURLOPT_USERNAME, s.user.toUtf8().constData());
    curl_easy_setopt(c.get(), CURLOPT_PASSWORD, s.password.toUtf8().constData());
    curl_easy_setopt(c.get(), CURLOPT_FTP_USE_EPSV, 1L);  // passive: EPSV, then PASV
    curl_easy_setopt(c.get(), CURLOPT_FTPPORT, nullptr);
    curl_easy_setopt(c.get(), CURLOPT_CONNECTTIMEOUT, long(s.connectSeconds));
    curl_easy_setopt(c.get(), CURLOPT_SERVER_RESPONSE_TIMEOUT, long(s.connectSeconds));
    curl_easy_setopt(c.get(), CURLOPT_LOW_SPEED_LIMIT, long(s.lowSpeedBytes));
    curl_easy_setopt(c.get(), CURLOPT_LOW_SPEED_TIME, long(s.stallSeconds));
    curl_easy_setopt(c.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(c.get(), CURLOPT_PROTOCOLS_STR, "ftp");
    return c;
}

// One call of the pass, run to its end; the multi handle keeps the control
// connection between calls. Not curl_easy_perform: when the answer to EPSV
// is already in as libcurl looks for it right after sending (a near server,
// or a client that lost the processor just then), libcurl 7.88 ends that
// round with the data connection set up but not started, and no socket to
// wait on; curl_easy_perform then sleeps a full second before the next
// round. Here a round that leaves no socket is followed by the next at
// once; a second one in a row waits as libcurl's own loop would (until its
// next timer, at most a second).
CURLcode Perform(CURLM* multi, CURL* c)
{
    if (curl_multi_add_handle(multi, c) != CURLM_OK)
        return CURLE_FAILED_INIT;
    CURLMcode m = CURLM_OK;
    bool noSocketBefore = false;
    for (;;) {
        int running = 0;
        m = curl_multi_perform(multi, &running);
        if (m != CURLM_OK || running == 0)
            break;
        fd_set read, write, except;
        FD_ZERO(&read);
        FD_ZERO(&write);
        FD_ZERO(&except);
        int maxFd = -1;
        curl_multi_fdset(multi, &read, &write, &except, &maxFd);
        const bool noSocket = maxFd < 0;
        if (noSocket && !noSocketBefore) {
            noSocketBefore = true;
            continue;
        }
        noSocketBefore = false;
        m = curl_multi_poll(multi, nullptr, 0, 1000, nullptr);
        if (m != CURLM_OK)
            break;
    }
    CURLcode code = m == CURLM_OUT_OF_MEMORY ? CURLE_OUT_OF_MEMORY : CURLE_FAILED_INIT;
    int queued = 0;
    while (const CURLMsg* msg = curl_multi_info_read(multi, &queued))
        if (msg->msg == CURLMSG_DONE && msg->easy_handle == c)
            code = msg->data.result;
    curl_multi_remove_handle(multi, c);
    return code;
}

bool Connect_Error(CURLcode code)
{
    return code == CURLE_COULDNT_CONNECT || code == CURLE_COULDNT_RESOLVE_HOST || code == CURLE_LOGIN_DENIED
           || code == CURLE_OPERATION_TIMEDOUT || code == CURLE_FTP_WEIRD_SERVER_REPLY || code == CURLE_RECV_ERROR
           || code == CURLE_GOT_NOTHING;
}

} // namespace

Ftp_Settings Ftp_Settings_Of(const Cls_Config& cfg)
{
    Ftp_Settings s;
    s.agent = cfg.S_CompanyCode;
    s.host = cfg.S_IP.trimmed();
    s.user = cfg.S_User;
    s.password = cfg.S_Password;
    s.folder = cfg.U_Name + QStringLiteral("_st");
    if (const int port = qEnvironmentVariableIntValue("VEX_FTP_PORT"); port > 0)
        s.port = port;
    return s;
}

QStringList Listing_Names(const QByteArray& listing)
{
    QStringList names;
    for (const QByteArray& line : listing.split('\n')) {
        QByteArray name = line;
        if (const qsizetype nul = name.indexOf('\0'); nul >= 0)
            name.truncate(nul); // a name ends at its first NUL
        name = name.trimmed();
        if (!name.isEmpty())
            names << QString::fromUtf8(name);
    }
    return names;
}

QString Remote_Name_Refusal(const QString& name)
{
    if (name.isEmpty())
        return QStringLiteral("an empty name");
    if (std::any_of(name.begin(), name.end(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7f; }))
        return QStringLiteral("control characters in the name");
    // Bytes that aren't UTF-8 came back as U+FFFD: the server wouldn't know
    // the name we'd ask for.
    if (name.contains(QChar::ReplacementCharacter))
        return QStringLiteral("the name is not in UTF-8");
    // A leading ':' would make a path of the program's resources; a leading
    // '.' a hidden file such as the list of received files.
    if (name.startsWith(QLatin1Char(':')) || name.startsWith(QLatin1Char('.')) || name.contains(QLatin1Char('/'))
        || name.contains(QLatin1Char('\\')) || name.contains(QLatin1String("..")) || name.endsWith(QLatin1String(".part")))
        return QStringLiteral("not a plain file name");
    // The download's hidden ".<name>.part" must be a file name too.
    if (name.toUtf8().size() + 6 > 255)
        return QStringLiteral("the name is too long");
    return {};
}

bool Plain_Remote_Name(const QString& name)
{
    return Remote_Name_Refusal(name).isEmpty();
}

Ftp_Pass Ftp_Run_Pass(const Ftp_Settings& s, const QString& expDir, const std::function<void(const QString&)>& each,
                      const QStringList& skip)
{
    Ftp_Pass pass;
    // A killed run's hidden downloads.
    for (const QString& part : QDir(expDir).entryList({QStringLiteral(".*.part")}, QDir::Files | QDir::Hidden))
        QFile::remove(QDir(expDir).filePath(part));
    if (s.agent == QLatin1String("00000000")) {
        pass.end = Ftp_Pass_End::No_Session;
        return pass;
    }
    Curl_Handle c = Session(s);
    const Multi_Handle multi(curl_multi_init());
    if (!c || !multi) {
        pass.end = Ftp_Pass_End::No_Session;
        return pass;
    }
    if (s.host.isEmpty()) {
        pass.end = Ftp_Pass_End::No_Host;
        return pass;
    }
    char error[CURL_ERROR_SIZE] = {0};
    curl_easy_setopt(c.get(), CURLOPT_ERRORBUFFER, error);

    // The listing: names only, of the firm's folder.
    QByteArray listing;
    curl_easy_setopt(c.get(), CURLOPT_URL, Url(s).toUtf8().constData());
    curl_easy_setopt(c.get(), CURLOPT_DIRLISTONLY, 1L);
    curl_easy_setopt(c.get(), CURLOPT_WRITEFUNCTION, To_Buffer);
    curl_easy_setopt(c.get(), CURLOPT_WRITEDATA, &listing);
    CURLcode code = Perform(multi.get(), c.get());
    if (code != CURLE_OK) {
        pass.error = QString::fromUtf8(error[0] ? error : curl_easy_strerror(code));
        pass.end = Connect_Error(code) ? Ftp_Pass_End::Connect_Failed : Ftp_Pass_End::Find_Failed;
        return pass;
    }
    const QStringList names = Listing_Names(listing);
    if (names.isEmpty()) {
        pass.end = Ftp_Pass_End::Find_Failed;
        return pass;
    }

    // Every name is judged before the first download, so that a name that
    // can't be fetched never stops the pass ahead of the files behind it.
    QDir().mkpath(expDir);
    const QStringList received = Received_Names(expDir);
    QStringList wanted;
    for (const QString& name : names) {
        QString why = Remote_Name_Refusal(name);
        if (why.isEmpty() && QFileInfo::exists(QDir(expDir).filePath(name)) && !received.contains(name))
            why = QStringLiteral("a file of this site has that name");
        if (!why.isEmpty())
            pass.passedOver << Printable(name, 80) + QStringLiteral(": ") + why;
        else if (!skip.contains(name))
            wanted << name;
    }

    curl_easy_setopt(c.get(), CURLOPT_DIRLISTONLY, 0L);
    // Byte for byte. The desk's transfers asked for ASCII and got the bytes
    // unchanged from the sites' servers; here an ASCII transfer rewrites line
    // ends, which would damage every package.
    curl_easy_setopt(c.get(), CURLOPT_TRANSFERTEXT, 0L);
    for (const QString& name : wanted) {
        if (each)
            each(name);
        const QString target = expDir + QLatin1Char('/') + name;
        const QString part = expDir + QStringLiteral("/.") + name + QStringLiteral(".part");
        const auto fail = [&](const QString& why) {
            QFile::remove(part);
            pass.error = why;
            pass.failed = name;
            pass.end = Ftp_Pass_End::Download_Failed;
            return pass;
        };
        QFile out(part);
        if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return fail(QStringLiteral("cannot write ") + part);
        error[0] = 0;
        curl_easy_setopt(c.get(), CURLOPT_URL, Url(s, name).toUtf8().constData());
        curl_easy_setopt(c.get(), CURLOPT_WRITEFUNCTION, To_File);
        curl_easy_setopt(c.get(), CURLOPT_WRITEDATA, &out);
        curl_easy_setopt(c.get(), CURLOPT_QUOTE, nullptr);
        curl_easy_setopt(c.get(), CURLOPT_NOBODY, 0L);
        code = Perform(multi.get(), c.get());
        out.close();
        if (code != CURLE_OK)
            return fail(QString::fromUtf8(error[0] ? error : curl_easy_strerror(code)));
        // Arrived whole but no package: it stays on the server, named in the
        // run's report, and the pass goes on.
        if (name.endsWith(QLatin1String(".zip"), Qt::CaseInsensitive) && !Zip_Opens(part)) {
            QFile::remove(part);
            pass.damaged << name;
            continue;
        }
        QFile::remove(target); // over a received file of that name
        if (!QFile::rename(part, target) || !Received_Add(expDir, name))
            return fail(QStringLiteral("cannot write ") + target);
        pass.downloaded << name;
        // Only now the server's copy goes; the result isn't looked at.
        curl_slist* dele = curl_slist_append(nullptr, (QStringLiteral("DELE ") + name).toUtf8().constData());
        curl_easy_setopt(c.get(), CURLOPT_URL, Url(s).toUtf8().constData());
        curl_easy_setopt(c.get(), CURLOPT_QUOTE, dele);
        curl_easy_setopt(c.get(), CURLOPT_NOBODY, 1L);
        Perform(multi.get(), c.get());
        curl_easy_setopt(c.get(), CURLOPT_QUOTE, nullptr);
        curl_slist_free_all(dele);
    }
    return pass;
}

} // namespace vex
