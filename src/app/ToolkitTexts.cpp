// SPDX-License-Identifier: MIT
#include "app/ToolkitTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace pintalux {

void translateToolkit(QCoreApplication& application)
{
    auto* translator = new QTranslator(&application);
    if (translator->load(u"qtbase_es"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
}

} // namespace pintalux
