#include "viewer/FilterEdit.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QStringListModel>
#include <QTextCharFormat>

#include <algorithm>
#include <utility>

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
    emit sig_filterTaken();
    return true;
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
    showCandidates(completion.candidates);
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
    if (event->key() == Qt::Key_Space && (event->modifiers() & Qt::ControlModifier) != 0) {
        showCandidates(completionAtCursor().candidates);
        return;
    }
    QLineEdit::keyPressEvent(event);
}
