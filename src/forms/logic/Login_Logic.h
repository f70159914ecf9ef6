#pragma once
// The rules of the login, without a window.
#include <QString>

namespace vex::forms {

// The key a login compares: user id and password in capitals, joined
// without a separator ("ab" + "c" passes for "a" + "bc").
QString Login_Key(const QString& user, const QString& password);

} // namespace vex::forms
