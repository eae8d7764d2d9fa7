// SPDX-License-Identifier: MIT
#include "platform/session/SystemSound.h"

#include "platform/base/ApplicationId.h"
#include "platform/base/Files.h"

#include <QDataStream>
#include <QFile>
#include <QIODevice>
#include <QStandardPaths>

#include <canberra.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <mutex>
#include <numbers>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace pintalux::SystemSound {

namespace {

constexpr int sampleRate = 44100;
constexpr double seconds = 0.4;
constexpr double attackSeconds = 0.001;
constexpr double loudness = 0.4; ///< of the loudest sample, full scale 1

// A struck bar of glass: its overtones are no multiples of the first one, and die sooner the higher they are.
struct Overtone {
    double hertz;
    double amplitude;
    double decaySeconds; ///< until 1/e is left
};
constexpr std::array<Overtone, 3> overtones{{
    {1960, 1.0, 0.075},
    {1960 * 2.756, 0.42, 0.032},
    {1960 * 5.404, 0.16, 0.012},
}};

double amplitudeAt(double time)
{
    double sum = 0;
    for (const auto& [hertz, amplitude, decaySeconds] : overtones)
        sum += amplitude * std::exp(-time / decaySeconds) * std::sin(2 * std::numbers::pi * hertz * time);
    const double attack = std::min(1.0, time / attackSeconds);
    const double release = std::min(1.0, (seconds - time) / 0.05);
    return sum * attack * release;
}

QByteArray samples()
{
    std::vector<double> amplitudes(std::size_t(sampleRate * seconds));
    for (std::size_t index = 0; index < amplitudes.size(); ++index)
        amplitudes[index] = amplitudeAt(double(index) / sampleRate);
    double peak = 0;
    for (const auto amplitude : amplitudes)
        peak = std::max(peak, std::abs(amplitude));

    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    for (const auto amplitude : amplitudes)
        stream << qint16(std::lround(amplitude / peak * loudness * std::numeric_limits<qint16>::max()));
    return bytes;
}

// The sound server reads a file. The person's cache may be emptied at any time, so it is looked after anew.
std::optional<QByteArray> soundFile()
{
    const auto folder
        = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/pintalux"_s;
    const auto path = folder + u"/tink.wav"_s;
    try {
        makeFolders(folder, Audience::onlyOwner);
        const auto bytes = wave();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly) || file.readAll() != bytes)
            replaceFile(path, bytes, Audience::onlyOwner);
        return QFile::encodeName(path);
    } catch (const Error&) {
        return std::nullopt;
    }
}

struct DestroyContext {
    void operator()(ca_context* context) const { ca_context_destroy(context); }
};
struct DestroyProperties {
    void operator()(ca_proplist* properties) const { ca_proplist_destroy(properties); }
};

// The connection to the sound server, which may take its time to answer or never do so.
struct Player {
    std::mutex busy;
    std::unique_ptr<ca_context, DestroyContext> context;

    void connect()
    {
        ca_context* made = nullptr;
        if (ca_context_create(&made) != CA_SUCCESS)
            return;
        context.reset(made);
        ca_context_change_props(made, CA_PROP_APPLICATION_NAME, "Pintalux", CA_PROP_APPLICATION_ID,
            applicationId.toLatin1().constData(), nullptr);
    }

    void play()
    {
        const std::unique_lock alone(busy, std::try_to_lock);
        if (!alone)
            return;
        const auto file = soundFile();
        if (!context)
            connect();
        ca_proplist* made = nullptr;
        if (!file || !context || ca_proplist_create(&made) != CA_SUCCESS)
            return;
        const std::unique_ptr<ca_proplist, DestroyProperties> properties(made);
        ca_proplist_sets(made, CA_PROP_MEDIA_FILENAME, file->constData());
        ca_proplist_sets(made, CA_PROP_MEDIA_ROLE, "event");
        ca_proplist_sets(made, CA_PROP_EVENT_DESCRIPTION, "Captura");
        if (ca_context_play_full(context.get(), 1, made, nullptr, nullptr) != CA_SUCCESS)
            context.reset(); // a server may be there the next time
    }
};

} // namespace

void play()
{
    static const auto player = std::make_shared<Player>();
    // On a thread that nobody waits for, so that a server that hangs neither stops a window nor the end of
    // the program.
    try {
        std::thread([player = player] { player->play(); }).detach();
    } catch (const std::system_error&) {
        // No thread, no sound.
    }
}

QByteArray wave()
{
    constexpr quint16 linear = 1;
    constexpr quint16 channels = 1;
    constexpr quint16 bytesPerSample = 2;
    constexpr quint32 formatBytes = 16;
    const auto data = samples();

    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("RIFF", 4);
    stream << quint32(4 + 8 + formatBytes + 8 + quint32(data.size()));
    stream.writeRawData("WAVEfmt ", 8);
    stream << formatBytes << linear << channels << quint32(sampleRate)
           << quint32(sampleRate * channels * bytesPerSample) << quint16(channels * bytesPerSample)
           << quint16(8 * bytesPerSample);
    stream.writeRawData("data", 4);
    stream << quint32(data.size());
    stream.writeRawData(data.constData(), int(data.size()));
    return bytes;
}

} // namespace pintalux::SystemSound
