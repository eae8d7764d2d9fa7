#include "app/CommandLine.h"

#include <algorithm>
#include <array>

namespace pintalux {

namespace {

struct Option {
    QStringView name;
    QStringView value; ///< what the following argument is; empty: the option takes none
    QStringView help;
};

constexpr std::array<Option, 10> options{{
    {u"--annotate", u"IMAGEN", u"Dibuja sobre una imagen las marcas de --marks y guarda --output"},
    {u"--marks", u"ARCHIVO", u"Marcas en JSON (con --annotate)"},
    {u"--output", u"ARCHIVO", u"PNG que se escribe (con --annotate)"},
    {u"--open", u"ARCHIVO", u"Abre una imagen en el editor"},
    {u"--render-icon", u"CARPETA", u"Escribe el icono de la aplicación en todos sus tamaños"},
    {u"--selftest", u"CARPETA", u"Recorre todo el programa y deja imágenes y un registro en la carpeta"},
    {u"--overlay", u"", u"Con --selftest: prueba también la selección en pantalla"},
    {u"--keep-open", u"", u"Con --selftest: no termina al acabar"},
    {u"--help", u"", u"Muestra esta ayuda"},
    {u"--version", u"", u"Muestra la versión"},
}};

const Option* optionNamed(QStringView name)
{
    const auto found = std::ranges::find(options, name, &Option::name);
    return found == options.end() ? nullptr : &*found;
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
        if (!option->value.isEmpty())
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
    for (const auto& [option, target] : {std::pair(u"--annotate"_qs, &line.picture),
             std::pair(u"--marks"_qs, &line.marksFile), std::pair(u"--output"_qs, &line.outputFile)}) {
        const auto value = valueOf(arguments, option);
        if (!value || value->isEmpty())
            return misuse(u"Falta el valor de %1."_qs.arg(option));
        *target = *value;
    }
    return line;
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    CommandLine line;
    if (const auto directory = valueOf(arguments, u"--render-icon"_qs)) {
        line.mode = Mode::renderIcon;
        line.directory = *directory;
        return line;
    }
    if (const auto stranger = firstStranger(arguments))
        return misuse(
            (stranger->startsWith(u'-') ? u"Opción desconocida: %1"_qs : u"Argumento inesperado: %1"_qs)
                .arg(*stranger));
    if (arguments.contains(u"--help"_qs)) {
        line.mode = Mode::help;
        return line;
    }
    if (arguments.contains(u"--version"_qs)) {
        line.mode = Mode::version;
        return line;
    }
    if (arguments.contains(u"--annotate"_qs))
        return annotate(arguments);

    line.overlay = arguments.contains(u"--overlay"_qs);
    line.keepOpen = arguments.contains(u"--keep-open"_qs);
    if (const auto directory = valueOf(arguments, u"--selftest"_qs)) {
        line.mode = Mode::selfTest;
        line.directory = *directory;
    } else {
        line.openFile = valueOf(arguments, u"--open"_qs).value_or(QString());
    }
    return line;
}

QString CommandLine::help()
{
    auto text = u"Pintalux: capturas de pantalla con anotaciones.\n\nUso: pintalux [OPCIÓN]…\n\n"_qs;
    constexpr qsizetype column = 26;
    for (const auto& option : options) {
        auto left = u"  "_qs + option.name.toString();
        if (!option.value.isEmpty())
            left += u" "_qs + option.value.toString();
        text += left.leftJustified(column) + option.help.toString() + u"\n"_qs;
    }
    return text;
}

QString CommandLine::version() { return QStringLiteral(PINTALUX_VERSION); }

} // namespace pintalux
