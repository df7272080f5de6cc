#include "capture/FrameDelegate.h"

#include <QAbstractItemView>
#include <QFontMetrics>
#include <QGlyphRun>
#include <QHash>
#include <QHelpEvent>
#include <QPainter>
#include <QRawFont>
#include <QStaticText>
#include <QStyle>
#include <QToolTip>
#include <QVector>

#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr ushort FirstGlyph = 0x20;
constexpr ushort LastGlyph = 0x7E;
constexpr ushort Ellipsis = 0x2026;
constexpr int MaxStaticTexts = 256;

int textMargin(const QStyleOptionViewItem &option)
{
    const QStyle *style = option.widget != nullptr ? option.widget->style() : nullptr;
    return style != nullptr ? style->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, option.widget) + 1 : 3;
}

/// Rounded as the style does for standard items, so that the text stands on the same pixel.
int centredTop(const QRect &area, int height)
{
    return area.top() + area.height() / 2 - height / 2;
}

const QColor &textColor(const QStyleOptionViewItem &option)
{
    QPalette::ColorGroup group = QPalette::Disabled;
    if (option.state.testFlag(QStyle::State_Enabled)) {
        group = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    }
    return option.palette.color(group, QPalette::Text);
}

} // namespace

class FrameDelegatePrivate
{
public:
    explicit FrameDelegatePrivate(const QFont &wanted)
        : m_wanted(wanted)
    {
    }

    void prepare(const QPaintDevice *device);
    void paintText(QPainter *painter, const QRect &area, const QString &text);
    /// What paintText() needs to show all of the text.
    int wholeWidth(const QString &text);

private:
    struct Glyph
    {
        quint32 index = 0; ///< 0: the font has none
        qreal advance = 0;
    };

    Glyph glyphOf(QChar c) const { return c.unicode() <= LastGlyph ? m_glyphs[c.unicode()] : Glyph(); }
    std::optional<qreal> collectGlyphs(const QString &text, qreal width);
    const QStaticText &laidOut(const QString &text, const QTransform &transform);
    void paintOther(QPainter *painter, const QRect &area, const QString &text);

    const QFont m_wanted;
    int m_dpi = 0;
    QFont m_font; ///< m_wanted in the size of the device
    int m_ascent = 0;
    int m_height = 0;
    std::array<Glyph, LastGlyph + 1> m_glyphs;
    Glyph m_ellipsis;
    QVector<quint32> m_indexes;
    QVector<QPointF> m_positions;
    QGlyphRun m_run;
    QHash<QString, QStaticText> m_staticTexts;
};

/// Looks the glyphs up for the resolution of the device; a table stays on one, so this is done once.
void FrameDelegatePrivate::prepare(const QPaintDevice *device)
{
    if (device == nullptr || m_dpi == device->logicalDpiY()) {
        return;
    }
    m_dpi = device->logicalDpiY();
    m_font = QFont(m_wanted, device);
    const QFontMetrics metrics(m_font);
    m_ascent = metrics.ascent();
    m_height = metrics.height();
    m_staticTexts.clear();

    const QRawFont raw = QRawFont::fromFont(m_font);
    QString characters;
    for (ushort c = FirstGlyph; c <= LastGlyph; ++c) {
        characters += QChar(c);
    }
    characters += QChar(Ellipsis);
    const QVector<quint32> indexes = raw.glyphIndexesForString(characters);
    const QVector<QPointF> advances = raw.advancesForGlyphIndexes(indexes);
    m_glyphs.fill(Glyph());
    // A font that answers otherwise than glyph by glyph leaves the table empty, and all text is laid out.
    if (indexes.size() != characters.size() || advances.size() != indexes.size()) {
        return;
    }
    for (ushort c = FirstGlyph; c <= LastGlyph; ++c) {
        m_glyphs[c] = {indexes[c - FirstGlyph], advances[c - FirstGlyph].x()};
    }
    m_ellipsis = {indexes.last(), advances.last().x()};
    m_run.setRawFont(raw);
}

/// Fills m_indexes and m_positions with as much of the text as fits into width, and gives the width of that. Nothing
/// when a character has no prepared glyph.
std::optional<qreal> FrameDelegatePrivate::collectGlyphs(const QString &text, qreal width)
{
    m_indexes.clear();
    m_positions.clear();
    qreal x = 0;
    int fitting = 0; // glyphs that leave room for the ellipsis behind them
    qreal fittingEnd = 0;
    for (const QChar c : text) {
        const Glyph glyph = glyphOf(c);
        if (glyph.index == 0) {
            return std::nullopt;
        }
        if (x + glyph.advance > width) {
            m_indexes.resize(fitting);
            m_positions.resize(fitting);
            if (m_ellipsis.index == 0) {
                return std::nullopt;
            }
            if (m_ellipsis.advance <= width) {
                m_indexes.append(m_ellipsis.index);
                m_positions.append(QPointF(fittingEnd, 0));
            }
            return width;
        }
        m_indexes.append(glyph.index);
        m_positions.append(QPointF(x, 0));
        x += glyph.advance;
        if (x + m_ellipsis.advance <= width) {
            fitting = m_indexes.size();
            fittingEnd = x;
        }
    }
    return x;
}

int FrameDelegatePrivate::wholeWidth(const QString &text)
{
    const std::optional<qreal> glyphs = collectGlyphs(text, std::numeric_limits<qreal>::infinity());
    return static_cast<int>(std::ceil(glyphs ? *glyphs : laidOut(text, QTransform()).size().width()));
}

void FrameDelegatePrivate::paintText(QPainter *painter, const QRect &area, const QString &text)
{
    if (!collectGlyphs(text, area.width())) {
        paintOther(painter, area, text);
        return;
    }
    m_run.setRawData(m_indexes.constData(), m_positions.constData(), m_indexes.size());
    painter->drawGlyphRun(QPointF(area.left(), centredTop(area, m_height) + m_ascent), m_run);
}

const QStaticText &FrameDelegatePrivate::laidOut(const QString &text, const QTransform &transform)
{
    auto known = m_staticTexts.constFind(text);
    if (known == m_staticTexts.constEnd()) {
        if (m_staticTexts.size() >= MaxStaticTexts) {
            m_staticTexts.clear();
        }
        QStaticText made(text);
        made.setTextFormat(Qt::PlainText);
        made.prepare(transform, m_font);
        known = m_staticTexts.insert(text, made);
    }
    return *known;
}

void FrameDelegatePrivate::paintOther(QPainter *painter, const QRect &area, const QString &text)
{
    if (painter->font() != m_font) {
        painter->setFont(m_font);
    }
    const QStaticText &whole = laidOut(text, painter->transform());
    const QSizeF size = whole.size();
    const QPoint place(area.left(), centredTop(area, static_cast<int>(size.height())));
    if (size.width() <= area.width()) {
        painter->drawStaticText(place, whole);
        return;
    }
    const QString cut = painter->fontMetrics().elidedText(text, Qt::ElideRight, area.width());
    painter->drawText(place + QPoint(0, m_ascent), cut);
}

FrameDelegate::FrameDelegate(const QFont &font, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_p(std::make_unique<FrameDelegatePrivate>(font))
{
}

FrameDelegate::~FrameDelegate() = default;

void FrameDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QString text = index.data().toString();
    if (text.isEmpty()) {
        return;
    }
    const int margin = textMargin(option);
    const QRect area = option.rect.adjusted(margin, 0, -margin, 0);
    if (area.width() <= 0) {
        return;
    }
    m_p->prepare(painter->device());
    painter->setPen(textColor(option));
    m_p->paintText(painter, area, text);
}

QSize FrameDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    m_p->prepare(option.widget);
    const int height = QStyledItemDelegate::sizeHint(option, index).height();
    return {m_p->wholeWidth(index.data().toString()) + 2 * textMargin(option), height};
}

bool FrameDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                              const QModelIndex &index)
{
    const QString text = index.data().toString();
    m_p->prepare(view);
    const bool isCut = m_p->wholeWidth(text) > option.rect.width() - 2 * textMargin(option);
    if (event->type() != QEvent::ToolTip || !isCut) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QToolTip::showText(event->globalPos(), text, view->viewport(), option.rect);
    return true;
}
