#include "can/GatewayIdList.h"

#include "device/AdapterRecords.h"

#include <algorithm>

GatewayIdList::GatewayIdList(const QSet<quint32> &words)
    : m_words(words.cbegin(), words.cend())
{
    std::sort(m_words.begin(), m_words.end());
}

GatewayIdList::AddResult GatewayIdList::add(quint32 word)
{
    if (m_words.size() >= static_cast<int>(AdapterGatewayMaxIds)) {
        return AddResult::Full;
    }
    if (m_words.contains(word)) {
        return AddResult::Exists;
    }
    m_words.append(word);
    return AddResult::Added;
}
