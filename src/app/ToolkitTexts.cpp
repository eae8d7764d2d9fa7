#include "app/ToolkitTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace pintalux {

void translateToolkit(QCoreApplication& application)
{
    auto* translator = new QTranslator(&application);
    if (translator->load(u"qtbase_es"_qs, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
}

} // namespace pintalux
