#include "exchange/database/ValueTexts.h"

#include <algorithm>

namespace {

using Entry = std::pair<quint64, QByteArray>;

bool isLess(const Entry &left, const Entry &right)
{
    return left.first < right.first;
}

} // namespace

ValueTexts::ValueTexts(const QVector<ValueText> &texts, quint64 mask)
    : m_mask(mask)
{
    m_texts.reserve(static_cast<std::size_t>(texts.size()));
    for (const ValueText &entry : texts) {
        const quint64 beyond = entry.value & ~mask;
        if (beyond == 0 || beyond == ~mask) { // otherwise the signal cannot have the value
            m_texts.emplace_back(entry.value & mask, entry.text.toUtf8());
        }
    }
    std::stable_sort(m_texts.begin(), m_texts.end(), isLess);
    m_texts.erase(std::unique(m_texts.begin(), m_texts.end(),
                              [](const Entry &left, const Entry &right) { return left.first == right.first; }),
                  m_texts.end());
    for (std::size_t i = 0; i < m_texts.size() && m_texts[i].first < DirectValues; ++i) {
        m_direct.resize(static_cast<std::size_t>(m_texts[i].first) + 1, -1);
        m_direct.back() = static_cast<int>(i);
    }
}

const QByteArray *ValueTexts::find(quint64 raw) const
{
    raw &= m_mask;
    if (raw < m_direct.size()) {
        const int place = m_direct[static_cast<std::size_t>(raw)];
        return place < 0 ? nullptr : &m_texts[static_cast<std::size_t>(place)].second;
    }
    const auto found = std::lower_bound(m_texts.begin(), m_texts.end(), Entry(raw, QByteArray()), isLess);
    return found != m_texts.end() && found->first == raw ? &found->second : nullptr;
}
