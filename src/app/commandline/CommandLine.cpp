// SPDX-License-Identifier: MIT
#include "app/commandline/CommandLine.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

using Argument = Option::Argument;

constexpr std::array<Option, 14> optionTable{{
    {u"--capture", Argument::action, u"ACCIÓN", u"Captura: area, window, fullScreen, text o color"},
    {u"--annotate", Argument::picture, u"IMAGEN",
        u"Dibuja sobre una imagen las marcas de --marks y guarda --output"},
    {u"--marks", Argument::file, u"ARCHIVO", u"Marcas en JSON (con --annotate)"},
    {u"--output", Argument::file, u"ARCHIVO", u"PNG que se escribe (con --annotate o --capture fullScreen)"},
    {u"--check", Argument::none, u"", u"Con --annotate: comprueba la imagen y las marcas, sin escribir nada"},
    {u"--open", Argument::picture, u"ARCHIVO", u"Abre una imagen en el editor"},
    {u"--render-icon", Argument::folder, u"CARPETA",
        u"Escribe el icono de la aplicación en todos sus tamaños"},
    {u"--selftest", Argument::folder, u"CARPETA",
        u"Recorre todo el programa y deja imágenes y un registro en la carpeta"},
    {u"--overlay", Argument::none, u"", u"Con --selftest: prueba también la selección en pantalla"},
    {u"--keep-open", Argument::none, u"", u"Con --selftest: no termina al acabar"},
    {u"--trace", Argument::none, u"", u"Escribe cuánto tarda cada paso de una captura"},
    {u"--completion", Argument::shell, u"INTÉRPRETE", u"Escribe el autocompletado para bash, zsh o fish"},
    {u"--help", Argument::none, u"", u"Muestra esta ayuda"},
    {u"--version", Argument::none, u"", u"Muestra la versión"},
}};

const Option* optionNamed(QStringView name)
{
    const auto found = std::ranges::find(optionTable, name, &Option::name);
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

/// The first argument that is neither an option nor the value of one.
std::optional<QString> firstStranger(const QStringList& arguments)
{
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const auto* option = optionNamed(arguments[i]);
        if (!option)
            return arguments[i];
        const bool nextIsOption = i + 1 < arguments.size() && optionNamed(arguments[i + 1]);
        if (!option->value.isEmpty() && !nextIsOption)
            ++i;
    }
    return std::nullopt;
}

CommandLine misuse(const QString& problem)
{
    CommandLine line;
    line.mode = CommandLine::Mode::misuse;
    line.problem = problem;
    return line;
}

CommandLine annotate(const QStringList& arguments)
{
    CommandLine line;
    line.mode = CommandLine::Mode::annotate;
    line.checkOnly = arguments.contains(u"--check"_s);
    for (const auto& [option, target] : {std::pair(u"--annotate"_s, &line.picture),
             std::pair(u"--marks"_s, &line.marksFile), std::pair(u"--output"_s, &line.outputFile)}) {
        const auto value = valueOf(arguments, option).value_or(QString());
        const bool isNeeded = target != &line.outputFile || !line.checkOnly;
        if (value.isEmpty() && isNeeded)
            return misuse(u"Falta el valor de %1."_s.arg(option));
        *target = value;
    }
    return line;
}

/// `--capture`, with or without `--output`.
CommandLine capture(const QStringList& arguments)
{
    CommandLine line;
    const auto name = valueOf(arguments, u"--capture"_s);
    line.capture = fromRawValue<CaptureAction>(name.value_or(QString()));
    if (!line.capture)
        return misuse(u"--capture necesita una acción: area, window, fullScreen, text o color."_s);
    if (!arguments.contains(u"--output"_s))
        return line;
    line.outputFile = valueOf(arguments, u"--output"_s).value_or(QString());
    if (line.outputFile.isEmpty())
        return misuse(u"Falta el valor de --output."_s);
    if (*line.capture != CaptureAction::fullScreen)
        return misuse(u"--output solo sirve con --capture fullScreen."_s);
    line.mode = CommandLine::Mode::captureToFile;
    return line;
}

CommandLine completion(const QStringList& arguments)
{
    CommandLine line;
    line.mode = CommandLine::Mode::completion;
    line.shell = valueOf(arguments, u"--completion"_s).value_or(QString());
    if (!QStringList{u"bash"_s, u"zsh"_s, u"fish"_s}.contains(line.shell))
        return misuse(u"--completion necesita un intérprete de órdenes: bash, zsh o fish."_s);
    return line;
}

/// What is neither a command of its own nor wrong: the program itself, or its self-test.
CommandLine normal(const QStringList& arguments)
{
    CommandLine line;
    if (const auto directory = valueOf(arguments, u"--selftest"_s)) {
        line.mode = CommandLine::Mode::selfTest;
        line.directory = *directory;
        line.overlay = arguments.contains(u"--overlay"_s);
        line.keepOpen = arguments.contains(u"--keep-open"_s);
        return line;
    }
    if (arguments.contains(u"--capture"_s))
        line = capture(arguments);
    line.openFile = valueOf(arguments, u"--open"_s).value_or(QString());
    return line;
}

} // namespace

std::span<const Option> CommandLine::options() { return optionTable; }

CommandLine CommandLine::parse(const QStringList& arguments)
{
    CommandLine line;
    if (const auto directory = valueOf(arguments, u"--render-icon"_s)) {
        line.mode = Mode::renderIcon;
        line.directory = *directory;
        return line;
    }
    if (const auto stranger = firstStranger(arguments))
        return misuse(
            (stranger->startsWith(u'-') ? u"Opción desconocida: %1"_s : u"Argumento inesperado: %1"_s)
                .arg(*stranger));
    if (arguments.contains(u"--help"_s)) {
        line.mode = Mode::help;
        return line;
    }
    if (arguments.contains(u"--version"_s)) {
        line.mode = Mode::version;
        return line;
    }
    if (arguments.contains(u"--completion"_s))
        return completion(arguments);
    if (arguments.contains(u"--annotate"_s))
        return annotate(arguments);

    line = normal(arguments);
    line.trace = arguments.contains(u"--trace"_s);
    return line;
}

QString CommandLine::help()
{
    auto text = u"Pintalux: capturas de pantalla con anotaciones.\n\nUso: pintalux [OPCIÓN]…\n\n"_s;
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
