#include "app/PopupWidget.h"

#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

namespace {
constexpr qreal CornerRadius = 6; ///< device-independent pixels
constexpr int CloseIconSize = 16;
const QColor FrameColour(0x9f, 0xb0, 0xc8);
} // namespace

PopupWidget::PopupWidget(QWidget *parent)
    : QFrame(parent)
    , m_closeButton(new QToolButton(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_closeButton, 0, Qt::AlignRight);
    m_closeButton->setObjectName(QStringLiteral("btn_close"));
    m_closeButton->setProperty("nav", QStringLiteral("tBtnStyle_5"));
    m_closeButton->setIcon(QIcon(QStringLiteral(":/32x32/Images/32x32/Close.png")));
    m_closeButton->setIconSize(QSize(CloseIconSize, CloseIconSize));
    m_closeButton->setToolTip(tr("Close"));
    m_closeButton->setAccessibleName(tr("Close"));
    connect(m_closeButton, &QToolButton::clicked, this, &QWidget::close);
    hide(); // also where the parent is shown later
    parent->installEventFilter(this);
    parent->window()->installEventFilter(this); // once, where it is the parent
}

PopupWidget::~PopupWidget()
{
    enableOthers();
}

void PopupWidget::setWidget(QWidget *content)
{
    qobject_cast<QVBoxLayout *>(layout())->addWidget(content, 1);
}

void PopupWidget::disableOthers()
{
    m_lastFocus = window()->focusWidget();
    const QList<QWidget *> others = parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *other : others) {
        if (other != this && !other->isWindow() && other->isEnabled()) {
            other->setEnabled(false);
            m_disabled.append(other);
        }
    }
}

void PopupWidget::enableOthers()
{
    for (const QPointer<QWidget> &other : std::exchange(m_disabled, {})) {
        if (!other.isNull()) {
            other->setEnabled(true);
        }
    }
}

void PopupWidget::moveToMiddle()
{
    const QSize room = parentWidget()->size() - size();
    move(room.width() / 2, room.height() / 2);
}

void PopupWidget::enabledCloseButton(bool isEnabled)
{
    m_closeButton->setEnabled(isEnabled);
}

bool PopupWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        moveToMiddle();
    }
    // The window itself gets the keys where nothing in it has the focus.
    if (watched == window() && event->type() == QEvent::KeyPress && isVisible()) {
        keyPressEvent(static_cast<QKeyEvent *>(event));
        return true;
    }
    return QFrame::eventFilter(watched, event);
}

void PopupWidget::closeEvent(QCloseEvent *event)
{
    event->setAccepted(m_closeButton->isEnabled());
    if (event->isAccepted()) {
        emit closed();
    }
}

/// Also when the window goes; but not when it is only minimised.
void PopupWidget::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        enableOthers();
        if (!m_lastFocus.isNull()) {
            m_lastFocus->setFocus(Qt::PopupFocusReason);
        }
    }
    QFrame::hideEvent(event);
}

/// No key goes on to the parent.
void PopupWidget::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel)) {
        close();
    }
    event->accept();
}

void PopupWidget::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(FrameColour);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), CornerRadius, CornerRadius);
}

void PopupWidget::showEvent(QShowEvent *event)
{
    QFrame::showEvent(event);
    if (!event->spontaneous()) {
        moveToMiddle();
        disableOthers();
        raise();
        m_closeButton->setFocus(Qt::PopupFocusReason);
        focusNextChild(); // the first one of the content, if there is any
    }
}
