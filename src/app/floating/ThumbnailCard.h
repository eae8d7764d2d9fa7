// SPDX-License-Identifier: MIT
#pragma once

#include "controls/Sheet.h"
#include "controls/theme/Fade.h"

#include <QImage>
#include <QWidget>

#include <functional>
#include <optional>

namespace pintalux {

class ThumbAction;

/// The window of the floating thumbnail: what is seen of it and how it answers the mouse.
class ThumbnailPanel : public QWidget {
    Q_OBJECT

public:
    /// `pixelScale` is image pixels per point; `isSaved` decides between "Guardar" and "Mostrar".
    ThumbnailPanel(const QImage& image, double pixelScale, bool isSaved);
    ~ThumbnailPanel() override;

    /// "Mostrar" or "Guardar".
    void setSaved(bool isSaved);

    /// The card within the window, without its shadow; points.
    QRect card() const { return sheet.rect(); }
    /// True while the pointer rests on the card or drags something from it.
    bool isUnderPointer() const;

    /// Slides in from the right of its place.
    void appear(QPoint place);
    /// Slides out to the right and retires.
    void leave();
    /// Hides and deletes the window, as soon as no drag needs it any more.
    void retire();

    /// Asked when a drag begins.
    std::function<std::optional<QString>()> fileToDrag;

Q_SIGNALS:
    void closeClicked();
    void saveClicked();
    void editClicked();
    void copyClicked();
    void gone(); ///< it has been retired

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void addButtons(const QRect& picture);
    void dragOut(const QPixmap& picture);

    Sheet sheet;
    Glide presence;  ///< 1 when it has come in
    QPoint home;     ///< of the window then
    double away = 0; ///< how far from there it comes in or goes to; points
    bool dragging = false;
    bool retired = false;
    QWidget* closeButton = nullptr;
    ThumbAction* saveButton = nullptr;
    QPoint gripPoint; ///< where the card's background was pressed; points of the window
};

} // namespace pintalux
