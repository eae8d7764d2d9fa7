// SPDX-License-Identifier: MIT
#pragma once

#include "Gestures.h"
#include "editor/canvas/CanvasView.h"
#include "model/Palette.h"
#include "platform/base/UserDefaults.h"

/// A canvas on a document, driven by synthesized events.
struct CanvasStage : testing::Test {
    using Tool = pintalux::Tool;
    using Kind = pintalux::AnnotationKind;
    using Annotation = pintalux::Annotation;

    static QImage picture(int width, int height)
    {
        QImage image(width, height, QImage::Format_RGB32);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                image.setPixel(x, y, qRgb(x & 255, y & 255, (x ^ y) & 255));
        return image;
    }

    /// Opens a document of 600 × 400 points at `pixelScale`.
    void open(double pixelScale)
    {
        view.reset();
        const auto pixels = [pixelScale](int points) { return int(std::lround(points * pixelScale)); };
        model = std::make_unique<pintalux::EditorModel>(
            pintalux::CaptureResult{picture(pixels(600), pixels(400)), pixelScale, {}}, settings);
        view = std::make_unique<pintalux::CanvasView>(*model);
        view->resize(400, 400); // the picture is shown at 344/600 of its size
        view->show();
        view->activateWindow();
        view->setFocus();
        QApplication::processEvents();
    }

    void SetUp() override { open(1); }

    double scale() const { return view->viewScale(); }
    double pixelScale() const { return model->doc().pixelScale; }
    const QList<Annotation>& marks() const { return model->doc().annotations; }

    void send(QEvent::Type type, QPointF viewPoint, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
    {
        gesture::mouse(*view, type, viewPoint, buttons, modifiers);
    }
    void pressView(QPointF at) { send(QEvent::MouseButtonPress, at, Qt::LeftButton, {}); }
    void dragView(QPointF to, Qt::KeyboardModifiers modifiers = {})
    {
        send(QEvent::MouseMove, to, Qt::LeftButton, modifiers);
    }
    void releaseView(QPointF at) { send(QEvent::MouseButtonRelease, at, {}, {}); }

    /// All in document points.
    void press(QPointF at) { pressView(view->viewPoint(at)); }
    void drag(QPointF to, Qt::KeyboardModifiers modifiers = {}) { dragView(view->viewPoint(to), modifiers); }
    void release(QPointF at = {}) { releaseView(view->viewPoint(at)); }
    void click(QPointF at)
    {
        press(at);
        release(at);
    }
    void doubleClick(QPointF at)
    {
        click(at);
        send(QEvent::MouseButtonDblClick, view->viewPoint(at), Qt::LeftButton, {});
        release(at);
    }
    void gesture(QPointF from, QPointF to, Qt::KeyboardModifiers modifiers = {})
    {
        press(from);
        drag((from + to) / 2, modifiers);
        drag(to, modifiers);
        release(to);
    }

    /// Whether somebody took the key.
    bool key(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}, quint32 scanCode = 0)
    {
        auto* target = view->focusWidget() ? view->focusWidget() : view.get();
        QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, 0, 0, text);
        QApplication::sendEvent(target, &event);
        return event.isAccepted();
    }
    void type(const QString& text)
    {
        for (const QChar letter : text)
            key(letter.toUpper().unicode(), {}, letter);
    }

    /// Adds a mark and selects it, without counting as a step of the test.
    Annotation place(Annotation mark)
    {
        if (!mark.color.isValid())
            mark.color = Qt::red;
        if (mark.lineWidth == 0)
            mark.lineWidth = 4 * pixelScale();
        model->add(mark);
        model->setSelectedID(mark.id);
        steps = model->undoCount();
        return mark;
    }
    /// Undo steps since the last `place`.
    qsizetype newSteps() const { return model->undoCount() - steps; }

    pintalux::UserDefaults store = pintalux::UserDefaults::inMemory();
    pintalux::Settings settings{store};
    std::unique_ptr<pintalux::EditorModel> model;
    std::unique_ptr<pintalux::CanvasView> view;
    qsizetype steps = 0;
};

inline void expectNear(QPointF actual, QPointF wanted, double slack = 1e-6)
{
    EXPECT_NEAR(actual.x(), wanted.x(), slack);
    EXPECT_NEAR(actual.y(), wanted.y(), slack);
}
