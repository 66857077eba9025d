#include "widgets/ActivityWatch.h"

#include <QCoreApplication>
#include <QEvent>

namespace corvane {

ActivityWatch::ActivityWatch(std::function<void()> seen, QObject* parent)
    : QObject(parent)
    , seen_(std::move(seen))
{
    QCoreApplication::instance()->installEventFilter(this);
}

ActivityWatch::~ActivityWatch()
{
    if (QCoreApplication* app = QCoreApplication::instance())
        app->removeEventFilter(this);
}

bool ActivityWatch::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
        seen_();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace corvane
