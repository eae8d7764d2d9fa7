// SPDX-License-Identifier: MIT
#include "controls/theme/ThemeFollower.h"

#include "controls/theme/Theme.h"
#include "platform/session/DesktopAppearance.h"

#include <QApplication>
#include <QPalette>

namespace pintalux {

namespace {

/// For what the toolkit draws itself: its dialogs, text cursors, selections.
QPalette darkPalette()
{
    const auto& theme = Theme::darkTheme();
    QPalette palette(theme.card, theme.form);
    palette.setColor(QPalette::WindowText, theme.text);
    palette.setColor(QPalette::Text, theme.text);
    palette.setColor(QPalette::ButtonText, theme.text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, theme.text2);
    palette.setColor(QPalette::Base, theme.field);
    palette.setColor(QPalette::AlternateBase, theme.card);
    palette.setColor(QPalette::Highlight, theme.brand);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, theme.onSelected);
    palette.setColor(QPalette::LinkVisited, theme.onSelected);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, theme.disabled);
    return palette;
}

} // namespace

void followDesktopTheme(QApplication& application)
{
    auto* appearance = new DesktopAppearance(&application);
    const auto follow = [appearance] {
        QApplication::setPalette({}); // the toolkit's own again
        if (appearance->wishesDark().value_or(false) && !Theme::current().dark)
            QApplication::setPalette(darkPalette());
    };
    QObject::connect(appearance, &DesktopAppearance::changed, &application, follow);
    follow();
}

} // namespace pintalux
