// SPDX-License-Identifier: MIT
#pragma once

#include "controls/Sheet.h"

#include <QIcon>
#include <QMenu>

#include <memory>
#include <optional>

namespace pintalux {

/// A menu with the product's look: a rounded card with rows of 28 points, the highlighted one in the brand's
/// colour, and a shadow where there is a compositor.
///
/// Its rows are ordinary actions; `setLook` and `setKeyText` say what an action cannot.
class Menu : public QMenu {
    Q_OBJECT

public:
    enum class Look {
        action,
        header,  ///< name in semibold, not faded though it cannot be chosen
        section, ///< title of the rows beneath it, at the left edge
        note,    ///< explanation in small secondary text, on several lines where needed
        credit,  ///< one line in small secondary text
        link,    ///< small, in the colour of links
    };

    explicit Menu(QWidget* parent = nullptr);
    ~Menu() override;

    static void setLook(QAction& action, Look look);
    /// A small picture at the right end; points. Its active form is for the highlighted row.
    static void setPicture(QAction& action, const QIcon& picture, QSize size);
    /// The text shown at the right end, in place of the shortcut's.
    static void setKeyText(QAction& action, const QString& text);

    /// Opens with the card's corner at a point of the screen (global logical pixels), kept on that screen.
    void popUpAt(QPoint screenPoint);

    /// Opens below what was clicked, a rectangle of the screen (global logical pixels), or above it where
    /// there is no room.
    void popUpBeside(const QRect& screenRect);

    /// The menu is never narrower than this; points.
    void setCardWidth(int width);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;

private:
    class Style;

    QPoint placeAt(QPoint screenPoint) const;
    QPoint placeBeside(const QRect& screenRect) const;

    Sheet sheet;
    std::unique_ptr<Style> rowStyle;
    std::optional<QPoint> anchor; ///< where it was asked to open; else it opens at the pointer
    std::optional<QRect> beside;  ///< what it was asked not to cover
};

} // namespace pintalux
