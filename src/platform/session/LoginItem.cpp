// SPDX-License-Identifier: MIT
#include "platform/session/LoginItem.h"

#include "platform/base/ApplicationId.h"
#include "platform/base/Files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

/// An entry takes a few hundred bytes; what is larger is none.
constexpr qint64 largestEntry = 1 << 16;

/// A text as the value of a key in a desktop entry.
QString escapedValue(QString text)
{
    return text.replace(u'\\', u"\\\\"_s)
        .replace(u'\n', u"\\n"_s)
        .replace(u'\r', u"\\r"_s)
        .replace(u'\t', u"\\t"_s);
}

QString unescapedValue(QStringView value)
{
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (const auto letter = value[++i].unicode()) {
        case u's':
            text += u' ';
            break;
        case u'n':
            text += u'\n';
            break;
        case u'r':
            text += u'\r';
            break;
        case u't':
            text += u'\t';
            break;
        default:
            text += QChar(letter);
        }
    }
    return text;
}

/// A path as the first word of a command: in quotes, with what means something inside them escaped, and
/// without field codes.
QString quotedWord(const QString& path)
{
    QString word;
    for (const auto letter : path) {
        if (QStringView(u"\"`$\\").contains(letter))
            word += u'\\';
        word += letter;
        if (letter == u'%')
            word += letter;
    }
    return u'"' + word + u'"';
}

/// The keys of the group that describes the program.
QHash<QString, QString> readEntry(const QByteArray& bytes)
{
    QHash<QString, QString> keys;
    bool isInGroup = false;
    for (const auto& line : QString::fromUtf8(bytes).split(u'\n')) {
        const auto text = QStringView(line).trimmed();
        const auto equals = text.indexOf(u'=');
        if (text.startsWith(u'['))
            isInGroup = text == u"[Desktop Entry]";
        else if (isInGroup && equals > 0 && !text.startsWith(u'#'))
            keys.insert(
                text.first(equals).trimmed().toString(), unescapedValue(text.sliced(equals + 1).trimmed()));
    }
    return keys;
}

class AutostartEntry : public LoginItem {
public:
    explicit AutostartEntry(QString programPath)
        : program(std::move(programPath))
    {
    }

    bool isEnabled() const override
    {
        QByteArray bytes;
        if (readFile(path(), largestEntry, bytes) != 0)
            return false;
        const auto keys = readEntry(bytes);
        const auto is = [&keys](const QString& key, QStringView value) { return keys.value(key) == value; };
        const auto needed = keys.value(u"TryExec"_s);
        return !keys.value(u"Exec"_s).isEmpty() && !is(u"Hidden"_s, u"true")
            && !is(u"X-GNOME-Autostart-enabled"_s, u"false")
            && (needed.isEmpty() || !QStandardPaths::findExecutable(needed).isEmpty());
    }

    void setEnabled(bool enabled) override
    {
        const auto entry = path();
        if (enabled) {
            makeFolders(QFileInfo(entry).path());
            replaceFile(entry, text().toUtf8());
        } else if (std::remove(QFile::encodeName(entry).constData()) != 0 && errno != ENOENT
            && errno != ENOTDIR) {
            throw fileError(errno, entry);
        }
    }

private:
    static QString path()
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + u"/autostart/pintalux.desktop"_s;
    }

    /// `TryExec` keeps a session from complaining when the program has been uninstalled.
    QString text() const
    {
        return u"[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Pintalux\n"
               "Comment=Capturas de pantalla con anotaciones\n"
               "Icon=%1\n"
               "TryExec=%2\n"
               "Exec=%3\n"
               "Terminal=false\n"
               "StartupNotify=false\n"
               "X-GNOME-Autostart-enabled=true\n"_s.arg(
                   applicationId.toString(), escapedValue(program), escapedValue(quotedWord(program)));
    }

    QString program;
};

} // namespace

std::unique_ptr<LoginItem> LoginItem::create() { return create(QCoreApplication::applicationFilePath()); }

std::unique_ptr<LoginItem> LoginItem::create(const QString& program)
{
    return std::make_unique<AutostartEntry>(program);
}

} // namespace pintalux
