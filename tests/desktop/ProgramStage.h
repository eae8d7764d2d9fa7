// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"
#include "platform/base/Files.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace pintalux::test {

/// The real program, with settings and folders of its own; each test starts it, and it ends with the test.
class ProgramStage : public testing::Test {
protected:
    /// `more` are the settings of a test beside those of all.
    explicit ProgramStage(const QJsonObject& more = {})
        : environment(desktop().environment())
    {
        using namespace Qt::StringLiterals;
        QJsonObject settings{{u"autoSave"_s, true}, {u"autoCopy"_s, true}, {u"afterCapture"_s, u"copyOnly"_s},
            {u"saveFolder"_s, captures()}, {u"hasLaunchedBefore"_s, true}};
        for (auto setting = more.begin(); setting != more.end(); ++setting)
            settings[setting.key()] = setting.value();
        makeFolders(QFileInfo(store).path());
        replaceFile(store, QJsonDocument(settings).toJson());
        environment.insert(u"XDG_CONFIG_HOME"_s, home.filePath(u"config"_s));
        environment.insert(u"XDG_DATA_HOME"_s, home.filePath(u"data"_s));
        QGuiApplication::clipboard()->setText(u"antes"_s);
    }

    void start(QProcess& process, const QStringList& arguments) const
    {
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(PINTALUX_PROGRAM), arguments);
    }

    /// Starts the program and waits until it is ready.
    void startProgram()
    {
        const auto before = pictureByOthers();
        start(program, {QStringLiteral("--trace")});
        ASSERT_TRUE(reaches("en marcha"));
        // It says that this desktop has no tray; that message must have come and gone.
        waitUntil([&] { return differingPixels(pictureByOthers(), before) > 0; }, 5000);
        ASSERT_TRUE(waitUntil([&] { return differingPixels(pictureByOthers(), before) == 0; }));
    }

    /// Waits for the next line of the trace with this milestone.
    bool reaches(const QByteArray& milestone)
    {
        return waitUntil(
            [&] {
                printed += program.readAllStandardError();
                const auto at = printed.indexOf(milestone);
                if (at >= 0)
                    printed.remove(0, at + milestone.size());
                return at >= 0;
            },
            10000);
    }

    /// Asks for a command over the bus; what the bus answers.
    static QByteArray asked(const QString& action)
    {
        return callProgram(
            QStringLiteral("ActivateAction"), {action, QStringLiteral("[]"), QStringLiteral("{}")});
    }

    /// As the test asked it to.
    void expectEnd()
    {
        ASSERT_TRUE(program.waitForFinished(patience)) << "it hangs";
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 0);
        hasEnded = true;
    }

    void TearDown() override
    {
        if (hasEnded || program.program().isEmpty())
            return;
        printed += program.readAllStandardError();
        ASSERT_EQ(program.state(), QProcess::Running) << program.exitCode() << "\n" << printed.constData();
        program.terminate();
        EXPECT_TRUE(program.waitForFinished(patience));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit) << "killed instead of asked";
        EXPECT_EQ(program.exitCode(), 128 + SIGTERM);
    }

    QString captures() const { return home.filePath(QStringLiteral("capturas")); }

    /// The one picture that was saved.
    QImage saved()
    {
        QStringList names;
        const auto find = [&] { return names = QDir(captures()).entryList({QStringLiteral("*.png")}); };
        waitUntil([&] { return !find().isEmpty(); });
        savedName = names.value(0);
        return QImage(QDir(captures()).filePath(savedName)).convertToFormat(QImage::Format_RGB32);
    }

    /// The picture on the clipboard, once there is one.
    static QImage copied()
    {
        const auto offered = [] { return QGuiApplication::clipboard()->mimeData(); };
        const auto png = QStringLiteral("image/png");
        waitUntil([&] { return offered()->hasFormat(png); });
        return QImage::fromData(offered()->data(png)).convertToFormat(QImage::Format_RGB32);
    }

    static QString activeWindow()
    {
        return QString::fromUtf8(
            desktop().run(QStringLiteral("xdotool"), {QStringLiteral("getactivewindow")}))
            .trimmed();
    }

    QTemporaryDir home;
    const QString store = home.filePath(QStringLiteral("config/pintalux/defaults.json"));
    QProcessEnvironment environment;
    QProcess program;
    QByteArray printed;
    QString savedName;
    bool hasEnded = false;
};

} // namespace pintalux::test
