// SPDX-License-Identifier: MIT
#include "platform/desktop/KeyLabel.h"

#include <QKeySequence>
#include <QStringList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace pintalux::KeyLabel {

namespace {

constexpr QStringView modifierSymbols = u"⌃⌥⇧⌘";

struct ModifierName {
    KeyModifier modifier;
    char16_t symbol;
    QStringView name;
};

// In the order in which they are read out.
constexpr std::array<ModifierName, 4> modifierNames{{
    {KeyModifier::command, u'⌘', u"Super"},
    {KeyModifier::control, u'⌃', u"Ctrl"},
    {KeyModifier::option, u'⌥', u"Alt"},
    {KeyModifier::shift, u'⇧', u"Mayús"},
}};

struct SymbolName {
    char16_t symbol;
    QStringView name;
};

constexpr std::array<SymbolName, 7> symbolNames{{
    {u'↩', u"Intro"},
    {u'⌤', u"Intro"},
    {u'⎋', u"Esc"},
    {u'⌫', u"Retroceso"},
    {u'⌦', u"Supr"},
    {u'⇥', u"Tab"},
    {u'␣', u"Espacio"},
}};

struct KeyName {
    Qt::Key key;
    QStringView name;
};

constexpr std::array<KeyName, 17> keyNames{{
    {Qt::Key_Return, u"Intro"},
    {Qt::Key_Enter, u"Intro"},
    {Qt::Key_Escape, u"Esc"},
    {Qt::Key_Space, u"Espacio"},
    {Qt::Key_Delete, u"Supr"},
    {Qt::Key_Backspace, u"Retroceso"},
    {Qt::Key_Tab, u"Tab"},
    {Qt::Key_Insert, u"Insert"},
    {Qt::Key_Home, u"Inicio"},
    {Qt::Key_End, u"Fin"},
    {Qt::Key_PageUp, u"RePág"},
    {Qt::Key_PageDown, u"AvPág"},
    {Qt::Key_Left, u"←"},
    {Qt::Key_Right, u"→"},
    {Qt::Key_Up, u"↑"},
    {Qt::Key_Down, u"↓"},
    {Qt::Key_Print, u"Impr Pant"},
}};

QString joined(KeyModifiers modifiers, const QString& key = {})
{
    QStringList parts;
    for (const auto& row : modifierNames)
        if (modifiers.testFlag(row.modifier))
            parts.append(row.name.toString());
    if (!key.isEmpty())
        parts.append(key);
    return parts.join(u'+');
}

KeyModifiers asOnThisDesktop(KeyModifiers modifiers, Scope scope)
{
    if (scope == Scope::window && modifiers.testFlag(KeyModifier::command))
        modifiers.setFlag(KeyModifier::command, false).setFlag(KeyModifier::control);
    return modifiers;
}

// The modifiers' symbols from a place on, which moves past them.
KeyModifiers readModifiers(QStringView text, qsizetype& at)
{
    KeyModifiers modifiers;
    for (; at < text.size() && modifierSymbols.contains(text[at]); ++at)
        modifiers |= std::ranges::find(modifierNames, text[at], &ModifierName::symbol)->modifier;
    return modifiers;
}

QString nameOfSymbol(QChar symbol)
{
    const auto found = std::ranges::find(symbolNames, symbol, &SymbolName::symbol);
    return found == symbolNames.end() ? QString(symbol) : found->name.toString();
}

// What follows the modifiers is a word of its own ("⌘Espacio") rather than one key.
bool startsWord(QStringView text)
{
    return text.size() > 1 && text[0].isLetter() && text[1].isLetterOrNumber();
}

bool startsKey(QStringView text)
{
    if (text.isEmpty() || text[0].isSpace() || text[0] == u')')
        return false;
    // A mark between the modifiers and a word ("⇧-clic") is no key.
    return !text[0].isPunct() || text.size() == 1 || !text[1].isLetterOrNumber();
}

QString nameOfKey(Qt::Key key)
{
    const auto found = std::ranges::find(keyNames, key, &KeyName::key);
    return found == keyNames.end() ? QKeySequence(key).toString(QKeySequence::PortableText)
                                   : found->name.toString();
}

QString nameOf(QKeyCombination combination)
{
    const auto held = combination.keyboardModifiers();
    KeyModifiers modifiers;
    modifiers.setFlag(KeyModifier::control, held.testFlag(Qt::ControlModifier));
    modifiers.setFlag(KeyModifier::shift, held.testFlag(Qt::ShiftModifier));
    modifiers.setFlag(KeyModifier::option, held.testFlag(Qt::AltModifier));
    modifiers.setFlag(KeyModifier::command, held.testFlag(Qt::MetaModifier));
    return joined(modifiers, nameOfKey(combination.key()));
}

} // namespace

QString text(const QString& text, Scope scope)
{
    constexpr QStringView spacedPlus = u" + ";
    const QStringView all(text);
    QString result;
    for (qsizetype at = 0; at < all.size();) {
        const auto modifiers = asOnThisDesktop(readModifiers(all, at), scope);
        const auto rest = all.sliced(at);
        if (!modifiers) {
            result += nameOfSymbol(all[at++]);
        } else if (rest.startsWith(spacedPlus)) {
            result += joined(modifiers) + u'+';
            at += spacedPlus.size();
        } else if (startsWord(rest)) {
            result += joined(modifiers) + u'+';
        } else if (startsKey(rest)) {
            result += joined(modifiers, nameOfSymbol(rest[0].toUpper()));
            ++at;
        } else {
            result += joined(modifiers);
        }
    }
    return result;
}

QString text(const QKeySequence& sequence)
{
    QStringList names;
    for (int index = 0; index < sequence.count(); ++index)
        names.append(nameOf(sequence[uint(index)]));
    return names.join(u", "_s);
}

QString hotKey(KeyModifiers modifiers, const QString& key) { return joined(modifiers, key); }

} // namespace pintalux::KeyLabel
