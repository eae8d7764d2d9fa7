#include "app/Completion.h"

#include "app/CommandLine.h"

#include <QStringList>

namespace pintalux {

namespace {

using Argument = Option::Argument;

/// In single quotes, as all three shells read them.
QString quoted(QString text) { return u'\'' + text.replace(u'\'', u"'\\''"_qs) + u'\''; }

/// The words that can follow an option; empty where it is no choice among words.
QString words(Argument argument)
{
    QStringList choices;
    if (argument == Argument::shell)
        choices = {u"bash"_qs, u"zsh"_qs, u"fish"_qs};
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
            reply = u"-W "_qs + quoted(words(option.argument));
            break;
        case Argument::picture:
        case Argument::file:
            reply = u"-f"_qs;
            break;
        case Argument::folder:
            reply = u"-d"_qs;
            break;
        }
        cases += u"    %1) mapfile -t COMPREPLY < <(compgen %2 -- \"$current\"); %3return ;;\n"_qs.arg(
            option.name, reply, reply.startsWith(u"-W") ? QString() : u"compopt -o filenames; "_qs);
    }
    return u"_pintalux()\n{\n"
           "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
           "  case $previous in\n%1  esac\n"
           "  mapfile -t COMPREPLY < <(compgen -W %2 -- \"$current\")\n"
           "}\n"
           "complete -F _pintalux pintalux\n"_qs.arg(cases, quoted(names.join(u' ')));
}

QString zshScript()
{
    QStringList specs;
    for (const auto& option : CommandLine::options()) {
        auto help = option.help.toString().replace(u'[', u"\\["_qs).replace(u']', u"\\]"_qs);
        auto spec = u"%1[%2]"_qs.arg(option.name, help);
        if (option.argument != Argument::none)
            spec += u':' + option.value.toString().toLower() + u':';
        if (const auto choices = words(option.argument); !choices.isEmpty())
            spec += u'(' + choices + u')';
        else if (option.argument == Argument::folder)
            spec += u"_files -/"_qs;
        else if (option.argument != Argument::none)
            spec += u"_files"_qs;
        specs << u"  "_qs + quoted(spec);
    }
    return u"#compdef pintalux\n_arguments \\\n"_qs + specs.join(u" \\\n"_qs) + u"\n"_qs;
}

QString fishScript()
{
    auto script = u"complete -c pintalux -f\n"_qs;
    for (const auto& option : CommandLine::options()) {
        auto line = u"complete -c pintalux -l %1 -d %2"_qs.arg(
            option.name.sliced(2), quoted(option.help.toString()));
        if (const auto choices = words(option.argument); !choices.isEmpty())
            line += u" -x -a "_qs + quoted(choices);
        else if (option.argument == Argument::folder)
            line += u" -x -a '(__fish_complete_directories)'"_qs;
        else if (option.argument != Argument::none)
            line += u" -r -F"_qs;
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
