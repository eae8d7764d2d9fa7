// SPDX-License-Identifier: MIT
#include "app/QuitSignals.h"

#include <csignal>

namespace {

class Stubborn : public QWidget {
public:
    bool wasAsked = false;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        wasAsked = true;
        event->ignore();
    }
};

} // namespace

// Killed in place of ended, or held up by a window, the program would leave texts half typed and pictures
// not copied.
TEST(QuitSignals, WindowsCloseFirstButNoneHoldsTheProgram)
{
    quitOnSignals();
    Stubborn window;
    window.show();
    QTimer::singleShot(0, [] { std::raise(SIGTERM); });
    QTimer::singleShot(10'000, qApp, [] { QCoreApplication::exit(-1); });
    EXPECT_EQ(QApplication::exec(), 128 + SIGTERM);
    EXPECT_TRUE(window.wasAsked);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        std::signal(signal, SIG_DFL);
}
