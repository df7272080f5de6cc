#include "viewer/FilterEdit.h"

#include "viewer/TableSettings.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStringListModel>
#include <QTextCharFormat>

#include <algorithm>
#include <utility>

namespace {

/// A small triangle, in a grey that is seen on light and on dark ground.
QIcon listIcon(const QWidget &widget)
{
    const int side = widget.fontMetrics().height();
    const qreal ratio = widget.devicePixelRatioF();
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::gray);
    painter.drawPolygon(QPolygonF({{side * 0.25, side * 0.38}, {side * 0.75, side * 0.38}, {side * 0.5, side * 0.68}}));
    return pixmap;
}

} // namespace

FilterEdit::FilterEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_candidates(new QStringListModel(this))
{
    setObjectName(QStringLiteral("filter"));
    setPlaceholderText(tr("Filter, such as  id == 0x123 and data[0] & 0x80"));
    setClearButtonEnabled(true);
    setMaxLength(Filter::MaxLength);
    m_completer = new QCompleter(m_candidates, this);
    m_completer->setWidget(this);
    m_completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    connect(m_completer, QOverload<const QString &>::of(&QCompleter::activated), this, &FilterEdit::slot_complete);
    connect(this, &QLineEdit::textChanged, this, &FilterEdit::slot_check);
    connect(this, &QLineEdit::textEdited, this, &FilterEdit::offer);
}

void FilterEdit::setSource(std::shared_ptr<const SignalSource> source)
{
    m_source = std::move(source);
    slot_check();
    FilterError error{};
    const std::optional<Filter> filter = Filter::parse(m_taken, m_source, error);
    if (filter && !filter->passesAll()) {
        m_filter = *filter;
        emit sig_filterRenewed();
    }
}

void FilterEdit::setSettings(TableSettings &settings)
{
    m_settings = &settings;
    QAction *recent = addAction(listIcon(*this), QLineEdit::TrailingPosition);
    recent->setToolTip(tr("Filters that were used lately (Down)"));
    recent->setObjectName(QStringLiteral("recentFilters"));
    connect(recent, &QAction::triggered, this, &FilterEdit::slot_offerRecent);
}

std::optional<Filter> FilterEdit::parse(const QString &text, FilterError &error) const
{
    return Filter::parse(text, m_source, error);
}

FilterCompletion FilterEdit::completionAtCursor() const
{
    return Filter::complete(text(), cursorPosition(), m_source.get());
}

bool FilterEdit::take(const QString &text)
{
    setText(text);
    FilterError error{};
    const std::optional<Filter> filter = parse(text, error);
    if (!filter) {
        setCursorPosition(error.position + error.length);
        return false;
    }
    m_filter = *filter;
    m_taken = text;
    if (m_settings != nullptr) {
        m_settings->addFilter(text);
    }
    emit sig_filterTaken();
    return true;
}

void FilterEdit::edit(const QString &text)
{
    m_taken = text;
    setText(text);
}

void FilterEdit::slot_check()
{
    const QString before = problem();
    FilterError error{};
    m_error.reset();
    if (!parse(text(), error)) {
        m_error = error;
    }
    underline();
    if (problem() != before) {
        emit sig_problemChanged(problem());
    }
}

/// A line edit has no formats of its own, but it shows those that an input method asks for.
void FilterEdit::underline()
{
    QList<QInputMethodEvent::Attribute> attributes;
    if (m_error) {
        QTextCharFormat format;
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        format.setUnderlineColor(Qt::red);
        const int length = std::max(1, m_error->length);
        const int position = std::max(0, std::min(m_error->position, text().size() - length));
        attributes.append({QInputMethodEvent::TextFormat, position - cursorPosition(), length, format});
    }
    QInputMethodEvent event(QString(), attributes);
    QLineEdit::inputMethodEvent(&event);
}

void FilterEdit::offer()
{
    const FilterCompletion completion = completionAtCursor();
    const bool isWhole = completion.candidates == QStringList{text().mid(completion.position, completion.length)};
    if (completion.length == 0 || completion.candidates.isEmpty() || isWhole) {
        m_completer->popup()->hide();
        return;
    }
    m_isRecent = false;
    showCandidates(completion.candidates);
}

void FilterEdit::slot_offerRecent()
{
    if (m_settings != nullptr && !m_settings->filters().isEmpty()) {
        m_isRecent = true;
        showCandidates(m_settings->filters());
    }
}

/// None is chosen at first, so that Return takes the text as it stands.
void FilterEdit::showCandidates(const QStringList &candidates)
{
    m_candidates->setStringList(candidates);
    m_completer->complete();
    m_completer->popup()->setCurrentIndex({});
}

void FilterEdit::slot_complete(const QString &candidate)
{
    if (m_isRecent) {
        setText(candidate);
        return;
    }
    const FilterCompletion completion = completionAtCursor();
    setSelection(completion.position, completion.length);
    insert(candidate + (candidate == QLatin1String("[") ? QString() : QStringLiteral(" ")));
}

void FilterEdit::keyPressEvent(QKeyEvent *event)
{
    const bool isPopup = m_completer->popup()->isVisible();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (isPopup && m_completer->popup()->currentIndex().isValid()) {
            event->ignore(); // the list takes it
            return;
        }
        m_completer->popup()->hide();
        take(text());
        return;
    }
    if (event->key() == Qt::Key_Escape && !isPopup && text() != m_taken) {
        setText(m_taken);
        return;
    }
    if (event->key() == Qt::Key_Down && !isPopup) {
        slot_offerRecent();
        return;
    }
    if (event->key() == Qt::Key_Space && (event->modifiers() & Qt::ControlModifier) != 0) {
        m_isRecent = false;
        showCandidates(completionAtCursor().candidates);
        return;
    }
    QLineEdit::keyPressEvent(event);
}
