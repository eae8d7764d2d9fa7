// SPDX-License-Identifier: MIT
#include "platform/desktop/KeyLabel.h"

#include <QKeySequence>

using namespace Qt::StringLiterals;

using namespace pintalux;

TEST(KeyLabel, SymbolsBecomeWhatIsPrintedOnTheKeys)
{
    using KeyLabel::Scope;
    const struct {
        const char* symbols;
        const char* window; ///< in the program's own windows
        const char* global; ///< as a global hot key
    } table[] = {
        {"⌃⇧1", "Ctrl+Mayús+1", "Ctrl+Mayús+1"},
        {"⌘⇧1", "Ctrl+Mayús+1", "Super+Mayús+1"},
        {"⇧⌘Z", "Ctrl+Mayús+Z", "Super+Mayús+Z"},
        {"⌃⌥5", "Ctrl+Alt+5", "Ctrl+Alt+5"},
        {"⌃⌘s", "Ctrl+S", "Super+Ctrl+S"},
        {"⌘,", "Ctrl+,", "Super+,"},
        {"⌃⇧", "Ctrl+Mayús", "Ctrl+Mayús"},
        {"⌃⇧ + número", "Ctrl+Mayús+número", "Ctrl+Mayús+número"},
        {"⌘⌫", "Ctrl+Retroceso", "Super+Retroceso"},
        {"⌥Espacio", "Alt+Espacio", "Alt+Espacio"},
        {"↩", "Intro", "Intro"},
        {"⌦", "Supr", "Supr"},
        {"Deshacer (⌘Z)", "Deshacer (Ctrl+Z)", "Deshacer (Super+Z)"},
        {"Agregar imagen (⇧⌘I) · también puedes pegarla con ⌘V o arrastrarla",
            "Agregar imagen (Ctrl+Mayús+I) · también puedes pegarla con Ctrl+V o arrastrarla",
            "Agregar imagen (Super+Mayús+I) · también puedes pegarla con Super+V o arrastrarla"},
        {"Color bajo el cursor. ⇧C o clic para copiarlo",
            "Color bajo el cursor. Mayús+C o clic para copiarlo",
            "Color bajo el cursor. Mayús+C o clic para copiarlo"},
        {"⇧-clic, o ⌥ al arrastrar", "Mayús-clic, o Alt al arrastrar", "Mayús-clic, o Alt al arrastrar"},
        {"Guardar como… (1 + 1)", "Guardar como… (1 + 1)", "Guardar como… (1 + 1)"},
        {"", "", ""},
    };
    for (const auto& row : table) {
        const auto symbols = QString::fromUtf8(row.symbols);
        EXPECT_EQ(KeyLabel::text(symbols).toStdString(), row.window);
        EXPECT_EQ(KeyLabel::text(symbols, Scope::global).toStdString(), row.global);
        EXPECT_EQ(KeyLabel::text(QString::fromUtf8(row.window)).toStdString(), row.window) << "written twice";
    }
}

TEST(KeyLabel, TheToolkitsCombinationsReadLikeTheWrittenOnes)
{
    const struct {
        QKeySequence sequence;
        const char* label;
    } table[] = {
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), "Ctrl+Mayús+Z"},
        {QKeySequence(Qt::META | Qt::ALT | Qt::Key_Delete), "Super+Alt+Supr"},
        {QKeySequence(Qt::Key_Return), "Intro"},
        {QKeySequence(Qt::Key_Escape), "Esc"},
        {QKeySequence(Qt::SHIFT | Qt::Key_Space), "Mayús+Espacio"},
        {QKeySequence(Qt::CTRL | Qt::Key_Plus), "Ctrl++"},
        {QKeySequence(u"Ctrl+K, F2"_s), "Ctrl+K, F2"},
        {QKeySequence(), ""},
    };
    for (const auto& row : table)
        EXPECT_EQ(KeyLabel::text(row.sequence).toStdString(), row.label);
    EXPECT_EQ(KeyLabel::hotKey(KeyModifier::command | KeyModifier::shift, u"1"_s), u"Super+Mayús+1");
}
