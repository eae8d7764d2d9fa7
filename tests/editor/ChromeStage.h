// SPDX-License-Identifier: MIT
#pragma once

#include "Gestures.h"
#include "Pictures.h"
#include "editor/bars/EditorChrome.h"
#include "editor/bars/ToolPalette.h"
#include "editor/canvas/CanvasView.h"
#include "editor/style/ArrowOptionsPanel.h"
#include "platform/base/UserDefaults.h"
#include "platform/desktop/KeyLabel.h"

/// Bar, palette and arrow options around a canvas, in a window of their own, where commands are only noted.
struct ChromeStage : testing::Test {
    using Tool = pintalux::Tool;
    using Kind = pintalux::AnnotationKind;
    using Annotation = pintalux::Annotation;

    ChromeStage()
    {
        resize({1380, 900});
        window.show();
        window.activateWindow();
        canvas.setFocusPolicy(Qt::StrongFocus);
        canvas.setFocus();
        QApplication::processEvents();
    }

    void resize(QSize size)
    {
        window.resize(size);
        bar.setGeometry(0, 0, size.width(), pintalux::EditorChrome::barHeight);
        canvas.setGeometry(0, bar.height(), size.width(), size.height() - bar.height());
        place();
    }
    void place()
    {
        tools.resize(tools.sizeHint());
        tools.move((window.width() - tools.width()) / 2, window.height() - tools.height() - 14);
        options.resize(options.sizeHint());
        options.move((window.width() - options.width()) / 2, tools.y() - options.height() - 10);
    }

    /// A selected mark.
    void select(Kind kind)
    {
        const Annotation mark{
            .kind = kind, .start = {10, 10}, .end = {90, 60}, .text = QStringLiteral("Hola")};
        model.add(mark);
        model.setSelectedID(mark.id);
    }

    /// The control that can be seen and has this help; its key combinations as they are written in the code.
    QAbstractButton* button(const QString& help)
    {
        const auto name = pintalux::KeyLabel::text(help);
        for (auto* found : window.findChildren<QAbstractButton*>())
            if (found->isVisible() && (found->accessibleName() == name || found->text() == name))
                return found;
        return nullptr;
    }

    static void drag(QWidget& from, QPointF start, const QList<QPointF>& way)
    {
        gesture::mouse(from, QEvent::MouseButtonPress, start, Qt::LeftButton);
        for (const auto point : way)
            gesture::mouse(from, QEvent::MouseMove, from.mapFromGlobal(from.window()->mapToGlobal(point)),
                Qt::LeftButton);
        gesture::mouse(from, QEvent::MouseButtonRelease, start, {});
    }
    static void press(QWidget& target, Qt::Key key)
    {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            QApplication::sendEvent(&target, &event);
        }
    }

    /// Clicks where the control is seen: fails when something else lies over its middle.
    static void click(QWidget& target)
    {
        const auto middle = QRectF(target.rect()).center();
        auto* window = target.window();
        EXPECT_EQ(window->childAt(target.mapTo(window, middle).toPoint()), &target)
            << qPrintable(target.accessibleName());
        gesture::mouse(target, QEvent::MouseButtonPress, middle, Qt::LeftButton);
        gesture::mouse(target, QEvent::MouseButtonRelease, middle, {});
    }
    void click(const QString& help)
    {
        auto* found = button(help);
        ASSERT_TRUE(found) << qPrintable(help);
        click(*found);
    }

    pintalux::UserDefaults store = pintalux::UserDefaults::inMemory();
    pintalux::Settings settings{store};
    pintalux::EditorModel model{{pintalux::test::plain({1180, 700}), 2, {}}, settings};
    QList<pintalux::Command> asked; ///< what the bar asked for
    int dragsOut = 0;
    int snaps = 0;

    QWidget window;
    pintalux::CanvasView canvas{model, &window};
    pintalux::EditorChrome bar{model, canvas.hover(), [this](pintalux::Command command) { asked << command; },
        [this](QWidget&) { ++dragsOut; }, &window};
    pintalux::ToolPalette tools{model, [this] { ++snaps; }, &window};
    pintalux::ArrowOptionsPanel options{model, &window};
};
