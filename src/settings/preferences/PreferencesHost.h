// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureAction.h"

#include <QSet>
#include <QString>

#include <functional>

namespace pintalux {

class LoginItem;

/// What the preferences ask of the rest of the program. A function that is missing is as one that does
/// nothing and answers no.
struct PreferencesHost {
    QString version;                ///< shown under the name; "1.0" where it is empty
    LoginItem* loginItem = nullptr; ///< outlives the preferences; none: opening at login cannot be chosen

    std::function<bool()> hasPermission; ///< to record the screen
    std::function<void()> requestPermission;
    std::function<QSet<CaptureAction>()> failedShortcuts; ///< whose hot key belongs to somebody else

    std::function<bool()> hasSavedCopy;
    std::function<void()> saveCopy;
    std::function<void()> restoreSavedCopy;
    std::function<void()> exportSettings;
    std::function<void()> importSettings;
    std::function<void()> resetSettings;
};

/// Calls what may be missing.
template <typename Result> Result ask(const std::function<Result()>& function)
{
    return function ? function() : Result();
}

} // namespace pintalux
