// SPDX-License-Identifier: MIT
#include "app/commandline/Completion.h"

#include "app/commandline/CommandLine.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

using Argument = Option::Argument;

/// A command that lists the outputs where the display server tells them.
constexpr QStringView screenNames = u"xrandr --listmonitors 2>/dev/null | sed -n 's/.* //p' | tail -n +2";

/// In single quotes, as all three shells read them.
QString quoted(QString text) { return u'\'' + text.replace(u'\'', u"'\\''"_s) + u'\''; }

/// The words that can follow an option; empty where it is no choice among words.
QString words(Argument argument)
{
    QStringList choices;
    if (argument == Argument::shell)
        choices = {u"bash"_s, u"zsh"_s, u"fish"_s};
    if (argument == Argument::action)
        for (const auto action : allCases<CaptureAction>())
            choices << rawValue(action);
    return choices.join(u' ');
}

QString bashScript()
{
    QStringList names;
    QString cases;
    for (const auto& option : CommandLine::options()) {
        names << option.name.toString();
        QString reply;
        switch (option.argument) {
        case Argument::none:
            continue;
        case Argument::action:
        case Argument::shell:
            reply = u"-W "_s + quoted(words(option.argument));
            break;
        case Argument::picture:
        case Argument::file:
            reply = u"-f"_s;
            break;
        case Argument::folder:
            reply = u"-d"_s;
            break;
        case Argument::screen:
            reply = u"-W \"$(%1)\""_s.arg(screenNames);
            break;
        }
        cases += u"    %1) mapfile -t COMPREPLY < <(compgen %2 -- \"$current\"); %3return ;;\n"_s.arg(
            option.name, reply, reply.startsWith(u"-W") ? QString() : u"compopt -o filenames; "_s);
    }
    return u"_pintalux()\n{\n"
           "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
           "  case $previous in\n%1  esac\n"
           "  case $current in\n"
           "    -*) mapfile -t COMPREPLY < <(compgen -W %2 -- \"$current\") ;;\n"
           "    *) mapfile -t COMPREPLY < <(compgen -f -- \"$current\"); compopt -o filenames ;;\n"
           "  esac\n"
           "}\n"
           "complete -F _pintalux pintalux\n"_s.arg(cases, quoted(names.join(u' ')));
}

QString zshScript()
{
    QStringList specs;
    for (const auto& option : CommandLine::options()) {
        auto help = option.help.toString().replace(u'[', u"\\["_s).replace(u']', u"\\]"_s);
        auto spec = u"%1[%2]"_s.arg(option.name, help);
        if (option.argument != Argument::none)
            spec += u':' + option.value.toString().toLower() + u':';
        if (const auto choices = words(option.argument); !choices.isEmpty())
            spec += u'(' + choices + u')';
        else if (option.argument == Argument::screen)
            spec += u"{compadd -- $(%1)}"_s.arg(screenNames);
        else if (option.argument == Argument::folder)
            spec += u"_files -/"_s;
        else if (option.argument != Argument::none)
            spec += u"_files"_s;
        specs << u"  "_s + quoted(spec);
    }
    specs << u"  '*:imagen:_files'"_s;
    return u"#compdef pintalux\n_arguments \\\n"_s + specs.join(u" \\\n"_s) + u"\n"_s;
}

QString fishScript()
{
    QString script;
    for (const auto& option : CommandLine::options()) {
        auto line = u"complete -c pintalux -l %1 -d %2"_s.arg(
            option.name.sliced(2), quoted(option.help.toString()));
        if (const auto choices = words(option.argument); !choices.isEmpty())
            line += u" -x -a "_s + quoted(choices);
        else if (option.argument == Argument::screen)
            line += u" -x -a "_s + quoted(u"(%1)"_s.arg(screenNames));
        else if (option.argument == Argument::folder)
            line += u" -x -a '(__fish_complete_directories)'"_s;
        else if (option.argument != Argument::none)
            line += u" -r -F"_s;
        script += line + u'\n';
    }
    return script;
}

} // namespace

QString completionScript(QStringView shell)
{
    if (shell == u"bash")
        return bashScript();
    if (shell == u"zsh")
        return zshScript();
    return shell == u"fish" ? fishScript() : QString();
}

} // namespace pintalux
