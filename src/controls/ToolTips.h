// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QApplication;
class QRect;

namespace pintalux {

/// The help that appears beside what the pointer rests on, in the product's look.
namespace ToolTips {

/// Shows the tool tips of all widgets and menu rows in place of the toolkit's. Once per application; it lasts
/// as long.
void install(QApplication& application);

/// Shows a tip centred beneath a part of the screen (above it at the screen's bottom edge), at once; for
/// widgets that have several things to explain. It goes with the next thing the person does.
void show(const QString& text, const QRect& screenRect);
void hide();

/// The text that is shown; empty for none.
QString currentText();

} // namespace ToolTips

} // namespace pintalux
