#include "viewer/CaptureSearch.h"

#include <QLocale>

CaptureSearch::CaptureSearch(OpenCapture &capture, QObject *parent)
    : QObject(parent)
    , m_capture(capture)
    , m_count(capture.sharedStore(), m_calls.poster([this] { slot_counted(); }))
{
    connect(&capture, &OpenCapture::sig_found, this, &CaptureSearch::slot_found);
    connect(&capture, &OpenCapture::sig_rowsReset, this, &CaptureSearch::slot_countAgain);
    connect(&capture, &OpenCapture::sig_progressChanged, this, [this] {
        if (!isEmpty()) {
            m_count.extend();
        }
    });
}

CaptureSearch::~CaptureSearch() = default;

void CaptureSearch::setFilter(const Filter &filter)
{
    m_wanted = filter;
    slot_countAgain();
}

void CaptureSearch::slot_countAgain()
{
    m_reached = End::None;
    m_filter = Filter::both(m_capture.filter(), m_wanted);
    if (isEmpty()) {
        m_count.cancel();
    } else {
        m_count.start(m_filter);
    }
    emit sig_countChanged();
}

void CaptureSearch::slot_counted()
{
    m_count.update();
    emit sig_countChanged();
}

void CaptureSearch::setRow(qint64 row)
{
    if (row != m_row) {
        m_row = row;
        m_reached = End::None;
        emit sig_countChanged();
    }
}

void CaptureSearch::next(bool isBackward)
{
    const qint64 last = m_capture.store().size() - 1;
    m_isBackward = isBackward;
    m_isFromEnd = m_reached == (isBackward ? End::First : End::Last);
    m_isWhole = m_isFromEnd || m_row < 0;
    m_isSearching = true;
    m_capture.find(m_filter, m_isWhole ? (isBackward ? last : 0) : m_row + (isBackward ? -1 : 1), isBackward);
    m_reached = End::None;
}

void CaptureSearch::slot_found(qint64 row)
{
    if (!m_isSearching) {
        return;
    }
    m_isSearching = false;
    if (row < 0 && m_isWhole) {
        emit sig_told(tr("Nothing was found."));
    } else if (row < 0) {
        m_reached = m_isBackward ? End::First : End::Last;
        emit sig_told(m_isBackward ? tr("Nothing more was found up to the beginning; once more goes on from the end.")
                                   : tr("Nothing more was found up to the end; once more goes on from the beginning."));
    } else {
        emit sig_found(row);
        emit sig_told(!m_isFromEnd   ? QString()
                      : m_isBackward ? tr("Went on from the end.")
                                     : tr("Went on from the beginning."));
    }
}

QString CaptureSearch::countText() const
{
    if (isEmpty()) {
        return {};
    }
    const bool isWhole = m_count.covered() >= m_capture.store().size();
    const QString all = QLocale().toString(m_count.matches()) + (isWhole ? QString() : QStringLiteral("..."));
    const bool isMatch = m_row >= 0 && m_row < m_capture.store().size() && m_filter.passes(m_capture.store(), m_row);
    const std::optional<qint64> ordinal = isMatch ? m_count.ordinal(m_capture.store(), m_row) : std::nullopt;
    return ordinal ? tr("%1 of %2").arg(QLocale().toString(*ordinal), all) : all;
}
