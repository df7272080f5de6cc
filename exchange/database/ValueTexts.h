#pragma once

#include "exchange/database/Database.h"

#include <QByteArray>

#include <vector>

/// The texts of raw values, prepared to be found.
class ValueTexts
{
public:
    /// Of values, the bits in mask count. Of two with the same ones, the first counts.
    ValueTexts(const QVector<ValueText> &texts, quint64 mask);

    /// UTF-8; null where the value has none. raw: may have bits beyond the mask.
    const QByteArray *find(quint64 raw) const;

private:
    static constexpr quint64 DirectValues = 256; ///< are found without searching

    quint64 m_mask;
    std::vector<std::pair<quint64, QByteArray>> m_texts; ///< by value
    std::vector<int> m_direct;                           ///< places in m_texts, -1 where there is none
};
