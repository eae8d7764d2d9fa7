// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <exception>
#include <utility>

namespace pintalux {

/// A failure that a person's action can meet, with the sentence to tell them.
///
/// The action that started the work catches it; nothing unwinds through the event loop.
struct Error : std::exception {
    Error(QString domain, int code, QString localizedDescription)
        : domain(std::move(domain))
        , code(code)
        , localizedDescription(std::move(localizedDescription))
    {
    }

    /// The domain of the errors that the program makes itself; those of the system name theirs.
    static inline const QString ownDomain = QStringLiteral("Pintalux");
    /// The domain of failed file operations; the code is the toolkit's own file error number.
    static inline const QString fileDomain = QStringLiteral("File");

    const char* what() const noexcept override { return "pintalux::Error"; }

    QString domain;
    int code;
    QString localizedDescription; ///< in Spanish, a whole sentence
};

/// What is being handled in a `catch`, as something to tell: an `Error` as it is, and a sentence for memory
/// or a thread that the system did not give.
Error currentError();

} // namespace pintalux
