// SPDX-License-Identifier: MIT

// Freezes the screens, lets somebody select on them and prints what came of it. A selected picture is saved
// into FOLDER/selected.png, the frozen ones into FOLDER/NAME.png.
//   pintalux_select_on_screens MODE FOLDER

#include "capture/CaptureOverlay.h"
#include "platform/backend/DisplaySystem.h"

#include <QApplication>
#include <QTextStream>

using namespace pintalux;

namespace {

QString describe(const OverlayOutcome& outcome, const QString& folder)
{
    const auto saved = [&](const QString& kind, const CaptureResult& result) {
        result.image.save(folder + QStringLiteral("/selected.png"));
        return QStringLiteral("%1 %2x%3 %4")
            .arg(kind)
            .arg(result.image.width())
            .arg(result.image.height())
            .arg(result.pixelScale);
    };
    if (const auto* image = std::get_if<Outcome::Image>(&outcome))
        return saved(QStringLiteral("image"), image->result);
    if (const auto* text = std::get_if<Outcome::Text>(&outcome))
        return saved(QStringLiteral("text"), text->result);
    if (const auto* window = std::get_if<Outcome::Window>(&outcome))
        return QStringLiteral("window ") + window->title;
    if (const auto* color = std::get_if<Outcome::Color>(&outcome))
        return QStringLiteral("color ") + color->hex;
    return QStringLiteral("cancelled");
}

} // namespace

int main(int argc, char** argv)
{
    DisplaySystem::choose();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const auto arguments = QApplication::arguments();
    const auto mode = fromRawValue<OverlayMode>(arguments.value(1));
    if (arguments.size() != 3 || !mode)
        return 2;
    const auto folder = arguments[2];
    WindowSystem::use(DisplaySystem::makeWindowSystem());
    ScreenCapture::setSource(DisplaySystem::makeScreenSource());
    const auto frozen = ScreenCapture::freezeAllDisplays().takeResult();
    for (const auto& display : frozen.displays)
        display.image.save(folder + u'/' + display.screen.name + QStringLiteral(".png"));
    CaptureOverlayController overlay(*mode, frozen, [&](const OverlayOutcome& outcome) {
        QTextStream(stdout) << describe(outcome, folder) << Qt::endl;
        QApplication::quit();
    });
    overlay.show();
    return QApplication::exec();
}
