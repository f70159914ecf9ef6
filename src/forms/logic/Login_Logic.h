#pragma once
// The rules of the login, without a window.
#include <QString>
#include <functional>

namespace vex::forms {

// The key a login compares: user id and password in capitals, joined
// without a separator ("ab" + "c" passes for "a" + "bc").
QString Login_Key(const QString& user, const QString& password);

// A database optimise of the last session leaves its result as
// "\db\temp2.mdb"; before anything opens the live database it is copied over
// "\db\morix.mdb" and removed. `pump` is called once between the copy and
// the removal. Returns false (leaving the file for the next start) when the
// copy failed; true when there was nothing to do or it was done.
bool Finish_Pending_Optimise(const QString& appDir, const std::function<void()>& pump = {});
bool Pending_Optimise(const QString& appDir);

} // namespace vex::forms
