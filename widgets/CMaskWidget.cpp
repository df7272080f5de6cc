#include "widgets/CMaskWidget.h"

#include <QEvent>
#include <QPainter>
#include <QPaintEvent>

namespace {
constexpr qreal MaskOpacity = 0.4;
}

CMaskWidget::CMaskWidget(QWidget *window)
    : QWidget(window)
{
    setObjectName(QStringLiteral("CMaskWidget"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setGeometry(window->rect());
    window->installEventFilter(this);
    raise();
    show();
}

bool CMaskWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == parentWidget()) {
        setGeometry(parentWidget()->rect());
    }
    return QWidget::eventFilter(watched, event);
}

void CMaskWidget::paintEvent(QPaintEvent *event)
{
    QColor colour(Qt::black);
    colour.setAlphaF(MaskOpacity);
    QPainter(this).fillRect(event->rect(), colour);
}
