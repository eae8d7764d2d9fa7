// SPDX-License-Identifier: MIT
#include "editor/canvas/IncomingPictures.h"

#include "platform/base/Worker.h"

#include <QCoreApplication>
#include <QEvent>

namespace pintalux {

namespace {

/// What a person does that could be meant for a picture that is still missing.
bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::KeyPress:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::Drop:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

} // namespace

void IncomingPictures::expect(Decode decode, Arrival arrival)
{
    if (missing.empty())
        QCoreApplication::instance()->installEventFilter(this);
    missing.push_back({runOn(*QThreadPool::globalInstance(), std::move(decode)), std::move(arrival)});
    whenFinished(missing.back().picture, this, [this](const auto&) { handOverFinished(); });
}

void IncomingPictures::finish()
{
    while (!missing.empty()) {
        const auto first = takeFirst();
        first.arrival(first.picture.result()); // which waits for it
    }
}

bool IncomingPictures::eventFilter(QObject* watched, QEvent* event)
{
    if (isInput(event->type()))
        finish();
    return QObject::eventFilter(watched, event);
}

void IncomingPictures::handOverFinished()
{
    while (!missing.empty() && missing.front().picture.isFinished()) {
        const auto first = takeFirst();
        first.arrival(first.picture.result());
    }
}

IncomingPictures::Incoming IncomingPictures::takeFirst()
{
    auto first = std::move(missing.front());
    missing.pop_front();
    if (missing.empty())
        QCoreApplication::instance()->removeEventFilter(this);
    return first;
}

} // namespace pintalux
