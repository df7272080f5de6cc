#include "app/PopupWidget.h"

#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>
#include <QVector>

namespace {
constexpr qreal CornerRadius = 6; ///< device-independent pixels
constexpr int CloseIconSize = 16;
const QColor FrameColour(0x9f, 0xb0, 0xc8);
} // namespace

class PopupWidgetPrivate
{
public:
    explicit PopupWidgetPrivate(PopupWidget *popup)
        : q(popup)
    {
    }

    void build();
    void disableOthers();
    void enableOthers();
    void takeFocus() const;
    void moveToMiddle() const;

    PopupWidget *q;
    QVBoxLayout *layout = nullptr;
    QToolButton *closeButton = nullptr;
    QVector<QPointer<QWidget>> disabled; ///< what was enabled before the frame was shown
    QPointer<QWidget> lastFocus;         ///< what had the keyboard before
};

void PopupWidgetPrivate::build()
{
    layout = new QVBoxLayout(q);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    closeButton = new QToolButton(q);
    closeButton->setObjectName(QStringLiteral("btn_close"));
    closeButton->setProperty("nav", QStringLiteral("tBtnStyle_5"));
    closeButton->setIcon(QIcon(QStringLiteral(":/32x32/Images/32x32/Close.png")));
    closeButton->setIconSize(QSize(CloseIconSize, CloseIconSize));
    closeButton->setToolTip(PopupWidget::tr("Close"));
    closeButton->setAccessibleName(PopupWidget::tr("Close"));
    layout->addWidget(closeButton, 0, Qt::AlignRight);
    QObject::connect(closeButton, &QToolButton::clicked, q, &QWidget::close);
}

void PopupWidgetPrivate::disableOthers()
{
    lastFocus = q->window()->focusWidget();
    const QList<QWidget *> others = q->parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *other : others) {
        if (other != q && !other->isWindow() && other->isEnabled()) {
            other->setEnabled(false);
            disabled.append(other);
        }
    }
}

void PopupWidgetPrivate::enableOthers()
{
    for (const QPointer<QWidget> &other : qAsConst(disabled)) {
        if (!other.isNull()) {
            other->setEnabled(true);
        }
    }
    disabled.clear();
}

void PopupWidgetPrivate::moveToMiddle() const
{
    const QSize room = q->parentWidget()->size() - q->size();
    q->move(room.width() / 2, room.height() / 2);
}

/// To the first widget of the content that Tab would stop at, else to the close button.
void PopupWidgetPrivate::takeFocus() const
{
    for (QWidget *next = q->nextInFocusChain(); next != nullptr && next != q; next = next->nextInFocusChain()) {
        if (next != closeButton && q->isAncestorOf(next) && next->isEnabledTo(q) && next->isVisibleTo(q) &&
            (next->focusPolicy() & Qt::TabFocus) != 0) {
            next->setFocus(Qt::PopupFocusReason);
            return;
        }
    }
    closeButton->setFocus(Qt::PopupFocusReason);
}

PopupWidget::PopupWidget(QWidget *parent)
    : QFrame(parent)
    , m_p(std::make_unique<PopupWidgetPrivate>(this))
{
    m_p->build();
    hide(); // also where the parent is shown later
    parent->installEventFilter(this);
    if (parent->window() != parent) {
        parent->window()->installEventFilter(this);
    }
}

PopupWidget::~PopupWidget()
{
    m_p->enableOthers();
}

void PopupWidget::setWidget(QWidget *content)
{
    m_p->layout->addWidget(content, 1);
}

void PopupWidget::enabledCloseButton(bool isEnabled)
{
    m_p->closeButton->setEnabled(isEnabled);
}

bool PopupWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        m_p->moveToMiddle();
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
    event->setAccepted(m_p->closeButton->isEnabled());
    if (event->isAccepted()) {
        emit closed();
    }
}

/// Also when the window goes; but not when it is only minimised.
void PopupWidget::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        m_p->enableOthers();
        if (!m_p->lastFocus.isNull()) {
            m_p->lastFocus->setFocus(Qt::PopupFocusReason);
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
        m_p->moveToMiddle();
        m_p->disableOthers();
        raise();
        m_p->takeFocus();
    }
}
