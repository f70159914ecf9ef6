#pragma once
// Qt's own dialogs (print, preview, file, message box buttons) in the
// language the system's texts are shown in, from the translations Debian
// ships with Qt; the system's own texts stay those of its message table.
#include "core/Messages.h"

class QTranslator;

namespace vex::forms {

// Installs Qt's catalogue of lang on the running application and answers
// it (owned by the application); null when the language needs none
// (English) or it is not installed.
QTranslator* Install_Qt_Translations(Lang lang);

} // namespace vex::forms
