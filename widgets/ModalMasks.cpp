#include "widgets/ModalMasks.h"

#include "widgets/CMaskWidget.h"

#include <QApplication>
#include <QEvent>

ModalMasks::ModalMasks(QApplication *application)
    : QObject(application)
{
    application->installEventFilter(this);
}

bool ModalMasks::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    const bool isBlocked = type == QEvent::WindowBlocked;
    // A window that gets a new native window hears anew whether it is blocked, but never that the old one no longer is.
    const bool isFree = type == QEvent::WindowUnblocked || type == QEvent::WinIdChange;
    if ((isBlocked || isFree) && watched->isWidgetType()) {
        auto *window = static_cast<QWidget *>(watched);
        auto *mask = window->findChild<CMaskWidget *>(QString(), Qt::FindDirectChildrenOnly);
        if (isFree) {
            delete mask;
        } else if (mask == nullptr && window->isWindow()) {
            new CMaskWidget(window);
        }
    }
    return QObject::eventFilter(watched, event);
}
