#pragma once
// A caption is a message of the table, or fixed Korean that stays Korean in
// every language.
#include "core/Messages.h"

#include <QString>

namespace vex::forms {

inline QString Caption_Of(int id, const QString& fixed = {})
{
    return id ? LoadResString(id) : fixed;
}

} // namespace vex::forms
