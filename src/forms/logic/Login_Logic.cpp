#include "forms/logic/Login_Logic.h"


namespace vex::forms {

QString Login_Key(const QString& user, const QString& password)
{
    return (user + password).toUpper();
}

} // namespace vex::forms
