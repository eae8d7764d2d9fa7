// SPDX-License-Identifier: MIT
#include "app/SingleInstance.h"

#include "platform/session/SessionBus.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

const QString interfaceName = u"org.freedesktop.Application"_s;

// The place of the object follows from the name.
QString objectPath(const QString& id) { return u'/' + QString(id).replace(u'.', u'/').replace(u'-', u'_'); }

// What the desktop gave this process to prove that a person has just started it.
QVariantMap platformData()
{
    QVariantMap data;
    for (const auto& [variable, key] : {std::pair("DESKTOP_STARTUP_ID", u"desktop-startup-id"_s),
             std::pair("XDG_ACTIVATION_TOKEN", u"activation-token"_s)})
        if (const auto value = qEnvironmentVariable(variable); !value.isEmpty())
            data.insert(key, value);
    return data;
}

// The desktop gives the focus to a window only for what a person has just done, and whoever was told to do it
// can prove it for somebody else. The toolkit uses the proof for the next window that asks for the focus.
void takeProof(const QVariantMap& platformData)
{
    if (const auto token = platformData.value(u"activation-token"_s).toString(); !token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

QString addressOf(const QString& path)
{
    const auto absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    return QUrl::fromLocalFile(absolute).toString(QUrl::FullyEncoded);
}

// The files among the addresses; others are not ours to fetch.
QStringList filesAmong(const QStringList& addresses)
{
    QStringList paths;
    for (const auto& address : addresses)
        if (const QUrl url(address); url.isLocalFile())
            paths.append(url.toLocalFile());
    return paths;
}

// What others see of this process on the bus. Each call is answered at once and acted upon afterwards: what
// the program then does may take long, for it may show a menu or a question.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(SingleInstance* instance)
        : QDBusAbstractAdaptor(instance)
        , instance(instance)
    {
    }

public Q_SLOTS:
    void Activate(const QVariantMap& platform_data)
    {
        takeProof(platform_data);
        later([this] { Q_EMIT instance->activated(); });
    }

    void Open(const QStringList& uris, const QVariantMap& platform_data, const QDBusMessage& call)
    {
        takeProof(platform_data);
        const auto paths = filesAmong(uris);
        if (!paths.isEmpty())
            later([this, paths] { Q_EMIT instance->openRequested(paths); });
        if (paths.size() != uris.size())
            refuse(call, u"Pintalux solo abre archivos de este equipo."_s);
    }

    void ActivateAction(const QString& action_name, const QVariantList& parameter,
        const QVariantMap& platform_data, const QDBusMessage& call)
    {
        takeProof(platform_data);
        if (instance->knowsAction && !instance->knowsAction(action_name))
            return refuse(call, u"Pintalux no conoce la acción «%1»."_s.arg(action_name));
        later([=, this] { Q_EMIT instance->actionRequested(action_name, parameter); });
    }

private:
    static void refuse(const QDBusMessage& call, const QString& sentence)
    {
        call.setDelayedReply(true);
        QDBusConnection::sessionBus().send(call.createErrorReply(QDBusError::InvalidArgs, sentence));
    }

    template <typename Work> void later(Work work)
    {
        QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
    }

    SingleInstance* instance;
};

} // namespace

SingleInstance::SingleInstance(const QString& name, QObject* parent)
    : QObject(parent)
    , id(name)
{
    new ApplicationAdaptor(this);
    claim();
}

SingleInstance::~SingleInstance()
{
    auto bus = ownRole == Role::first ? sessionBus() : std::nullopt;
    if (!bus)
        return;
    bus->interface()->unregisterService(id);
    bus->unregisterObject(objectPath(id));
}

// The object stands before the name is taken, so that whoever sees the name also finds the object.
void SingleInstance::claim()
{
    auto bus = sessionBus();
    if (!bus) {
        ownRole = Role::alone;
        return;
    }
    bus->registerObject(objectPath(id), this, QDBusConnection::ExportAdaptors);
    const auto answer = bus->interface()->registerService(
        id, QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
    if (answer.isValid() && answer.value() == QDBusConnectionInterface::ServiceRegistered) {
        ownRole = Role::first;
        return;
    }
    bus->unregisterObject(objectPath(id));
    ownRole = answer.isValid() ? Role::second : Role::alone;
}

bool SingleInstance::forwardActivation() { return forward(u"Activate"_s, {}); }

bool SingleInstance::forwardOpen(const QStringList& paths)
{
    QStringList addresses;
    for (const auto& path : paths)
        addresses.append(addressOf(path));
    return forward(u"Open"_s, {addresses});
}

bool SingleInstance::forwardAction(const QString& name, const QVariantList& parameters)
{
    return forward(u"ActivateAction"_s, {name, QVariant(parameters)});
}

bool SingleInstance::forward(const QString& method, const QVariantList& arguments)
{
    const auto bus = ownRole == Role::second ? sessionBus() : std::nullopt;
    if (!bus)
        return false;
    auto message = QDBusMessage::createMethodCall(id, objectPath(id), interfaceName, method);
    message.setAutoStartService(false); // this process would rather be the one
    message.setArguments(arguments + QVariantList{platformData()});
    const auto answer = bus->call(message, QDBus::Block, answerLimitMilliseconds);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return true;
    claim(); // the first may have ended meanwhile; while it lives, this changes nothing
    return false;
}

} // namespace pintalux

#include "SingleInstance.moc"
