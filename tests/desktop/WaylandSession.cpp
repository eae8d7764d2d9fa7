// SPDX-License-Identifier: MIT
#include "WaylandSession.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pintalux::test {

namespace {

constexpr uint nobody = 65534;
constexpr QSize desktopSize(2280, 800); // points of both outputs

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        giveUp(u"cannot write "_s + path);
}

} // namespace

WaylandSession::WaylandSession(const QString& secondOutput)
{
    startCompositor(secondOutput);
    startBus();
    pointerAndKeys = &start(QStringLiteral(PINTALUX_HANDS),
        {QString::number(desktopSize.width()), QString::number(desktopSize.height())});
    if (firstLine(*pointerAndKeys) != "done")
        giveUp(u"no pointer and no keyboard"_s);
}

WaylandSession::~WaylandSession() { end(); }

void WaylandSession::startCompositor(const QString& secondOutput)
{
    const auto runtime = folder.filePath(u"runtime"_s);
    const auto ready = runtime + u"/ready"_s;
    QDir().mkdir(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const auto configuration = folder.filePath(u"sway"_s);
    write(configuration,
        u"output HEADLESS-1 mode 1280x800 scale 1 position 0 0\n"
        "output HEADLESS-2 %1 position 1280 0\n"
        "default_border none\nfocus_follows_mouse no\n"
        "exec echo $WAYLAND_DISPLAY $SWAYSOCK >%2.new && mv %2.new %2\n"_s.arg(secondOutput, ready)
            .toUtf8());

    programEnvironment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    programEnvironment.insert(u"XDG_SESSION_TYPE"_s, u"wayland"_s);
    auto inherited = programEnvironment;
    for (const auto& [name, value] : {std::pair(u"WLR_BACKENDS"_s, u"headless"_s),
             std::pair(u"WLR_HEADLESS_OUTPUTS"_s, u"2"_s), std::pair(u"WLR_LIBINPUT_NO_DEVICES"_s, u"1"_s),
             std::pair(u"WLR_RENDERER"_s, u"pixman"_s), std::pair(u"HOME"_s, folder.path())})
        programEnvironment.insert(name, value);
    if (geteuid() == 0) {
        for (const auto& path : {folder.path(), runtime})
            if (chown(QFile::encodeName(path).constData(), nobody, nobody) != 0)
                giveUp(u"cannot give a folder away"_s);
        QFile::setPermissions(configuration, QFile::ReadOwner | QFile::ReadOther);
        start(u"setpriv"_s,
            {u"--reuid=65534"_s, u"--regid=65534"_s, u"--clear-groups"_s, u"sway"_s, u"-c"_s, configuration});
    } else {
        start(u"sway"_s, {u"-c"_s, configuration});
    }
    programEnvironment = inherited;

    if (!waitUntil([&] { return QFile::exists(ready); }))
        giveUp(u"sway does not come up"_s);
    QFile file(ready);
    if (!file.open(QIODevice::ReadOnly))
        giveUp(u"sway does not say where it is"_s);
    const auto names = QString::fromLocal8Bit(file.readAll()).simplified().split(u' ');
    programEnvironment.insert(u"WAYLAND_DISPLAY"_s, names.value(0));
    programEnvironment.insert(u"SWAYSOCK"_s, names.value(1));
}

QImage WaylandSession::pictureByOthers(const QString& output) const
{
    return QImage::fromData(run(u"grim"_s, {u"-o"_s, output, u"-t"_s, u"ppm"_s, u"-"_s}))
        .convertToFormat(QImage::Format_RGB32);
}

QImage WaylandSession::restingPicture(const QString& output) const
{
    QImage picture;
    waitUntil([&] {
        const auto former = std::exchange(picture, pictureByOthers(output));
        letPass(100);
        return picture == former;
    });
    return picture;
}

void WaylandSession::tell(const QString& command) const { run(u"swaymsg"_s, {command}); }

void WaylandSession::hands(const QString& command)
{
    pointerAndKeys->write(command.toUtf8() + '\n');
    if (firstLine(*pointerAndKeys) != "done")
        giveUp(u"the hands cannot "_s + command);
    letPass(30);
}

void WaylandSession::drag(QPoint from, QPoint to)
{
    const auto move = [&](QPoint place) { hands(u"move %1 %2"_s.arg(place.x()).arg(place.y())); };
    move(from);
    hands(u"press left"_s);
    move((from + to) / 2);
    move(to);
    hands(u"release left"_s);
}

} // namespace pintalux::test
