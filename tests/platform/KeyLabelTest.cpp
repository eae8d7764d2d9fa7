// SPDX-License-Identifier: MIT
#include "platform/desktop/KeyLabel.h"

TEST(KeyLabel, SymbolsBecomeWhatIsPrintedOnTheKeys)
{
    using KeyLabel::Scope;
    const struct {
        const char* symbols;
        const char* window; ///< in the program's own windows
        const char* global; ///< as a global hot key
    } table[] = {
        {"⌃⇧1", "Ctrl+Mayús+1", "Ctrl+Mayús+1"},
        {"⇧⌘Z", "Ctrl+Mayús+Z", "Super+Mayús+Z"},
        {"⌃⌥5", "Ctrl+Alt+5", "Ctrl+Alt+5"},
        {"⌘,", "Ctrl+,", "Super+,"},
        {"⌘⌫", "Ctrl+Retroceso", "Super+Retroceso"},
        {"⌥Espacio", "Alt+Espacio", "Alt+Espacio"},
        {"⌦", "Supr", "Supr"},
        {"Agregar imagen (⇧⌘I) · también puedes pegarla con ⌘V o arrastrarla",
            "Agregar imagen (Ctrl+Mayús+I) · también puedes pegarla con Ctrl+V o arrastrarla",
            "Agregar imagen (Super+Mayús+I) · también puedes pegarla con Super+V o arrastrarla"},
        {"⇧-clic, o ⌥ al arrastrar", "Mayús-clic, o Alt al arrastrar", "Mayús-clic, o Alt al arrastrar"},
        {"Guardar como… (1 + 1)", "Guardar como… (1 + 1)", "Guardar como… (1 + 1)"},
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
        {QKeySequence(Qt::Key_Return), "Intro"},
        {QKeySequence(Qt::SHIFT | Qt::Key_Space), "Mayús+Espacio"},
        {QKeySequence(Qt::CTRL | Qt::Key_Plus), "Ctrl++"},
        {QKeySequence(u"Ctrl+K, F2"_s), "Ctrl+K, F2"},
    };
    for (const auto& row : table)
        EXPECT_EQ(KeyLabel::text(row.sequence).toStdString(), row.label);
    EXPECT_EQ(KeyLabel::hotKey(KeyModifier::command | KeyModifier::shift, u"1"_s), u"Super+Mayús+1");
}
