#pragma once
// Download of a site's packages from its FTP server: passive mode always,
// port 7666 whatever the settings say, the remote folder "<firm>_st", each
// file fetched into "\exp" and deleted on the server only after a good
// download. Remote names are untrusted: a name that can't be fetched and
// stored as a plain file of "\exp" is passed over before any download and
// stays on the server. Files come byte for byte. A download goes to a
// hidden temporary name and takes its own only when whole, so a cut
// transfer never reaches the loading step; a zip that doesn't open whole
// stays on the server and the pass goes on with the next file.
#include <QString>
#include <QStringList>
#include <functional>

namespace vex {

class Cls_Config;

struct Ftp_Settings {
    QString agent;     // S_CompanyCode; "00000000": no session at all
    QString host;      // S_IP
    QString user, password;
    QString folder;    // U_Name + "_st"
    int port = 7666;
    int connectSeconds = 20;  // to reach the server and log in
    // A transfer slower than lowSpeedBytes a second over stallSeconds is a
    // failed download: a server that trickles can't hold a run.
    int lowSpeedBytes = 1024;
    int stallSeconds = 60;
};
// The settings of the configuration; the port is 7666, or VEX_FTP_PORT in
// the tests that run their own server.
Ftp_Settings Ftp_Settings_Of(const Cls_Config& cfg);

// The names of a listing, a line each; a name ends at its first NUL.
QStringList Listing_Names(const QByteArray& listing);

// Why a listed name can't be a file of "\exp", empty when it can: it is
// empty, holds a separator, "..", a leading ':' or '.' or a control character, was
// not sent in UTF-8 (it can't be asked for again), or is too long for its
// hidden ".<name>.part" to be a file name (255 bytes).
QString Remote_Name_Refusal(const QString& name);
bool Plain_Remote_Name(const QString& name);

// How one pass ended.
enum class Ftp_Pass_End { Done, No_Session, No_Host, Connect_Failed, Find_Failed, Download_Failed };

struct Ftp_Pass {
    Ftp_Pass_End end = Ftp_Pass_End::Done;
    QStringList downloaded;  // names fetched into \exp
    QStringList passedOver;  // names not fetched, with why
    QStringList damaged;     // zips that arrived but don't open, left on the server
    QString failed;          // the name whose download failed, with Download_Failed
    QString error;           // the transfer's own words ("Timeout was reached")
};
// One pass: list, then each file fetched and deleted, but the names of
// skip. each is told each file before its download. A file fetched is
// recorded as received (Received_Add) before its remote copy is deleted. A
// name that would replace a file of "\exp" not received (the site's own
// backups and exports) is passed over. Hidden ".part" files of a killed
// run are removed first.
Ftp_Pass Ftp_Run_Pass(const Ftp_Settings& s, const QString& expDir, const std::function<void(const QString&)>& each = {},
                      const QStringList& skip = {});

} // namespace vex
