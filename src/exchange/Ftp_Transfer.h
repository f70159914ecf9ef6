#pragma once
// Download of a site's packages from its FTP server: passive mode always,
// port 7666 whatever the settings say, the remote folder "<firm>_st", each
// file fetched into "\exp" and deleted on the server only after a good
// download. Remote names are untrusted: a name that isn't a plain file name
// is passed over and stays on the server. Files come byte for byte. A download goes to a temporary
// name and takes its own only when whole, so a cut transfer never reaches
// the loading step; a zip must open whole before its remote copy goes.
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
    int stallSeconds = 60;    // a transfer that moves nothing this long is given up
};
// The settings of the configuration; the port is 7666, or VEX_FTP_PORT in
// the tests that run their own server.
Ftp_Settings Ftp_Settings_Of(const Cls_Config& cfg);

// The names of a listing, a line each; a name ends at its first NUL.
QStringList Listing_Names(const QByteArray& listing);

// True for a listed name that may be a file of "\exp": not empty, no
// separator, no "..", no leading ':', at most 255 bytes.
bool Plain_Remote_Name(const QString& name);

// How one pass ended.
enum class Ftp_Pass_End { Done, No_Session, No_Host, Connect_Failed, Find_Failed, Download_Failed };

struct Ftp_Pass {
    Ftp_Pass_End end = Ftp_Pass_End::Done;
    QStringList downloaded;  // names fetched into \exp
    QStringList passedOver;  // names not fetched, with why
    QString error;           // the transfer's own words ("Timeout was reached")
};
// One pass: list, then each file fetched and deleted. each is told each
// file before its download.
Ftp_Pass Ftp_Run_Pass(const Ftp_Settings& s, const QString& expDir, const std::function<void(const QString&)>& each = {});

} // namespace vex
