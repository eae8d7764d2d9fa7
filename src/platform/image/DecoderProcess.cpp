// SPDX-License-Identifier: MIT
#include "platform/image/DecoderProcess.h"

#include <QBuffer>
#include <QColorSpace>
#include <QGuiApplication>
#include <QImageReader>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <span>
#include <utility>

namespace pintalux {

namespace {

using Outcome = DecodedImage::Outcome;

/// By its own name such a process is told from every other start of the program.
constexpr const char* processName = "pintalux-decoder";

/// What it has open besides the standard three, which lead nowhere.
enum Descriptor { input = 3, pixels = 4, report = 5, firstFree = 6 };

constexpr rlim_t mostMemory = rlim_t(6) << 30;
/// Reserved for each thread that a decoder starts, so that the limit on memory bounds their number: some 90.
constexpr std::size_t threadStack = std::size_t(64) << 20;

/// What the decoder tells when the pixels are in their place.
struct Report {
    Outcome outcome = Outcome::unreadable;
    qint32 width = 0;
    qint32 height = 0;
    QImage::Format format = QImage::Format_Invalid;
    bool hasDotsPerInch = false;
    double dotsPerInch = 0;
};

class File {
public:
    explicit File(int opened)
        : number(opened)
    {
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { close(); }

    void close()
    {
        if (number >= 0)
            ::close(std::exchange(number, -1));
    }

    int number;
};

template <typename Call> auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Bytes that a file holds or shall hold, seen as memory. Null when there is no room.
class Mapping {
public:
    Mapping(int descriptor, std::size_t length, int protection, int flags)
        : size(length)
        , start(::mmap(nullptr, length, protection, flags, descriptor, 0))
    {
        if (start == MAP_FAILED)
            start = nullptr;
    }
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;
    ~Mapping()
    {
        if (start)
            ::munmap(start, size);
    }

    uchar* bytes() const { return static_cast<uchar*>(start); }

    const std::size_t size;

private:
    void* start;
};

bool writeAll(int descriptor, std::span<const char> bytes)
{
    while (!bytes.empty()) {
        const auto written = uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (written <= 0)
            return false;
        bytes = bytes.subspan(std::size_t(written));
    }
    return true;
}

// --- In the process that decodes ---

void lower(int resource, rlim_t value)
{
    struct rlimit bound { };
    ::getrlimit(resource, &bound); // which may be lower already
    bound.rlim_cur = bound.rlim_max = std::min(bound.rlim_max, value);
    ::setrlimit(resource, &bound);
}

/// Bytes that are reserved already: next to nothing, or terabytes under a sanitizer.
rlim_t addressSpace()
{
    std::ifstream status("/proc/self/statm");
    rlim_t pages = 0;
    status >> pages;
    return pages * rlim_t(::sysconf(_SC_PAGESIZE));
}

void limitThisProcess()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    lower(RLIMIT_CORE, 0);
    lower(RLIMIT_CPU, rlim_t(DecoderProcess::patience.count()));
    lower(RLIMIT_AS, addressSpace() + mostMemory);
    pthread_attr_t attributes;
    if (::pthread_attr_init(&attributes) != 0)
        return;
    ::pthread_attr_setstacksize(&attributes, threadStack);
    ::pthread_setattr_default_np(&attributes);
    ::pthread_attr_destroy(&attributes);
}

QByteArray inputBytes()
{
    struct stat found { };
    if (::fstat(input, &found) != 0 || found.st_size <= 0)
        return {};
    // Stays for as long as the process.
    const void* start = ::mmap(nullptr, std::size_t(found.st_size), PROT_READ, MAP_PRIVATE, input, 0);
    if (start == MAP_FAILED)
        return {};
    return QByteArray::fromRawData(static_cast<const char*>(start), found.st_size);
}

bool putPixels(const QImage& image)
{
    const auto lineLength = std::size_t(image.width()) * sizeof(QRgb);
    const auto length = lineLength * std::size_t(image.height());
    if (::ftruncate(pixels, off_t(length)) != 0)
        return false;
    const Mapping place(pixels, length, PROT_READ | PROT_WRITE, MAP_SHARED);
    if (!place.bytes())
        return false;
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(place.bytes() + lineLength * std::size_t(y), image.constScanLine(y), lineLength);
    return true;
}

/// Drawings may hold text, for which the toolkit wants its fonts; loading those takes a while.
bool holdsText(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader::imageFormat(&buffer).startsWith("svg");
}

int decodeForAnother(int argc, char** argv)
{
    limitThisProcess();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const auto bytes = inputBytes();
    std::unique_ptr<QCoreApplication> application(new QCoreApplication(argc, argv));
    if (holdsText(bytes)) {
        application.reset();
        application.reset(new QGuiApplication(argc, argv));
    }
    auto decoded = decodeHere(bytes);
    if (decoded.outcome == Outcome::picture && !putPixels(decoded.image))
        decoded.outcome = Outcome::noRoomToDecode;
    const Report told{decoded.outcome, decoded.image.width(), decoded.image.height(), decoded.image.format(),
        decoded.dotsPerInch.has_value(), decoded.dotsPerInch.value_or(0)};
    writeAll(report, {reinterpret_cast<const char*>(&told), sizeof told});
    std::_Exit(EXIT_SUCCESS); // nothing is put away: decoders have been seen to crash even then
}

// --- In the process that wants the picture ---

bool isServed = false;

/// Starts the process; 0 when the system does not let it.
pid_t start(int inputFile, int pixelsFile, int reportFile)
{
    posix_spawn_file_actions_t actions;
    if (::posix_spawn_file_actions_init(&actions) != 0)
        return 0;
    // The given numbers are above those that they get.
    bool ready = true;
    for (const auto& [from, to] :
        {std::pair{inputFile, int(input)}, {pixelsFile, int(pixels)}, {reportFile, int(report)}})
        ready = ready && ::posix_spawn_file_actions_adddup2(&actions, from, to) == 0;
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ready = ready && ::posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_RDWR, 0) == 0;
    ready = ready && ::posix_spawn_file_actions_addclosefrom_np(&actions, firstFree) == 0;

    std::array<char*, 2> arguments{const_cast<char*>(processName), nullptr};
    pid_t process = 0;
    if (!ready
        || ::posix_spawn(&process, "/proc/self/exe", &actions, nullptr, arguments.data(), environ) != 0)
        process = 0;
    ::posix_spawn_file_actions_destroy(&actions);
    return process;
}

/// A descriptor of the same file above those that the other process knows by number.
int above(int descriptor) { return ::fcntl(descriptor, F_DUPFD_CLOEXEC, int(firstFree)); }

/// Waits for what the other process tells. None when it ends without; `tooSlow` when it does neither in time.
std::optional<Report> awaitReport(int descriptor, std::chrono::milliseconds limit)
{
    using namespace std::chrono;
    const auto deadline = steady_clock::now() + limit;
    Report told{};
    std::size_t arrived = 0;
    while (arrived < sizeof told) {
        pollfd wanted{descriptor, POLLIN, 0};
        const auto left = duration_cast<milliseconds>(deadline - steady_clock::now()).count();
        if (left <= 0 || uninterrupted([&] { return ::poll(&wanted, 1, int(left)); }) == 0)
            return Report{.outcome = Outcome::tooSlow};
        const auto length = uninterrupted([&] {
            return ::read(descriptor, reinterpret_cast<char*>(&told) + arrived, sizeof told - arrived);
        });
        if (length <= 0)
            return std::nullopt;
        arrived += std::size_t(length);
    }
    return told;
}

/// The picture in the file that the other process has filled, which is believed nothing.
DecodedImage taken(const Report& told, int file)
{
    if (told.outcome != Outcome::picture)
        return {.outcome = told.outcome};
    const bool isKnown
        = told.format == QImage::Format_RGB32 || told.format == QImage::Format_ARGB32_Premultiplied;
    if (!isKnown || told.width <= 0 || told.height <= 0)
        return {};
    const qint64 lineLength = qint64(told.width) * qint64(sizeof(QRgb));
    const qint64 length = lineLength * told.height;
    struct stat found { };
    if (length > DecodedImage::memoryLimit || ::fstat(file, &found) != 0 || found.st_size < length)
        return {};
    const Mapping place(file, std::size_t(length), PROT_READ, MAP_SHARED);
    QImage image(told.width, told.height, told.format);
    if (!place.bytes() || image.isNull())
        return {.outcome = Outcome::noRoomToDecode};
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(image.scanLine(y), place.bytes() + lineLength * y, std::size_t(lineLength));
    image.setColorSpace(QColorSpace::SRgb);
    return {std::move(image), told.hasDotsPerInch ? std::optional(told.dotsPerInch) : std::nullopt,
        Outcome::picture};
}

} // namespace

std::optional<int> DecoderProcess::serve(int argc, char** argv)
{
    if (argc == 1 && std::strcmp(argv[0], processName) == 0)
        return decodeForAnother(argc, argv);
    isServed = true;
    return std::nullopt;
}

DecodedImage DecoderProcess::decode(const QByteArray& bytes, std::chrono::milliseconds limit)
{
    // Otherwise the new process would do whatever this one does.
    if (!isServed)
        qFatal("DecoderProcess::serve was not called");
    File given(above(File(::memfd_create("bytes", MFD_CLOEXEC)).number));
    File filled(above(File(::memfd_create("pixels", MFD_CLOEXEC)).number));
    std::array<int, 2> ends{-1, -1};
    if (given.number < 0 || filled.number < 0 || ::pipe2(ends.data(), O_CLOEXEC) != 0)
        return {.outcome = Outcome::noRoomToDecode};
    const File reading(ends[0]);
    File writing(above(File(ends[1]).number));
    if (writing.number < 0 || !writeAll(given.number, {bytes.constData(), std::size_t(bytes.size())}))
        return {.outcome = Outcome::noRoomToDecode};

    const pid_t process = start(given.number, filled.number, writing.number);
    if (process == 0)
        return {.outcome = Outcome::noRoomToDecode};
    writing.close(); // so that the pipe ends with the other process
    const auto told = awaitReport(reading.number, limit);
    // All that it had to do is done, or will not be; from here on nobody writes to the pixels.
    ::kill(process, SIGKILL);
    uninterrupted([&] { return ::waitpid(process, nullptr, 0); });
    return told ? taken(*told, filled.number) : DecodedImage{};
}

} // namespace pintalux
