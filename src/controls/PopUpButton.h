// SPDX-License-Identifier: MIT
#pragma once

#include "controls/theme/Fade.h"

#include <QAbstractButton>

#include <functional>

namespace pintalux {

/// A button that shows the chosen one of several things and opens the list of them.
class PopUpButton : public QAbstractButton {
    Q_OBJECT

public:
    /// Paints the small picture of a choice into a rectangle; `ink` is the colour for drawings of one colour.
    using Preview = std::function<void(QPainter& painter, const QRectF& rect, const QColor& ink)>;

    struct Choice {
        QString title;
        Preview preview{}; ///< none: the text alone
    };

    /// `name` is what assistive technology calls it; it adds the chosen title.
    explicit PopUpButton(const QString& name, QWidget* parent = nullptr);

    /// `previewSize` in points, the same for all choices.
    void setChoices(const QList<Choice>& choices, QSize previewSize = {});
    int count() const { return int(choices.size()); }

    /// −1 shows nothing. Setting it announces nothing.
    int currentIndex() const { return current; }
    void setCurrentIndex(int index);
    QString currentTitle() const;

    /// As wide as the longest title needs, at least this; points.
    void setLeastWidth(int width);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// A person chose it from the list, also when it was chosen already.
    void chosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void openList();

    QString name;
    QList<Choice> choices;
    QSize previewSize;
    int current = -1;
    int leastWidth = 170;
    HoverFade hover;
};

} // namespace pintalux
