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
    enum class Argument { none, action, picture, file, folder, screen, shell };

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
        captureToFile, ///< `capture` goes into `outputFile` and nowhere else
        misuse,
    };

    Mode mode = Mode::normal;
    QString directory;                    ///< of `--render-icon` and `--selftest`
    QStringList openFiles;                ///< of `--open`, else those named without an option
    std::optional<CaptureAction> capture; ///< of `--capture`
    QString screen;                       ///< the output that is captured; empty: the one under the pointer
    QString picture;                      ///< of `--annotate`; "-" is standard input, also for the marks
    QString marksFile;
    QString outputFile;     ///< "-" is standard output
    bool checkOnly = false; ///< `--annotate` reads and draws nothing
    bool json = false;      ///< what `--check` finds is said in JSON
    QString shell;          ///< of `--completion`
    bool overlay = false;   ///< the self-test also drives the selection overlay
    bool keepOpen = false;  ///< the self-test leaves the program running
    bool trace = false;     ///< milestones with their times go to standard error
    QString problem;        ///< of misuse: what is wrong, a Spanish sentence

    static std::span<const Option> options();

    /// Reads the arguments that follow the program's name. The first occurrence of an option counts, and its
    /// value follows it or stands behind "=".
    ///
    /// `--render-icon`, `--selftest` and `--open` take whatever follows them and are ignored when nothing
    /// does; beside them and `--overlay` and `--keep-open` a file without an option means nothing. All others
    /// refuse to do without their value, or to take another option for it.
    static CommandLine parse(const QStringList& arguments);

    /// The text of `--help`, in Spanish.
    static QString help();
    static QString version();
};

} // namespace pintalux
