#include "widgets/CNotice.h"

#include "ui_CNotice.h"
#include "widgets/WrappedLines.h"

#include <QAccessible>
#include <QEvent>
#include <QFontMetricsF>
#include <QGraphicsOpacityEffect>
#include <QHideEvent>
#include <QIcon>
#include <QPropertyAnimation>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace {
constexpr int TopPosition = 60;
constexpr int PictureSize = 32; ///< of the icon's file; the label scales it down
constexpr int TextReserve = 10;
constexpr int FrameReserve = 30;
constexpr int LongestLineMinimum = 1;

constexpr qreal InitialOpacity = 0.1;
constexpr qreal Invisible = 0.0;
constexpr qreal FullyVisible = 1.0;
constexpr int FadeMs = 1200;
constexpr int StepMs = 10;

// Bounds for texts that do not fit: pixels kept free beside and below the notice, what is shown of a text even in the
// smallest parent, and how much of a text is looked at.
constexpr int FreeSpace = 10;
constexpr int SmallestTextWidth = 60;
constexpr int SmallestLineCount = 4;
constexpr int LongestText = 4096;

/// With the background's colour and the border's. It reaches the labels as well; they take the border off again.
constexpr const char *StyleSheet = "color:#242523;border-radius:8px;background-color:%1;border-width:1px; "
                                   "border-style:solid; border-color:%2;";

struct Look
{
    const char *background;
    const char *border;
    const char *icon;
    const char *kind; ///< the icon in words, for screen readers
};

// By type.
constexpr Look Looks[] = {
    {"#f0f9ec", "#418f1f", ":/Images/MsgInfo.png", QT_TRANSLATE_NOOP("CNotice", "Success")},
    {"#fff4ce", "#B88A00", ":/Images/MsgWarnning.png", QT_TRANSLATE_NOOP("CNotice", "Warning")},
    {"#fff4ce", "#B88A00", ":/Images/MsgQuestion.png", QT_TRANSLATE_NOOP("CNotice", "Question")},
    {"#fde7e9", "#861b2d", ":/Images/MsgError.png", QT_TRANSLATE_NOOP("CNotice", "Error")},
    {"#f3f3f3", "#242523", ":/Images/MsgAbout.png", QT_TRANSLATE_NOOP("CNotice", "Information")},
};
constexpr int LookCount = static_cast<int>(std::size(Looks));
static_assert(LookCount == CNotice::About + 1);

/// In fractions of a pixel and with what the last character, such as an "f", reaches beyond its place: a label that
/// lacks any of it would break the line.
qreal widthOf(const QString &line, const QFontMetricsF &metrics)
{
    const qreal overhang = line.isEmpty() ? 0 : std::max(-metrics.rightBearing(line.back()), 0.0);
    return metrics.horizontalAdvance(line) + overhang;
}
} // namespace

CNotice::CNotice(QWidget *parent)
    : QFrame(parent)
    , m_ui(std::make_unique<Ui::CNotice>())
    , m_pOpacity(new QGraphicsOpacityEffect(this))
    , m_pAnimation(new QPropertyAnimation(m_pOpacity, "opacity", this))
    , m_pDelay(new QTimer(this))
    , m_pTimer(new QTimer(this))
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_LayoutOnEntireRect); // the layout's margins count from the outer edge, border included

    m_pOpacity->setOpacity(InitialOpacity);
    setGraphicsEffect(m_pOpacity);
    m_pAnimation->setObjectName(QStringLiteral("m_pAnimation"));
    m_pAnimation->setDuration(FadeMs);
    m_pAnimation->setEasingCurve(QEasingCurve::InOutCubic);
    connect(m_pAnimation, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(m_pAnimation, &QVariantAnimation::finished, this, [this] {
        if (qFuzzyIsNull(m_pAnimation->endValue().toReal())) {
            hide();
        }
    });

    m_pDelay->setObjectName(QStringLiteral("m_pDelay"));
    m_pDelay->setSingleShot(true);
    m_pDelay->setTimerType(Qt::PreciseTimer);
    m_pDelay->setInterval(FadeMs);
    m_pTimer->setObjectName(QStringLiteral("m_pTimer"));
    m_pTimer->setInterval(StepMs);
    connect(m_pDelay, &QTimer::timeout, m_pTimer, qOverload<>(&QTimer::start));
    connect(m_pTimer, &QTimer::timeout, this, &CNotice::onTimerTimeout);

    parentWidget()->installEventFilter(this);
    hide();
}

CNotice::~CNotice() = default;

void CNotice::setMesseage(const QString &text, int type, int delayms)
{
    if (type < 0 || type >= LookCount) {
        return;
    }
    m_pAnimation->stop();
    if (m_pTimer->isActive()) {
        m_pTimer->stop();
        hide();
    }
    const Look &look = Looks[type];
    setStyleSheet(QString::fromLatin1(StyleSheet).arg(QLatin1String(look.background), QLatin1String(look.border)));
    // An icon, unlike a pixmap, takes the picture that was drawn for the screen's scale.
    m_ui->m_pIcon->setPixmap(QIcon(QLatin1String(look.icon)).pixmap(QSize(PictureSize, PictureSize)));
    m_ui->m_pIcon->setAccessibleName(tr(look.kind));
    setAccessibleName(text);
    m_text = text.left(LongestText);
    changeSize();
    show();
    raise();

    m_countdown = std::max(delayms, 0) / StepMs + 1;
    fade(Invisible, FullyVisible);
    m_pDelay->start(); // anew when it belonged to an earlier notice
    QAccessibleEvent announcement(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

/// Lays the text out in the room that the parent gives, and the notice around it.
void CNotice::changeSize()
{
    ensurePolished();
    m_ui->m_pText->ensurePolished();
    const QFont font = m_ui->m_pText->font();
    const int lineSpacing = std::max(QFontMetrics(font).lineSpacing(), 1);
    const int reserve = TextReserve + m_ui->m_pIcon->maximumWidth() + FrameReserve;
    const int widest = std::max(parentWidget()->width() - 2 * FreeSpace - reserve, SmallestTextWidth);
    const int room = parentWidget()->height() - TopPosition - FreeSpace;
    const int mostLines = std::max(room / lineSpacing - 1, SmallestLineCount);
    const QStringList lines = wrappedLines(m_text, font, widest, mostLines);

    qreal longest = LongestLineMinimum;
    for (const QString &line : lines) {
        longest = std::max(longest, widthOf(line, QFontMetricsF(font)));
    }
    m_ui->m_pText->setText(lines.join(QLatin1Char('\n')));
    setFixedSize(static_cast<int>(std::ceil(longest)) + reserve, (lines.size() + 1) * lineSpacing);
    move(place());
}

QPoint CNotice::place() const
{
    return {(parentWidget()->width() - width()) / 2, TopPosition};
}

void CNotice::fade(qreal from, qreal to)
{
    m_pAnimation->stop();
    m_pAnimation->setStartValue(from);
    m_pAnimation->setEndValue(to);
    m_pAnimation->start();
}

void CNotice::onTimerTimeout()
{
    const bool isOver = m_countdown < 1;
    --m_countdown;
    if (isOver) {
        m_pTimer->stop();
        fade(m_pOpacity->opacity(), Invisible);
    }
}

bool CNotice::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == parentWidget() && !isHidden()) {
        changeSize();
    }
    return QFrame::eventFilter(watched, event);
}

/// The parent is closed, or the notice is over. A minimised window's notice goes on: it may be back in time.
void CNotice::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        m_pAnimation->stop();
        m_pDelay->stop();
        m_pTimer->stop();
        hide();
    }
    QFrame::hideEvent(event);
}

void CNotice::paintEvent(QPaintEvent *event)
{
    if (pos() != place()) {
        changeSize();
    }
    QFrame::paintEvent(event);
}
