#include "viewer/core/FrameBits.h"

#include <algorithm>

FrameBits::FrameBits(const BusFrame &frame)
    : m_frame(frame)
{
    if (frame.is(BusFrame::Remote)) { // has a length, and no data
        m_frame.length = 0;
    }
}

FrameBits::FrameBits(const DatabaseSignals &source, int message, const BusFrame &frame)
    : FrameBits(frame)
{
    if (message < 0) {
        return;
    }
    const QVector<DatabaseSignal> &content = source.message(message).content;
    m_signals.resize(static_cast<std::size_t>(bitCount()));
    m_missing = source.decoder(message).decode(m_frame.data.data(), m_frame.length,
                                               [this](const SignalDecoder & /*signal*/, int place) {
                                                   if (m_places.size() < MaxSignals) {
                                                       m_places.push_back(place);
                                                   } else {
                                                       m_isCut = true;
                                                   }
                                               });
    for (const int place : m_places) {
        const QVector<int> bits = signalBits(content[place]);
        m_bits[place].assign(bits.begin(), bits.end());
        for (const int bit : bits) {
            m_signals[static_cast<std::size_t>(bit)].push_back(place);
        }
    }
}

int FrameBits::at(int bit) const
{
    const std::vector<int> &all = allAt(bit);
    return all.empty() ? -1 : all.front();
}

const std::vector<int> &FrameBits::allAt(int bit) const
{
    static const std::vector<int> none;
    return bit >= 0 && static_cast<std::size_t>(bit) < m_signals.size() ? m_signals[static_cast<std::size_t>(bit)]
                                                                        : none;
}

bool FrameBits::isAt(int place, int bit) const
{
    const std::vector<int> &all = allAt(bit);
    return std::find(all.begin(), all.end(), place) != all.end();
}

const std::vector<int> &FrameBits::bitsOf(int place) const
{
    static const std::vector<int> none;
    const auto found = m_bits.find(place);
    return found != m_bits.end() ? found->second : none;
}
