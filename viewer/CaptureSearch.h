#pragma once

#include "device/CallQueue.h"
#include "viewer/core/MatchCount.h"
#include "viewer/core/OpenCapture.h"

#include <QObject>

/// Finds frames among those that a capture shows, forward and backward, and counts them. At the end a search stops and
/// says so; the next one in the same direction goes on from the other end, which is told as well.
class CaptureSearch : public QObject
{
    Q_OBJECT

public:
    /// capture must outlive this.
    explicit CaptureSearch(OpenCapture &capture, QObject *parent = nullptr);
    ~CaptureSearch() override;

    /// What is looked for.
    void setFilter(const Filter &filter);
    bool isEmpty() const { return m_wanted.passesAll(); }
    /// The row that is current, which a search begins beside; -1: none.
    void setRow(qint64 row);
    /// Looks for the next one; sig_found or sig_told come later.
    void next(bool isBackward);
    /// "3 of 17"; "17" where no match is current; empty while nothing is looked for.
    QString countText() const;

signals:
    void sig_found(qint64 row);
    void sig_told(const QString &text);
    void sig_countChanged();

private slots:
    void slot_found(qint64 row);
    void slot_countAgain();
    void slot_counted();

private:
    enum class End { None, Last, First };

    OpenCapture &m_capture;
    Filter m_wanted;
    Filter m_filter;   ///< the wanted ones among those that are shown
    CallQueue m_calls; ///< from the threads below
    MatchCount m_count;
    qint64 m_row = -1;
    End m_reached = End::None; ///< where the last search stopped
    bool m_isSearching = false;
    bool m_isBackward = false;
    bool m_isFromEnd = false; ///< the search that goes on has begun at the other end
    bool m_isWhole = false;   ///< it goes over all rows
};
