// SPDX-License-Identifier: MIT

// One process a session. The first prints "first", then a line for each thing asked of it; a later one hands
// over what its arguments say and prints "true" or "false" with what it is then.
//   pintalux_single_instance [--open FILE... | --action NAME PARAMETER...]

#include "app/SingleInstance.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

using namespace Qt::StringLiterals;

using namespace pintalux;

namespace {

void say(const QString& line) { QTextStream(stdout) << line << Qt::endl; }

QString nameOf(SingleInstance::Role role)
{
    const std::array names{u"first"_s, u"second"_s, u"alone"_s};
    return names[std::size_t(role)];
}

bool handOver(SingleInstance& instance, const QStringList& arguments)
{
    if (arguments.value(0) == u"--open")
        return instance.forwardOpen(arguments.mid(1));
    if (arguments.value(0) != u"--action")
        return instance.forwardActivation();
    QVariantList parameters;
    for (const auto& parameter : arguments.mid(2))
        parameters.append(parameter);
    return instance.forwardAction(arguments.value(1), parameters);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    SingleInstance instance;
    say(nameOf(instance.role()));
    if (instance.role() == SingleInstance::Role::second) {
        const bool done = handOver(instance, application.arguments().mid(1));
        say((done ? u"true "_s : u"false "_s) + nameOf(instance.role()));
        return 0;
    }
    QObject::connect(&instance, &SingleInstance::activated, [] { say(u"activated"_s); });
    QObject::connect(&instance, &SingleInstance::openRequested,
        [](const QStringList& paths) { say(u"open "_s + paths.join(u'|')); });
    QObject::connect(
        &instance, &SingleInstance::actionRequested, [](const QString& name, const QVariantList& parameters) {
            QStringList texts;
            for (const auto& parameter : parameters)
                texts.append(QString::fromLatin1(parameter.typeName()) + u'=' + parameter.toString());
            say(u"action "_s + name + u' ' + texts.join(u'|'));
        });
    return QCoreApplication::exec();
}
