// SPDX-License-Identifier: MIT
#include "platform/session/SystemWorkspace.h"

#include "platform/session/SessionBus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// A file manager that must be started first needs some of it.
constexpr int fileManagerLimitMilliseconds = 5000;

bool showFolder(const QString& path) { return QDesktopServices::openUrl(QUrl::fromLocalFile(path)); }

} // namespace

bool SystemWorkspace::openFolder(const QString& path)
{
    return showFolder(QFileInfo(path).absoluteFilePath());
}

bool SystemWorkspace::openUrl(const QUrl& url) { return QDesktopServices::openUrl(url); }

void SystemWorkspace::revealFile(const QString& path)
{
    const QFileInfo file(path);
    const auto folder = file.absolutePath();
    const auto bus = sessionBus();
    if (!bus) {
        showFolder(folder);
        return;
    }
    auto message = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s,
        u"/org/freedesktop/FileManager1"_s, u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    const auto address = QUrl::fromLocalFile(file.absoluteFilePath()).toString(QUrl::FullyEncoded);
    message << QStringList{address} << QString();
    // Ends itself with the answer, which comes within the limit at the latest.
    auto* watcher = new QDBusPendingCallWatcher(
        bus->asyncCall(message, fileManagerLimitMilliseconds), QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, folder] {
        if (watcher->isError())
            showFolder(folder);
        watcher->deleteLater();
    });
}

} // namespace pintalux
