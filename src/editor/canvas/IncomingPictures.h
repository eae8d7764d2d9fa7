// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QImage>
#include <QObject>

#include <deque>
#include <functional>

namespace pintalux {

/// Pictures on their way into a document: pasted or dropped, and still being decoded on a thread.
///
/// They arrive in the order in which they were given, and before whatever the person does next: a key, a
/// click and a window that closes wait for those that are missing. So what follows a paste finds the picture
/// there, and nothing is lost. Main thread only.
class IncomingPictures : public QObject {
public:
    using Decode = std::function<QImage()>; ///< on a thread of the pool; null when it is no picture
    using Arrival = std::function<void(const QImage&)>;

    void expect(Decode decode, Arrival arrival);
    /// Lets those that are missing arrive now.
    void finish();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Incoming {
        QFuture<QImage> picture;
        Arrival arrival;
    };

    void handOverFinished();
    Incoming takeFirst();

    std::deque<Incoming> missing;
};

} // namespace pintalux
