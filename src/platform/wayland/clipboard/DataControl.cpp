// SPDX-License-Identifier: MIT
#include "platform/wayland/clipboard/DataControl.h"

#include "platform/wayland/Connection.h"

#include <QByteArray>
#include <QStringList>

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <wlr-data-control-unstable-v1-client-protocol.h>

#include <atomic>
#include <cerrno>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace pintalux::wayland {

namespace {

using Manager = Handle<zwlr_data_control_manager_v1, zwlr_data_control_manager_v1_destroy>;
using Device = Handle<zwlr_data_control_device_v1, zwlr_data_control_device_v1_destroy>;
using Source = Handle<zwlr_data_control_source_v1, zwlr_data_control_source_v1_destroy>;
using Seat = Handle<wl_seat, wl_seat_destroy>;

const QString plainText = u"text/plain"_s;
// The names by which programs ask for the same text.
const QStringList textNames{
    u"text/plain;charset=utf-8"_s, u"UTF8_STRING"_s, u"TEXT"_s, u"STRING"_s, plainText};

/// A file descriptor that is closed with its owner.
class File {
public:
    explicit File(int descriptor)
        : descriptor(descriptor)
    {
    }
    ~File()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    File(File&& other) noexcept
        : descriptor(std::exchange(other.descriptor, -1))
    {
    }
    File& operator=(File&& other) noexcept
    {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    int get() const { return descriptor; }

private:
    int descriptor;
};

/// What somebody is pasting, until they have taken all of it.
struct Transfer {
    File pipe;
    QByteArray bytes;
    qsizetype written = 0;

    /// False when it is over.
    bool write()
    {
        const auto count
            = ::write(pipe.get(), bytes.constData() + written, std::size_t(bytes.size() - written));
        if (count > 0)
            written += count;
        const bool isLater = count < 0 && (errno == EAGAIN || errno == EINTR);
        return (count > 0 || isLater) && written < bytes.size();
    }
};

/// Something that was copied, for as long as it is the last.
struct Copied {
    std::shared_ptr<const QMimeData> data;
    Source source;
    std::vector<Transfer>* transfers = nullptr;

    void send(const QString& type, File pipe) const
    {
        const auto bytes
            = textNames.contains(type) && data->hasText() ? data->text().toUtf8() : data->data(type);
        // Who pastes may be slow, or may never read.
        if (!bytes.isEmpty() && fcntl(pipe.get(), F_SETFL, O_NONBLOCK) == 0)
            transfers->push_back({std::move(pipe), bytes});
    }
};

constexpr zwlr_data_control_source_v1_listener sourceListener{
    .send = [](void* copied, zwlr_data_control_source_v1*, const char* type,
                int32_t pipe) { static_cast<Copied*>(copied)->send(QString::fromUtf8(type), File(pipe)); },
    // Somebody else has copied something.
    .cancelled
    = [](void* copied, zwlr_data_control_source_v1*) { static_cast<Copied*>(copied)->data.reset(); },
};

// What others copy is the toolkit's to read.
constexpr zwlr_data_control_device_v1_listener deviceListener{
    .data_offer = [](void*, zwlr_data_control_device_v1*,
                      zwlr_data_control_offer_v1* offer) { zwlr_data_control_offer_v1_destroy(offer); },
    .selection = [](void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1*) {},
    .finished = [](void*, zwlr_data_control_device_v1*) {},
    .primary_selection = [](void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1*) {},
};

void leaveSignalsToOthers()
{
    sigset_t signals;
    sigfillset(&signals);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace

class DataControl::Thread {
public:
    /// Throws `Error` when there is no compositor or no thread.
    Thread()
        : wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
        , manager(connection.offered().bind<zwlr_data_control_manager_v1>(
              zwlr_data_control_manager_v1_interface, 1))
        , seat(connection.offered().bind<wl_seat>(wl_seat_interface, 1))
    {
        if (!manager || !seat || wake.get() < 0)
            throw connectionLost();
        device.reset(zwlr_data_control_manager_v1_get_data_device(manager.get(), seat.get()));
        zwlr_data_control_device_v1_add_listener(device.get(), &deviceListener, nullptr);
        thread = std::thread([this] { run(); });
    }
    ~Thread()
    {
        isEnding = true;
        eventfd_write(wake.get(), 1);
        thread.join();
    }
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    void offer(std::shared_ptr<const QMimeData> data)
    {
        const std::scoped_lock hold(lock);
        next = std::move(data);
        eventfd_write(wake.get(), 1);
    }

private:
    void run()
    {
        leaveSignalsToOthers();
        try {
            while (!isEnding) {
                takeNext();
                serve();
            }
        } catch (const Error&) {
            return; // with the compositor the session ends
        }
    }

    void takeNext()
    {
        std::shared_ptr<const QMimeData> data;
        {
            const std::scoped_lock hold(lock);
            data = std::move(next);
        }
        if (!data)
            return;
        auto copied = std::make_unique<Copied>();
        copied->data = std::move(data);
        copied->transfers = &transfers;
        copied->source.reset(zwlr_data_control_manager_v1_create_data_source(manager.get()));
        zwlr_data_control_source_v1_add_listener(copied->source.get(), &sourceListener, copied.get());
        auto types = copied->data->formats();
        if (types.removeAll(plainText) > 0)
            types += textNames;
        for (const auto& type : types)
            zwlr_data_control_source_v1_offer(copied->source.get(), type.toUtf8().constData());
        zwlr_data_control_device_v1_set_selection(device.get(), copied->source.get());
        current = std::move(copied);
    }

    void serve()
    {
        std::vector<pollfd> waiting{{wake.get(), POLLIN, 0}};
        for (const auto& transfer : transfers)
            waiting.push_back({transfer.pipe.get(), POLLOUT, 0});
        connection.dispatch(-1, waiting);
        eventfd_t count = 0;
        eventfd_read(wake.get(), &count);
        std::erase_if(transfers, [](Transfer& transfer) { return !transfer.write(); });
        if (current && !current->data)
            current.reset();
    }

    Connection connection;
    File wake;
    Manager manager;
    Seat seat;
    Device device;
    std::vector<Transfer> transfers;
    std::unique_ptr<Copied> current;
    std::atomic<bool> isEnding = false;
    std::mutex lock; ///< of what is to be offered next
    std::shared_ptr<const QMimeData> next;
    std::thread thread;
};

std::unique_ptr<DataControl> DataControl::create()
{
    try {
        return std::unique_ptr<DataControl>(new DataControl(std::make_unique<Thread>()));
    } catch (const Error&) {
        return nullptr;
    } catch (const std::system_error&) {
        return nullptr; // no thread
    }
}

DataControl::DataControl(std::unique_ptr<Thread> started)
    : thread(std::move(started))
{
}

DataControl::~DataControl() = default;

void DataControl::offer(std::unique_ptr<const QMimeData> data) { thread->offer(std::move(data)); }

} // namespace pintalux::wayland
