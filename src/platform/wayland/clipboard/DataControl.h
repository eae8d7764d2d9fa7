// SPDX-License-Identifier: MIT
#pragma once

#include <QMimeData>

#include <memory>

namespace pintalux::wayland {

/// The clipboard for a program that need not have the focus (wlr-data-control), on a connection and a thread
/// of its own: who pastes is served whatever the main thread does.
class DataControl {
public:
    /// Null where the compositor does not offer it.
    static std::unique_ptr<DataControl> create();

    /// What was offered is no longer there to be pasted.
    ~DataControl();
    DataControl(const DataControl&) = delete;
    DataControl& operator=(const DataControl&) = delete;

    /// Takes the place of what any program copied before. The thread reads it for whoever pastes.
    void offer(std::unique_ptr<const QMimeData> data);

private:
    class Thread;

    explicit DataControl(std::unique_ptr<Thread> thread);

    std::unique_ptr<Thread> thread;
};

} // namespace pintalux::wayland
