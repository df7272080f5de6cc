#include "exchange/Findings.h"

void Findings::add(Finding::Place place, qint64 number, const QString &text, qint64 count)
{
    m_count += count;
    qint64 &ofText = m_counts[text];
    if (ofText < MaxKept) {
        m_kept.append({place, number, text, count});
    }
    ofText += count;
}
