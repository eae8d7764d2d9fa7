#include "platform/ThemeName.h"

#include <QRegularExpression>

namespace pintalux {

bool isDarkTheme(const QString& name)
{
    static const QRegularExpression dark(
        u"(^|[-_: ])dark($|[-_: ])"_qs, QRegularExpression::CaseInsensitiveOption);
    return dark.match(name).hasMatch();
}

} // namespace pintalux
