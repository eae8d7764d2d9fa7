// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureAction.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <span>

namespace pintalux {

/// All there is to know of an option: what `--help` and the shells' completions are made from.
struct Option {
    enum class Argument { none, action, picture, file, folder, shell };

    QStringView name;
    Argument argument; ///< what the following argument is
    QStringView value; ///< how the help calls that; empty: the option takes none
    QStringView help;  ///< Spanish
};

/// What the program was started for.
struct CommandLine {
    enum class Mode {
        normal,
        help,
        version,
        renderIcon,
        selfTest,
        annotate,
        completion,
        captureToFile, ///< the full screen into `outputFile`, without tray and without the running program
        misuse,
    };

    Mode mode = Mode::normal;
    QString directory;                    ///< of `--render-icon` and `--selftest`
    QString openFile;                     ///< of `--open`; empty for none
    std::optional<CaptureAction> capture; ///< of `--capture`
    QString picture;                      ///< of `--annotate`
    QString marksFile;
    QString outputFile;
    bool checkOnly = false; ///< `--annotate` reads and draws nothing
    QString shell;          ///< of `--completion`
    bool overlay = false;   ///< the self-test also drives the selection overlay
    bool keepOpen = false;  ///< the self-test leaves the program running
    bool trace = false;     ///< milestones with their times go to standard error
    QString problem;        ///< of misuse: what is wrong, a Spanish sentence

    static std::span<const Option> options();

    /// Reads the arguments that follow the program's name. The first occurrence of an option counts. The
    /// options `--render-icon`, `--selftest` and `--open` are ignored when nothing follows them.
    static CommandLine parse(const QStringList& arguments);

    /// The text of `--help`, in Spanish.
    static QString help();
    static QString version();
};

} // namespace pintalux
