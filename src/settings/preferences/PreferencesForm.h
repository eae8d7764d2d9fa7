// SPDX-License-Identifier: MIT
#pragma once

#include "controls/Switch.h"
#include "controls/theme/Theme.h"
#include "platform/graphics/Font.h"
#include "platform/graphics/TextLine.h"

#include <QLabel>
#include <QWidget>

class QHBoxLayout;
class QVBoxLayout;

/// The parts that the form of the preferences is made of.
namespace pintalux::Form {

/// Distance of a group's content to its sides; points.
inline constexpr int groupPadding = 14;
inline constexpr int rowHeight = 42;
inline constexpr int shortcutRowHeight = 36;

struct TextRole {
    double size;
    FontWeight weight;
    QColor Theme::*color;
    double lineHeight; ///< points
};

inline constexpr TextRole applicationName{20, FontWeight::bold, &Theme::text, 24};
inline constexpr TextRole sectionTitle{12, FontWeight::semibold, &Theme::text2, 17};
inline constexpr TextRole rowTitle{13, FontWeight::regular, &Theme::text, 17};
inline constexpr TextRole explanation{12, FontWeight::regular, &Theme::text2, 17};
inline constexpr TextRole folder{12, FontWeight::regular, &Theme::text2, 17};
inline constexpr TextRole value{11, FontWeight::regular, &Theme::text2, 15};
inline constexpr TextRole failure{11, FontWeight::regular, &Theme::bad, 14};

/// A text in the form. It never loses a word: one on a single line asks for its whole width, one that wraps
/// for the height that its width needs.
class Label : public QLabel {
    Q_OBJECT

public:
    enum class Fit {
        line,
        wrapped,
        shortened, ///< gives way: loses its middle, and shows the whole as a tool tip
    };

    Label(const QString& text, const TextRole& role, Fit fit = Fit::line, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return fit == Fit::wrapped; }
    int heightForWidth(int width) const override;

    /// `QLabel::setText`, and the layout takes notice.
    void show(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QStringList linesIn(double width) const;
    void explainShortening();

    TextRole role;
    Fit fit;
};

/// A key combination as on the cap of a key.
class KeyCap : public QLabel {
    Q_OBJECT

public:
    explicit KeyCap(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TextLine line() const;
};

/// A symbol of 18 points in one of the theme's colours.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    SymbolView(const QString& symbol, QColor Theme::*color, QWidget* parent = nullptr);

    void setSymbol(const QString& symbol, QColor Theme::*color);
    QSize sizeHint() const override { return {18, 18}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString symbol;
    QColor Theme::*color;
};

/// One line of a group: a title at the left, what belongs to it at the right.
class Row : public QWidget {
    Q_OBJECT

public:
    explicit Row(const QString& title, int height = rowHeight);

    Label& title() { return *titleLabel; }
    /// A symbol before the title.
    void setSymbol(SymbolView* symbol, int gap);
    /// A text under the title.
    void setSubtitle(Label* label);
    /// At the right end, after what is there already.
    void add(QWidget* control, int gapBefore = 10);
    /// The row's whole area works as the switch's.
    void setSwitch(Switch* control);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QHBoxLayout* line;
    QVBoxLayout* texts;
    Label* titleLabel;
    Switch* toggle = nullptr;
};

/// A rounded sheet with rows, separated by hairlines.
class Group : public QWidget {
    Q_OBJECT

public:
    explicit Group(QWidget* parent = nullptr);

    void add(QWidget* row);
    Row& addRow(const QString& title, int height = rowHeight);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* rows;
};

} // namespace pintalux::Form
