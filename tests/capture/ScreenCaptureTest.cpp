// SPDX-License-Identifier: MIT
#include "capture/ScreenCapture.h"

#include "Gestures.h"
#include "fakes/FakeScreenSource.h"
#include "platform/base/Worker.h"

namespace {

Error sourceError(int code) { return {ScreenSource::errorDomain, code, u"Falla de prueba."_s}; }

class ScreenCaptureTest : public testing::Test {
protected:
    std::shared_ptr<FakeScreenSource> desk = std::make_shared<FakeScreenSource>();

    void SetUp() override { ScreenCapture::setSource(desk); }
    void TearDown() override { ScreenCapture::setSource(nullptr); }

    /// The error that ends a capture; none when it succeeds.
    template <typename T> static std::optional<Error> failureOf(QFuture<T> future)
    {
        try {
            future.takeResult();
        } catch (const Error& error) {
            return error;
        }
        return std::nullopt;
    }
};

} // namespace

TEST_F(ScreenCaptureTest, EveryDisplayIsFrozenAtNativePixelsWithItsOwnScale)
{
    const auto frozen = ScreenCapture::freezeAllDisplays().takeResult();
    ASSERT_EQ(frozen.displays.size(), 2);
    for (int index = 0; index < 2; ++index) {
        const auto& display = frozen.displays[index];
        EXPECT_EQ(display.screen.name, desk->content.screens[index].name);
        EXPECT_EQ(display.pixelScale, index + 1);
        ASSERT_EQ(display.image.size(), QSize(400, 300));
        EXPECT_EQ(display.image.pixel(399, 298), FakeScreenSource::colorAt({399, 298}, index));
    }
    EXPECT_EQ(frozen.windows.size(), 3);
}

TEST_F(ScreenCaptureTest, ATitleWithoutEndIsCutBetweenCharacters)
{
    auto content = desk->content;
    const auto application = content.windows.first().applicationName;
    for (const int shift : {0, 1}) {
        content.windows.first().title = QString(shift, u'x') + u"😀"_s.repeated(100'000);
        const auto title = ScreenCapture::windowCandidates(content, desk->ownProcessId()).first().title;
        EXPECT_TRUE(title.startsWith(application));
        EXPECT_LE(title.size(), 1000);
        EXPECT_TRUE(title.back().isLowSurrogate());
    }
}

TEST_F(ScreenCaptureTest, OwnWindowsStayAwayUntilTheLastDisplayIsTakenAndComeBackAfterAFailure)
{
    ScreenCapture::freezeAllDisplays().waitForFinished();
    EXPECT_EQ(desk->log.join(u", "), u"content, hide, screen LEFT, screen RIGHT, show");

    desk->log.clear();
    desk->failures = {sourceError(7)};
    EXPECT_TRUE(failureOf(ScreenCapture::freezeAllDisplays()));
    EXPECT_EQ(desk->log.join(u", "), u"content, hide, screen LEFT, show")
        << "no second display after an error";
}

TEST_F(ScreenCaptureTest, DisplaysWithoutAToolkitScreenAreSkippedAndNoneLeftIsAnError)
{
    desk->content.screens[0].attached = false;
    const auto frozen = ScreenCapture::freezeAllDisplays().takeResult();
    ASSERT_EQ(frozen.displays.size(), 1);
    EXPECT_EQ(frozen.displays[0].screen.name, u"RIGHT");

    desk->content.screens[1].attached = false;
    const auto failure = failureOf(ScreenCapture::freezeAllDisplays());
    ASSERT_TRUE(failure);
    EXPECT_EQ(asCaptureError(*failure), CaptureError::noDisplay);
    EXPECT_EQ(failure->localizedDescription, u"No se encontró ninguna pantalla para capturar.");
}

TEST_F(ScreenCaptureTest, OnlyATemporaryFailureOfTheSourceIsTriedAgainOnceWhileTheMainThreadGoesOn)
{
    const int temporary = ScreenSource::temporaryFailure;
    const struct {
        const char* what;
        std::deque<Error> failures;
        std::optional<int> endsWith;
        int attempts;
    } table[] = {
        {"one temporary failure", {sourceError(temporary)}, std::nullopt, 2},
        {"another one after it", {sourceError(temporary), sourceError(8)}, 8, 2},
        {"another failure", {sourceError(8)}, 8, 1},
        {"the code in another domain", {Error(u"Other"_s, temporary, {})}, temporary, 1},
    };
    for (const auto& row : table) {
        desk->failures = row.failures;
        desk->log.clear();
        std::optional<Error> failure;
        bool hasEnded = false;
        int turns = 0; // of the main thread meanwhile
        whenFinished(ScreenCapture::capture(desk->content.windows[0]), qApp, [&](const auto& captured) {
            failure = failureOf(captured);
            hasEnded = true;
        });
        gesture::waitFor([&] { return ++turns, hasEnded; });
        EXPECT_EQ(failure ? std::optional(failure->code) : std::nullopt, row.endsWith) << row.what;
        EXPECT_EQ(desk->log.size(), row.attempts) << row.what;
        EXPECT_TRUE(row.attempts == 1 || turns > 5) << row.what;
    }
}

TEST_F(ScreenCaptureTest, FullScreenTakesTheDisplayUnderThePointer)
{
    const struct {
        QPointF pointer;
        int display;
    } table[] = {{{399.5, 299.5}, 0}, {{400, 0}, 1}, // an edge belongs to the screen that begins there
        {{500, 150}, 0}};                            // below the shorter screen: over none, so the first
    for (const auto& row : table) {
        desk->pointer = row.pointer;
        const auto result = ScreenCapture::captureDisplayUnderMouse().takeResult();
        EXPECT_EQ(result.pixelScale, row.display + 1) << row.pointer.x() << ", " << row.pointer.y();
        EXPECT_EQ(qBlue(result.image.pixel(0, 0)), row.display);
    }
    desk->content.screens[1].attached = false;
    desk->pointer = {450, 10};
    EXPECT_EQ(ScreenCapture::captureDisplayUnderMouse().takeResult().pixelScale, 1);
    desk->content.screens.clear();
    EXPECT_EQ(asCaptureError(*failureOf(ScreenCapture::captureDisplayUnderMouse())), CaptureError::noDisplay);
}

TEST_F(ScreenCaptureTest, OnlyNormalVisibleWindowsOfOthersLargerThanFortyPointsAreOffered)
{
    const QRectF large(0, 0, 200, 100);
    const struct {
        WindowInfo window;
        std::optional<QString> title; ///< none when the window must not be offered
    } table[] = {
        {{1, large, 0, 5, u"Notas"_s, u"Año nuevo — plan"_s}, u"Notas — Año nuevo — plan"_s},
        {{2, large, 0, 5, u"Notas"_s, u""_s}, u"Notas"_s},
        {{3, large, 0, 0, u""_s, u"Huérfana"_s}, u"Huérfana"_s},
        {{4, large, 0, 0, u""_s, u""_s}, u""_s},
        {{5, {0, 0, 41, 41}, 0, 5, u"A"_s, u""_s}, u"A"_s},
        {{6, {0, 0, 40, 100}, 0, 5, u"A"_s, u""_s}, std::nullopt},
        {{7, {0, 0, 100, 40}, 0, 5, u"A"_s, u""_s}, std::nullopt},
        {{8, large, 1, 5, u"A"_s, u"Flotante"_s}, std::nullopt},
        {{9, large, -1, 5, u"A"_s, u"Escritorio"_s}, std::nullopt},
        {{10, large, 0, desk->ownProcess, u"Pintalux"_s, u"Editor"_s}, std::nullopt},
        {{11, large, 0, 5, u"A"_s, u"Minimizada"_s, false}, std::nullopt},
    };
    desk->content.windows.clear();
    QList<std::pair<quint64, QString>> expected;
    for (const auto& row : table) {
        desk->content.windows.append(row.window);
        if (row.title)
            expected.append({row.window.id, *row.title});
    }
    QList<std::pair<quint64, QString>> offered;
    for (const auto& candidate : ScreenCapture::freezeAllDisplays().takeResult().windows)
        offered.append({candidate.window.id, candidate.title});
    EXPECT_EQ(offered, expected);
}

TEST_F(ScreenCaptureTest, AFailureIsToldWithTheWayOutWhereThePermissionIsMissing)
{
    QStringList told;
    ScreenCapture::setPresenter({.showPermissionHelp = [&](const PermissionHelp&) { told << u"help"_s; },
        .showMessage = [&](const QString& message, const QString&) { told << message; }});
    const auto toldOf = [&](const Error& error, bool hasPermission) {
        told.clear();
        desk->permission = hasPermission;
        ScreenCapture::report(error);
        return told;
    };
    const auto noDisplay = toError(CaptureError::noDisplay);
    const QStringList help{u"help"_s};
    EXPECT_EQ(toldOf(sourceError(ScreenSource::userDeclined), false), help);
    EXPECT_EQ(toldOf(noDisplay, false), help);
    EXPECT_EQ(
        toldOf(noDisplay, true), QStringList{u"No se pudo capturar: "_s + noDisplay.localizedDescription});
    EXPECT_EQ(toldOf(sourceError(-1), false), QStringList{u"No se pudo capturar: Falla de prueba."_s});
    desk->grantsWhenAsked = true;
    EXPECT_EQ(toldOf(noDisplay, false), QStringList()) << "the desktop has asked itself";
    ScreenCapture::setPresenter({});
}

TEST(ScreenCapture, WithoutASupportedDesktopCapturingGivesAnErrorToTell)
{
    auto future = ScreenCapture::freezeAllDisplays();
    EXPECT_THROW(
        try { future.takeResult(); } catch (const Error& error) {
            EXPECT_EQ(error.localizedDescription, u"Este escritorio no permite capturar la pantalla.");
            throw;
        },
        Error);
}
