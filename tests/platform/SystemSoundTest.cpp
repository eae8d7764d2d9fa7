// SPDX-License-Identifier: MIT
#include "platform/session/SystemSound.h"

#include "Stage.h"

TEST(SystemSound, WithoutASoundServerItIsSilentAndTheFileIsThePersonsOwn)
{
    const QTemporaryDir cache;
    const auto before = qgetenv("XDG_CACHE_HOME");
    qputenv("XDG_CACHE_HOME", cache.path().toLocal8Bit());
    SystemSound::play();
    const auto path = cache.filePath(u"pintalux/tink.wav"_s);
    for (const QDeadlineTimer limit(5000); !QFileInfo::exists(path) && !limit.hasExpired();)
        QThread::msleep(5);
    const QFileInfo file(path);
    EXPECT_EQ(stage::contents(path), SystemSound::wave());
    EXPECT_EQ(file.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    if (before.isNull())
        qunsetenv("XDG_CACHE_HOME");
    else
        qputenv("XDG_CACHE_HOME", before);
}
