// SPDX-License-Identifier: MIT
#include "platform/desktop/SystemSound.h"

#include <QDataStream>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

using namespace Qt::StringLiterals;

using namespace pintalux;

TEST(SystemSound, TheWaveIsWellFormedAudibleUndistortedAndEndsInSilence)
{
    const auto wave = SystemSound::wave();
    ASSERT_GT(wave.size(), 44);
    const auto number = [&](qsizetype at) {
        QDataStream stream(wave.mid(at, 4));
        stream.setByteOrder(QDataStream::LittleEndian);
        quint32 value = 0;
        stream >> value;
        return qsizetype(value);
    };
    EXPECT_EQ(wave.left(4) + wave.mid(8, 8), "RIFFWAVEfmt ");
    EXPECT_EQ(number(4), wave.size() - 8);
    EXPECT_EQ(number(28), 2 * number(24)) << "bytes a second of mono 16 bit samples";
    EXPECT_EQ(number(40), wave.size() - 44);

    QDataStream stream(wave.mid(44));
    stream.setByteOrder(QDataStream::LittleEndian);
    QList<int> samples;
    for (qint16 sample = 0; !stream.atEnd();) {
        stream >> sample;
        samples.append(sample);
    }
    const auto peakOf = [&](qsizetype from, qsizetype count) {
        int peak = 0;
        for (const auto sample : samples.mid(from, count))
            peak = std::max(peak, std::abs(sample));
        return peak;
    };
    const auto peak = peakOf(0, samples.size());
    EXPECT_GT(peak, 8000);
    EXPECT_LT(peak, 20000);
    EXPECT_EQ(samples.first(), 0) << "a step at the start is a click";
    EXPECT_LT(peakOf(samples.size() - 441, 441), peak / 100) << "the last hundredth of a second";
}

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
    EXPECT_EQ(file.size(), SystemSound::wave().size());
    EXPECT_EQ(file.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    if (before.isNull())
        qunsetenv("XDG_CACHE_HOME");
    else
        qputenv("XDG_CACHE_HOME", before);
}
