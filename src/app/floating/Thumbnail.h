// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureResult.h"
#include "platform/base/SkippableTimer.h"
#include "render/export/Exporter.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

class QScreen;

namespace pintalux {

class Settings;
class ThumbnailPanel;

/// A finished capture as a small card in the lower right corner of the screen under the pointer: a click
/// annotates it, a drag drops it into another program, buttons save (or show), annotate and copy it.
///
/// It lies above everything, never takes the keyboard, and goes by itself after a few seconds without the
/// pointer on it. Main thread only.
class ThumbnailController : public QObject {
    Q_OBJECT

public:
    /// What the card leaves to others.
    struct Actions {
        std::function<void(const CaptureResult&)> openEditor;
        /// Shows the file in the person's file manager.
        std::function<void(const QString& path)> revealFile;
    };

    /// `saving` is the file that is being written of the capture; should that fail, the card offers to save
    /// it. Nothing is shown yet.
    ThumbnailController(CaptureResult shot, std::optional<Exporter::Saving> saving, const Settings& settings,
        Actions actions, QObject* parent);
    ~ThumbnailController() override;

    void show();
    /// Takes the card off the screen, at once or gliding away. Closing it again does nothing.
    void close(bool animated);

    /// Closes the card and opens the capture in an editor.
    void edit();
    void copy();
    /// Saves the capture where it is not being saved yet, shows the file once it is written and closes the
    /// card. When that fails the card stays. What was begun is finished also when the card is closed
    /// meanwhile.
    void save();
    /// The file to hand to another program: the saved one, else one made for it now under the name that the
    /// saved one will have; none when that fails.
    std::optional<QString> fileToDrag();

Q_SIGNALS:
    /// The card has gone, once.
    void closed();

private:
    void checkLifetime();
    void wasWritten(const QFuture<QString>& path);
    QPoint restingPlace(const QScreen* screen) const;

    const CaptureResult shot;
    std::optional<Exporter::Saving> saving; ///< as long as it has not failed
    std::optional<QString> savedPath;       ///< once it is written
    std::optional<QString> temporaryPath;   ///< made for an earlier drag
    const Settings& settings;
    Actions actions;
    bool isSaving = false;
    QPointer<ThumbnailPanel> panel; ///< while it is shown
    QPoint place;                   ///< of its window, unless the person moves it
    QTimer look;                    ///< whether the card is to go
    SkippableTimer lifetime;        ///< runs out unless the pointer is on it
};

} // namespace pintalux
