// SPDX-License-Identifier: MIT
#include "app/SingleInstance.h"

#include "Desktop.h"

#include <signal.h>

using namespace pintalux::test;

namespace {

// A process that tries to be the program; its lines as they come.
class Start {
public:
    explicit Start(const QStringList& arguments = {}, DisplaySession& on = desktop())
        : session(on)
        , process(on.start(QStringLiteral(PINTALUX_SINGLE_INSTANCE), arguments))
    {
    }
    ~Start() { end(); }
    Start(const Start&) = delete;
    Start& operator=(const Start&) = delete;

    QStringList lines()
    {
        process.waitForReadyRead(1);
        while (process.canReadLine())
            seen.append(QString::fromUtf8(process.readLine()).trimmed());
        return seen;
    }
    bool says(const QString& line, int limitMilliseconds = patience)
    {
        return waitUntil([&] { return lines().contains(line); }, limitMilliseconds);
    }
    void signal(int number) const { ::kill(pid_t(process.processId()), number); }
    void end() { session.stop(process); }

private:
    DisplaySession& session;
    QProcess& process;
    QStringList seen;
};

} // namespace

TEST(SingleInstance, OfManyStartsAtOnceExactlyOneIsFirstAndTheOthersReachIt)
{
    std::vector<std::unique_ptr<Start>> starts;
    for (int count = 0; count < 8; ++count)
        starts.push_back(std::make_unique<Start>());
    ASSERT_TRUE(waitUntil(
        [&] {
            return std::ranges::all_of(starts, [](const auto& start) {
                return start->lines().contains(u"first"_s) || start->lines().size() == 2;
            });
        },
        10000));
    Start* first = nullptr;
    for (const auto& start : starts) {
        if (start->lines().first() == u"first") {
            EXPECT_FALSE(first) << "two are first";
            first = start.get();
        } else {
            EXPECT_EQ(start->lines(), (QStringList{u"second"_s, u"true second"_s}));
        }
    }
    ASSERT_TRUE(first);
    EXPECT_TRUE(waitUntil([&] { return first->lines().count(u"activated"_s) == 7; }));
}

TEST(SingleInstance, OtherProgramsAndLaterStartsReachItByTheStandardInterface)
{
    Start first;
    ASSERT_TRUE(first.says(u"first"_s));
    const QString noData = u"{}"_s;
    EXPECT_EQ(callProgram(u"Activate"_s, {noData}), "()\n");
    EXPECT_TRUE(first.says(u"activated"_s));
    EXPECT_EQ(callProgram(u"Open"_s, {u"['file:///tmp/a%20b.png']"_s, noData}), "()\n");
    EXPECT_TRUE(first.says(u"open /tmp/a b.png"_s));
    EXPECT_EQ(callProgram(u"Open"_s, {u"['file:///tmp/d.png', 'https://example.org/c.png']"_s, noData}), "")
        << "nothing is fetched from elsewhere, and the caller is told";
    EXPECT_TRUE(first.says(u"open /tmp/d.png"_s));
    EXPECT_EQ(callProgram(u"ActivateAction"_s, {u"area"_s, u"[<'texto'>, <3>, <true>]"_s, noData}), "()\n");
    EXPECT_TRUE(first.says(u"action area QString=texto|int=3|bool=true"_s))
        << qPrintable(first.lines().join(u'\n'));
    Start action({u"--action"_s, u"color"_s, u"uno"_s});
    EXPECT_TRUE(action.says(u"true second"_s));
    EXPECT_TRUE(first.says(u"action color QString=uno"_s)) << qPrintable(first.lines().join(u'\n'));
    Start files({u"--open"_s, u"sub/../año #1 50%.png"_s, u"/tmp/b?c.png"_s});
    EXPECT_TRUE(files.says(u"true second"_s));
    const auto relative = QDir::current().absoluteFilePath(u"año #1 50%.png"_s);
    EXPECT_TRUE(first.says(u"open %1|/tmp/b?c.png"_s.arg(relative))) << qPrintable(first.lines().join(u'\n'));
}

TEST(SingleInstance, AFirstProcessThatHangsDoesNotHangTheSecond)
{
    Start first;
    ASSERT_TRUE(first.says(u"first"_s));
    first.signal(SIGSTOP);
    Start second({u"--open"_s, u"/tmp/a.png"_s});
    EXPECT_TRUE(second.says(u"false second"_s, 2 * SingleInstance::answerLimitMilliseconds));
    first.signal(SIGCONT);
}

TEST(SingleInstance, WhenTheFirstHasEndedMeanwhileTheSecondTakesItsPlace)
{
    auto first = std::make_unique<Start>();
    ASSERT_TRUE(first->says(u"first"_s));
    SingleInstance instance;
    ASSERT_EQ(instance.role(), SingleInstance::Role::second);
    int activations = 0;
    QObject::connect(&instance, &SingleInstance::activated, [&] { ++activations; });
    first->signal(SIGKILL);
    first.reset();
    EXPECT_FALSE(instance.forwardActivation());
    EXPECT_EQ(instance.role(), SingleInstance::Role::first);

    Start later;
    EXPECT_TRUE(waitUntil([&] { return activations == 1; })) << "and is reachable there";
}

TEST(SingleInstance, WithoutASessionBusTheProgramRunsAloneAndStartsNoBus)
{
    for (const auto& address : {QString(), u"unix:path=/nonexistent/bus"_s, u"autolaunch:"_s}) {
        QProcess process;
        auto environment = desktop().environment();
        if (address.isEmpty())
            environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        else
            environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(PINTALUX_SINGLE_INSTANCE));
        waitUntil([&] { return process.waitForReadyRead(1), process.canReadLine(); });
        EXPECT_EQ(process.readLine(), "alone\n") << qPrintable(address);
        process.kill();
        process.waitForFinished();
    }
}
