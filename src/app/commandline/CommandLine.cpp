// SPDX-License-Identifier: MIT
#include "app/commandline/CommandLine.h"

#include <QMap>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

using Argument = Option::Argument;

constexpr std::array<Option, 16> optionTable{{
    {u"--capture", Argument::action, u"ACCIÓN", u"Captura: area, window, fullScreen, text o color"},
    {u"--screen", Argument::screen, u"NOMBRE", u"Con --capture fullScreen: la pantalla de ese nombre"},
    {u"--annotate", Argument::picture, u"IMAGEN",
        u"Dibuja sobre una imagen las marcas de --marks y guarda --output"},
    {u"--marks", Argument::file, u"ARCHIVO", u"Marcas en JSON (con --annotate)"},
    {u"--output", Argument::file, u"ARCHIVO", u"PNG o JPEG que se escribe (con --annotate o --capture)"},
    {u"--check", Argument::none, u"", u"Con --annotate: comprueba la imagen y las marcas, sin escribir nada"},
    {u"--json", Argument::none, u"", u"Con --check: dice en JSON lo que encuentra"},
    {u"--open", Argument::picture, u"ARCHIVO", u"Abre una imagen en el editor"},
    {u"--render-icon", Argument::folder, u"CARPETA",
        u"Escribe el icono de la aplicación en todos sus tamaños"},
    {u"--selftest", Argument::folder, u"CARPETA",
        u"Recorre todo el programa y deja imágenes y un registro en la carpeta"},
    {u"--overlay", Argument::none, u"", u"Con --selftest: prueba también la selección en pantalla"},
    {u"--keep-open", Argument::none, u"", u"Con --selftest: no termina al acabar"},
    {u"--trace", Argument::none, u"", u"Escribe cuánto tarda cada paso de una captura"},
    {u"--completion", Argument::shell, u"INTÉRPRETE", u"Escribe el autocompletado para bash, zsh o fish"},
    {u"--help", Argument::none, u"", u"Muestra esta ayuda (también -h)"},
    {u"--version", Argument::none, u"", u"Muestra la versión"},
}};

/// Scanned for by their names alone, wherever they stand, and never the reason to refuse a command.
constexpr std::array<QStringView, 5> scannedOptions{
    u"--open", u"--render-icon", u"--selftest", u"--overlay", u"--keep-open"};

/// What an option means nothing without; the first of them is named when all are missing.
struct Companion {
    QStringView option;
    std::array<QStringView, 2> needed;
    QStringView names;
};
constexpr std::array<Companion, 5> companions{{
    {u"--marks", {u"--annotate"}, u"--annotate"},
    {u"--check", {u"--annotate"}, u"--annotate"},
    {u"--output", {u"--annotate", u"--capture"}, u"--annotate o --capture"},
    {u"--json", {u"--check"}, u"--check"},
    {u"--screen", {u"--capture"}, u"--capture"},
}};

const Option* optionNamed(QStringView name)
{
    const auto found = std::ranges::find(optionTable, name == u"-h" ? u"--help" : name, &Option::name);
    return found == optionTable.end() ? nullptr : &*found;
}

/// The argument after the first occurrence of the option; none when there is no such argument.
std::optional<QString> valueOf(const QStringList& arguments, const QString& option)
{
    const auto at = arguments.indexOf(option);
    if (at < 0 || at + 1 >= arguments.size())
        return std::nullopt;
    return arguments[at + 1];
}

CommandLine misuse(const QString& problem)
{
    CommandLine line;
    line.mode = CommandLine::Mode::misuse;
    line.problem = problem;
    return line;
}

/// An option and the value behind "=", where an argument is written so.
std::optional<std::pair<const Option*, QString>> assignment(const QString& argument)
{
    const auto equals = argument.indexOf(u'=');
    const auto* option = equals > 0 ? optionNamed(QStringView(argument).first(equals)) : nullptr;
    return option ? std::optional(std::pair(option, argument.sliced(equals + 1))) : std::nullopt;
}

/// The arguments, told apart.
class Given {
public:
    explicit Given(const QStringList& arguments)
    {
        for (qsizetype i = 0; i < arguments.size(); ++i) {
            const auto& argument = arguments[i];
            if (argument == u"--") {
                operands += arguments.sliced(i + 1);
                return;
            }
            if (const auto assigned = assignment(argument))
                assign(*assigned->first, assigned->second);
            else if (const auto* option = optionNamed(argument))
                i += take(*option, i + 1 < arguments.size() ? &arguments[i + 1] : nullptr);
            else if (argument.startsWith(u'-') && argument != u"-")
                refuse(u"Opción desconocida: %1"_s.arg(argument));
            else
                operands << argument;
        }
    }

    bool has(QStringView option) const { return values.contains(option.toString()); }
    /// Empty when the option or its value is missing.
    QString value(QStringView option) const { return values.value(option.toString()); }

    QStringList operands; ///< what belongs to no option
    QString problem;      ///< the first, a Spanish sentence; empty for none

private:
    void refuse(const QString& sentence)
    {
        if (problem.isEmpty())
            problem = sentence;
    }

    void insert(const Option& option, const QString& value)
    {
        if (!has(option.name))
            values.insert(option.name.toString(), value);
    }

    void assign(const Option& option, const QString& value)
    {
        if (option.value.isEmpty())
            refuse(u"%1 no lleva ningún valor."_s.arg(option.name));
        insert(option, value);
    }

    /// How many arguments after the option belong to it.
    int take(const Option& option, const QString* next)
    {
        const bool hasValue = !option.value.isEmpty() && next && !optionNamed(*next) && !assignment(*next);
        insert(option, hasValue ? *next : QString());
        return hasValue ? 1 : 0;
    }

    QMap<QString, QString> values;
};

CommandLine annotateLine(const Given& given)
{
    CommandLine line;
    line.mode = CommandLine::Mode::annotate;
    line.checkOnly = given.has(u"--check");
    line.json = given.has(u"--json");
    for (const auto& [option, target] : {std::pair(u"--annotate"_s, &line.picture),
             std::pair(u"--marks"_s, &line.marksFile), std::pair(u"--output"_s, &line.outputFile)}) {
        *target = given.value(option);
        const bool isNeeded = target != &line.outputFile || !line.checkOnly || given.has(option);
        if (target->isEmpty() && isNeeded)
            return misuse(u"Falta el valor de %1."_s.arg(option));
    }
    if (line.picture == u"-" && line.marksFile == u"-")
        return misuse(u"La imagen y las marcas no pueden venir las dos de la entrada estándar."_s);
    return line;
}

/// `--capture`, with or without `--output`.
CommandLine captureLine(const Given& given)
{
    CommandLine line;
    line.capture = fromRawValue<CaptureAction>(given.value(u"--capture"));
    if (!line.capture)
        return misuse(u"--capture necesita una acción: area, window, fullScreen, text o color."_s);
    line.screen = given.value(u"--screen");
    if (given.has(u"--screen") && line.screen.isEmpty())
        return misuse(u"Falta el valor de --screen."_s);
    if (given.has(u"--screen") && *line.capture != CaptureAction::fullScreen)
        return misuse(u"--screen solo sirve con --capture fullScreen."_s);
    line.outputFile = given.value(u"--output");
    if (given.has(u"--output") && line.outputFile.isEmpty())
        return misuse(u"Falta el valor de --output."_s);
    if (given.has(u"--output"))
        line.mode = CommandLine::Mode::captureToFile;
    return line;
}

CommandLine completionLine(const Given& given)
{
    CommandLine line;
    line.mode = CommandLine::Mode::completion;
    line.shell = given.value(u"--completion");
    if (!QStringList{u"bash"_s, u"zsh"_s, u"fish"_s}.contains(line.shell))
        return misuse(u"--completion necesita un intérprete de órdenes: bash, zsh o fish."_s);
    return line;
}

/// Why these arguments do not go together; empty when they do.
QString contradiction(const Given& given)
{
    for (const auto& [option, needed, names] : companions)
        if (given.has(option)
            && std::ranges::none_of(needed, [&](QStringView other) { return given.has(other); }))
            return u"%1 solo sirve con %2."_s.arg(option, names);
    if (given.has(u"--annotate") && given.has(u"--capture"))
        return u"--annotate y --capture no van juntas."_s;
    const bool takesFiles = std::ranges::none_of(optionTable,
        [&](const Option& option) { return option.name != u"--trace" && given.has(option.name); });
    const bool isScanned
        = std::ranges::any_of(scannedOptions, [&](QStringView name) { return given.has(name); });
    if (!given.operands.isEmpty() && !isScanned && (!takesFiles || given.operands.contains(u"-"_s)))
        return u"Argumento inesperado: %1"_s.arg(given.operands.constFirst());
    return {};
}

/// The three of the scanned options that have a value, as two arguments each.
QStringList withValuesApart(const QStringList& arguments)
{
    QStringList apart;
    for (const auto& argument : arguments) {
        const auto assigned = assignment(argument);
        if (assigned && std::ranges::find(scannedOptions, assigned->first->name) != scannedOptions.end())
            apart << assigned->first->name.toString() << assigned->second;
        else
            apart << argument;
    }
    return apart;
}

} // namespace

std::span<const Option> CommandLine::options() { return optionTable; }

CommandLine CommandLine::parse(const QStringList& given)
{
    const auto arguments = withValuesApart(given);
    CommandLine line;
    if (const auto directory = valueOf(arguments, u"--render-icon"_s)) {
        line.mode = Mode::renderIcon;
        line.directory = *directory;
        return line;
    }
    const Given options(given);
    if (!options.problem.isEmpty())
        return misuse(options.problem);
    if (options.has(u"--help")) {
        line.mode = Mode::help;
        return line;
    }
    if (options.has(u"--version")) {
        line.mode = Mode::version;
        return line;
    }
    if (const auto problem = contradiction(options); !problem.isEmpty())
        return misuse(problem);
    if (options.has(u"--completion"))
        return completionLine(options);
    if (options.has(u"--annotate"))
        return annotateLine(options);

    const auto directory = valueOf(arguments, u"--selftest"_s);
    if (directory) {
        line.mode = Mode::selfTest;
        line.directory = *directory;
        line.overlay = arguments.contains(u"--overlay"_s);
        line.keepOpen = arguments.contains(u"--keep-open"_s);
    } else {
        if (options.has(u"--capture"))
            line = captureLine(options);
        const bool isScanned = std::ranges::any_of(
            scannedOptions, [&](QStringView name) { return arguments.contains(name.toString()); });
        if (const auto file = valueOf(arguments, u"--open"_s))
            line.openFiles << *file;
        else if (!isScanned)
            line.openFiles = options.operands;
    }
    line.trace = options.has(u"--trace");
    return line;
}

QString CommandLine::help()
{
    auto text = u"Pintalux: capturas de pantalla con anotaciones.\n\nUso: pintalux [OPCIÓN]… [IMAGEN]…\n\n"_s;
    constexpr qsizetype column = 26;
    for (const auto& option : optionTable) {
        auto left = u"  "_s + option.name.toString();
        if (!option.value.isEmpty())
            left += u" "_s + option.value.toString();
        text += left.leftJustified(column) + option.help.toString() + u"\n"_s;
    }
    return text;
}

QString CommandLine::version() { return QStringLiteral(PINTALUX_VERSION); }

} // namespace pintalux
