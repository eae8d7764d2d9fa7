// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureResult.h"
#include "render/export/Exporter.h"

#include <QColor>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace pintalux {

class Settings;

/// Takes a finished capture to where the person's settings want it.
///
/// Main thread only. What belongs to others (windows, focus, sound, text recognition) is reached through
/// `Routes`.
class Delivery {
public:
    struct Routes {
        /// Gives the focus back to the window that had it before the capture.
        std::function<void()> reactivatePrevious;
        /// Forgets that window: a window of the program's own takes the focus.
        std::function<void()> forgetPrevious;
        std::function<void()> playSound;
        std::function<void(const CaptureResult&)> openEditor;
        /// `saving` is the file that is being written of it, if any.
        std::function<void(const CaptureResult&, const std::optional<Exporter::Saving>& saving)>
            showThumbnail;
        /// Recognises the text of a picture and calls back on the main thread; an empty text means none was
        /// found.
        std::function<void(const QImage&, std::function<void(const QString&)>)> recognizeText;
        std::function<void(const QString& message, const QString& symbol, const QColor& tint)> showMessage;
    };

    Delivery(const Settings& settings, Routes routes);

    /// Sound, clipboard, automatic save, then the editor, the thumbnail or a message, by the settings. The
    /// file is written on a thread, for which nothing else waits but the end of the program; a failure is
    /// silent, except where nothing but the file would keep the capture: then it is copied, and that is told.
    void deliver(const CaptureResult& result);
    /// Copies the text in the picture.
    void deliverText(const CaptureResult& result);
    /// Copies the colour's hexadecimal text.
    void deliverColor(const QString& hex);
    void cancelled() { routes.reactivatePrevious(); }

private:
    Exporter::Saving save(const CaptureResult& result) const;
    void tellOnceSaved(const CaptureResult& result, const Exporter::Saving& saving);
    void copyText(const QString& text);

    const Settings& settings;
    Routes routes;
    QObject context; ///< of what is still to be told
};

} // namespace pintalux
