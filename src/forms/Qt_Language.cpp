#include "forms/Qt_Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace vex::forms {

QTranslator* Install_Qt_Translations(Lang lang)
{
    QString name;
    switch (lang) {
    case Lang::Korean: name = QStringLiteral("qt_ko"); break;
    case Lang::Chinese: name = QStringLiteral("qt_zh_CN"); break;
    default: return nullptr;
    }
    // One catalogue for the run; it lives as long as the application.
    auto* catalogue = new QTranslator(QCoreApplication::instance());
    if (!catalogue->load(name, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete catalogue;
        return nullptr;
    }
    QCoreApplication::installTranslator(catalogue);
    return catalogue;
}

} // namespace vex::forms
