#pragma once
// A site's FTP server on loopback (tests/support/ftp_server.py, pyftpdlib),
// stopped when it goes.
#include <QProcess>
#include <QString>

namespace vex::test {

class FtpServer {
public:
    FtpServer(const QString& root, const QString& user, const QString& password, bool slow = false);
    ~FtpServer();
    FtpServer(const FtpServer&) = delete;
    FtpServer& operator=(const FtpServer&) = delete;
    // The port it listens on; 0 when it didn't start.
    int Port() const { return port_; }
    void Stop();

private:
    QProcess process_;
    int port_ = 0;
};

} // namespace vex::test
