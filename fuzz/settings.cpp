// SPDX-License-Identifier: MIT

// The settings file: what is accepted is applied to valid values and survives being written and read again.

#include "model/Palette.h"
#include "platform/base/UserDefaults.h"
#include "settings/SettingsFile.h"

#include <cstdlib>

using namespace pintalux;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    const auto json = QByteArray(reinterpret_cast<const char*>(data), qsizetype(size));
    auto store = UserDefaults::inMemory();
    Settings settings(store);
    try {
        const auto snapshot = Settings::Snapshot::decoded(json);
        require(Settings::Snapshot::decoded(snapshot.encoded()) == snapshot);
        settings.apply(snapshot);
    } catch (const Error& error) {
        require(!error.localizedDescription.isEmpty());
        require(settings.values() == SettingsValues());
        return 0;
    }
    const auto& values = settings.values();
    require(values.strokeWidth >= 1 && values.strokeWidth <= 20);
    require(values.lastGradient >= -1 && values.lastGradient < Palette::gradients().size());
    require(values.saveFolder.startsWith(u'/'));
    require(Settings(store).values() == values);
    return 0;
}
