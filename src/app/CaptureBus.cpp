// SPDX-License-Identifier: MIT
#include "app/CaptureBus.h"

#include "platform/base/ApplicationId.h"
#include "platform/session/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

const QString interfaceName = applicationId.toString() + u".Capture"_s;
const QString serviceName = applicationId.toString();
const QString objectPath = u"/io/github/pintalux/Pintalux/Capture"_s;
const QString cancelledError = serviceName + u".Error.Cancelled"_s;
const QString failedError = serviceName + u".Error.Failed"_s;
const QString pictureType = u"image/png"_s;
const QString textType = u"text/plain"_s;

/// Writing to anything but a file could wait for whoever reads.
bool isFile(int descriptor)
{
    struct stat state { };
    return fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode);
}

bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const auto written = write(descriptor, bytes.data(), std::size_t(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

QByteArray readAll(int descriptor)
{
    QByteArray bytes(lseek(descriptor, 0, SEEK_END), Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < bytes.size()) {
        const auto got = pread(descriptor, bytes.data() + filled, std::size_t(bytes.size() - filled), filled);
        if (got <= 0)
            return {};
        filled += got;
    }
    return bytes;
}

QDBusMessage replyTo(const QDBusMessage& call, const CaptureAnswer& answer, int output)
{
    using Kind = CaptureAnswer::Kind;
    if (answer.kind == Kind::cancelled)
        return call.createErrorReply(cancelledError, u"La captura se canceló."_s);
    if (answer.kind == Kind::failed)
        return call.createErrorReply(failedError, answer.problem);
    if (!writeAll(output, answer.content))
        return call.createErrorReply(failedError, u"No se pudo entregar la captura."_s);
    return call.createReply(answer.kind == Kind::picture ? pictureType : textType);
}

CaptureAnswer failure(const QString& sentence) { return {CaptureAnswer::Kind::failed, {}, sentence}; }

class CaptureObject : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.github.pintalux.Pintalux.Capture")

public:
    explicit CaptureObject(CaptureBus::Start startCapture)
        : start(std::move(startCapture))
    {
    }

public Q_SLOTS:
    Q_SCRIPTABLE QString Capture(
        const QString& action, const QString& screen, const QDBusUnixFileDescriptor& output);

private:
    CaptureBus::Start start;
};

QString CaptureObject::Capture(
    const QString& action, const QString& screen, const QDBusUnixFileDescriptor& output)
{
    const auto known = fromRawValue<CaptureAction>(action);
    if (!known || !isFile(output.fileDescriptor())) {
        sendErrorReply(QDBusError::InvalidArgs,
            known ? u"El resultado solo se puede escribir en un archivo."_s
                  : u"No hay ninguna captura «%1»."_s.arg(action));
        return {};
    }
    setDelayedReply(true);
    const auto call = message();
    const auto bus = connection();
    auto* caller
        = new QDBusServiceWatcher(call.service(), bus, QDBusServiceWatcher::WatchForUnregistration, this);
    const auto done = [call, bus, output, caller](const CaptureAnswer& answer) {
        caller->deleteLater();
        bus.send(replyTo(call, answer, output.fileDescriptor()));
    };
    const auto cancel = start(*known, screen, done);
    if (!cancel)
        return done(failure(u"Ya se está eligiendo algo en la pantalla."_s)), QString();
    connect(caller, &QDBusServiceWatcher::serviceUnregistered, caller, cancel);
    return {};
}

} // namespace

CaptureBus::CaptureBus(Start start)
    : object(std::make_unique<CaptureObject>(std::move(start)))
{
    if (auto bus = sessionBus())
        bus->registerObject(objectPath, object.get(), QDBusConnection::ExportScriptableSlots);
}

CaptureBus::~CaptureBus()
{
    if (auto bus = sessionBus())
        bus->unregisterObject(objectPath);
}

std::optional<CaptureAnswer> CaptureBus::ask(CaptureAction action, const QString& screen)
{
    const auto bus = sessionBus();
    if (!bus || !bus->interface()->isServiceRegistered(serviceName))
        return std::nullopt;
    const QDBusUnixFileDescriptor output(memfd_create("pintalux", MFD_CLOEXEC));
    auto call = QDBusMessage::createMethodCall(serviceName, objectPath, interfaceName, u"Capture"_s);
    call.setAutoStartService(false);
    call.setArguments({rawValue(action), screen, QVariant::fromValue(output)});
    const auto reply = bus->call(call, QDBus::Block, INT_MAX);
    if (reply.type() == QDBusMessage::ReplyMessage) {
        const bool isPicture = reply.arguments().value(0).toString() == pictureType;
        return CaptureAnswer{isPicture ? CaptureAnswer::Kind::picture : CaptureAnswer::Kind::text,
            readAll(output.fileDescriptor()), {}};
    }
    if (reply.errorName() == cancelledError)
        return CaptureAnswer{};
    return failure(reply.errorName() == failedError ? reply.errorMessage()
                                                    : u"Pintalux ya está en marcha, pero no responde."_s);
}

} // namespace pintalux

#include "CaptureBus.moc"
