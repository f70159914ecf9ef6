#pragma once
// An application folder with days received from a generated USB medium of
// a model "250" (car 12AB00, driver 000123, 260105 and 260106), made once a
// test run by vexcli, and a session started on it as after a login.
#include <QString>
#include <QTemporaryDir>

namespace vex::test {

inline const QString kSiteCar = QStringLiteral("12AB00");
inline const QString kSiteDriver = QStringLiteral("000123");

// The folder of the received site (made on first use); empty when the
// sample or the reception failed, with why in reason.
QString Received_Site(QString* reason = nullptr);

// A copy of the folder from at to, with its links ("exp" for "Exp") as
// links: a site a test may change.
void Copy_Tree(const QString& from, const QString& to);

// Main_Start on the site, its database open and the settings loaded; the
// globals are reset when it goes.
class Site_Session {
public:
    explicit Site_Session(const QString& site);
    ~Site_Session();
    Site_Session(const Site_Session&) = delete;
    Site_Session& operator=(const Site_Session&) = delete;
    bool Ok() const { return ok_; }

private:
    QString cwd_;
    bool ok_ = false;
};

} // namespace vex::test
