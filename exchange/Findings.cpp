#include "exchange/Findings.h"

void Findings::add(Finding::Place place, qint64 number, const QString &text)
{
    ++m_count;
    if (++m_counts[text] <= MaxKept) {
        m_kept.append({place, number, text});
    }
}
