// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>

#include <optional>

namespace pintalux {

/// Short messages on the screen: a capsule near the bottom centre of the screen under the pointer, which
/// never takes the focus, lets clicks through and goes by itself.
///
/// At most one message is shown; a new one replaces it at once. For the main thread. Without an application
/// that can show windows a message is dropped.
namespace HUD {

/// Shows `message` behind the symbol of that name, or behind a disc of `tint` where one is given (a colour
/// that was picked). A text too long for the screen is wrapped to a few lines and ends in "…" at the last.
void show(const QString& message, const QString& symbol, const std::optional<QColor>& tint = {});

/// The same for work that takes its time: stays until another message takes its place or `dismiss` is called.
void showUntilReplaced(const QString& message, const QString& symbol);

/// The text on screen; none once its time is over.
std::optional<QString> currentMessage();

/// Takes the message off the screen at once.
void dismiss();

} // namespace HUD

} // namespace pintalux
