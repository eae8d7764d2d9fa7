// SPDX-License-Identifier: MIT
#pragma once

#include "platform/base/ApplicationId.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <functional>

namespace pintalux {

/// Makes one process of a user's session the program's, and hands later starts' wishes to it.
///
/// The process that owns the program's name on the session bus is the first. It is reachable there as
/// `org.freedesktop.Application`, for later starts and for whoever else wants it to do something.
/// For the main thread, with an application object. Requests arrive from the event loop: none is lost when
/// the signals are connected before it runs.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Role {
        first,  ///< this process is the program
        second, ///< another one is: forward and end
        alone,  ///< there is no session bus: run, and nobody can reach this process
    };

    /// Claims the name. Of processes that do so at the same moment exactly one becomes first.
    explicit SingleInstance(const QString& id = applicationId.toString(), QObject* parent = nullptr);
    ~SingleInstance() override;

    Role role() const { return ownRole; }

    /// For a second process: hands its wish to the first. True when the first has taken it. False when it
    /// does not answer within `answerLimitMilliseconds`, or when it has ended: then this process has tried to
    /// take its place, which `role` tells.
    bool forwardActivation();
    /// Paths may be relative to the current folder.
    bool forwardOpen(const QStringList& paths);
    /// Parameters are plain values: text, numbers, truth values.
    bool forwardAction(const QString& name, const QVariantList& parameters = {});

    static constexpr int answerLimitMilliseconds = 2000;

    /// Asked of each command that another process sends; one that is not known is refused with an error.
    /// None: all are taken.
    std::function<bool(const QString& name)> knowsAction;

Q_SIGNALS:
    /// The program was started again without anything to do.
    void activated();
    /// Files to open, absolute paths.
    void openRequested(const QStringList& paths);
    /// A command by its name.
    void actionRequested(const QString& name, const QVariantList& parameters);

private:
    void claim();
    bool forward(const QString& method, const QVariantList& arguments);

    QString id;
    Role ownRole = Role::alone;
};

} // namespace pintalux
