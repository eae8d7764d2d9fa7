// SPDX-License-Identifier: MIT
#include "editor/canvas/IncomingPictures.h"

#include "app/messages/HUD.h"
#include "platform/base/Worker.h"

#include <QCoreApplication>
#include <QEvent>

using namespace Qt::StringLiterals;

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

/// Null with a message when there was no memory or no thread to decode it.
QImage pictureOf(const QFuture<QImage>& decoded)
{
    try {
        return decoded.result();
    } catch (const Error& error) {
        HUD::show(error.localizedDescription, u"exclamationmark.triangle"_s);
        return {};
    }
}

} // namespace

void IncomingPictures::expect(Decode decode, Arrival arrival)
{
    if (missing.empty())
        QCoreApplication::instance()->installEventFilter(this);
    missing.push_back({runOn(sideWorker(), std::move(decode)), std::move(arrival)});
    whenFinished(missing.back().picture, this, [this](const auto&) { handOverFinished(); });
}

void IncomingPictures::finish()
{
    while (!missing.empty()) {
        const auto first = takeFirst();
        first.arrival(pictureOf(first.picture)); // which waits for it
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
        first.arrival(pictureOf(first.picture));
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
