// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

#include <algorithm>

namespace pintalux::test {

/// A home folder and an environment for programs under test: of this process's environment only what any
/// program needs to run, nothing that names a person's folders, display, bus or desktop.
class OwnHome {
public:
    OwnHome()
    {
        using namespace Qt::StringLiterals;
        const QString runtime = folder.filePath(u"runtime"_s);
        if (!folder.isValid() || !QDir().mkdir(runtime))
            qFatal("no temporary folder");
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const auto inherited = QProcessEnvironment::systemEnvironment();
        for (const QString& name : inherited.keys())
            if (isNeutral(name))
                values.insert(name, inherited.value(name));
        values.insert(u"LC_ALL"_s, u"C.UTF-8"_s); // what the machine speaks is no matter, but letters are
        values.insert(u"HOME"_s, folder.path());
        values.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    }

    QString path() const { return folder.path(); }
    const QProcessEnvironment& environment() const { return values; }

    /// Gives this process the environment. Before its application object is made.
    static void enter(const QProcessEnvironment& environment)
    {
        for (const QString& name : QProcessEnvironment::systemEnvironment().keys())
            if (!environment.contains(name))
                qunsetenv(name.toLocal8Bit().constData());
        for (const QString& name : environment.keys())
            qputenv(name.toLocal8Bit().constData(), environment.value(name).toLocal8Bit());
    }

private:
    static bool isNeutral(const QString& name)
    {
        static const QStringList names{QStringLiteral("PATH"), QStringLiteral("TMPDIR"),
            QStringLiteral("USER"), QStringLiteral("LOGNAME"), QStringLiteral("SHELL"),
            QStringLiteral("TERM"), QStringLiteral("CI"), QStringLiteral("QT_LOGGING_RULES")};
        static const QStringList prefixes{QStringLiteral("LD_"), QStringLiteral("GTEST_"),
            QStringLiteral("PINTALUX_"), QStringLiteral("FONTCONFIG_")};
        const auto begins = [&](const QString& prefix) { return name.startsWith(prefix); };
        return names.contains(name) || name.endsWith(QStringLiteral("SAN_OPTIONS"))
            || std::any_of(prefixes.begin(), prefixes.end(), begins);
    }

    QTemporaryDir folder;
    QProcessEnvironment values;
};

} // namespace pintalux::test
