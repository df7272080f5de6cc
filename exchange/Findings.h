#pragma once

#include <QHash>
#include <QString>
#include <QVector>

/// Something in a capture that is not as it should be, or that was left out, and where.
struct Finding
{
    enum Place { Line, Offset, Frame, Nowhere };

    Place place;
    qint64 number;    ///< of the line or frame, from 1; the offset in bytes, from 0
    QString text;     ///< in the user's language
    qint64 count = 1; ///< how often, this being the first place
};

/// Takes what readers and writers report. All are counted, by their text; of each text the first MaxKept are kept.
class Findings
{
public:
    static constexpr int MaxKept = 100;

    /// count: of the same, where the reporter has counted them itself and this is the first place.
    void add(Finding::Place place, qint64 number, const QString &text, qint64 count = 1);
    /// In the order in which they were added.
    const QVector<Finding> &kept() const { return m_kept; }
    qint64 count() const { return m_count; }
    qint64 count(const QString &text) const { return m_counts.value(text); }

private:
    QVector<Finding> m_kept;
    QHash<QString, qint64> m_counts;
    qint64 m_count = 0;
};
