#pragma once

#include "exchange/BusFrame.h"
#include "viewer/core/DatabaseSignals.h"

#include <map>
#include <vector>

/// The signals that are in a frame, and the bits that they take. Bits are numbered by byte * 8 + bit, bit 0 is a byte's
/// lowest. A plain value.
class FrameBits
{
public:
    /// Of a message with more of them only the first ones are there: more than a frame has bits are of no use.
    static constexpr std::size_t MaxSignals = 1024;

    FrameBits() = default;
    /// message: of source, or -1, which has no signals.
    FrameBits(const DatabaseSignals &source, int message, const BusFrame &frame);
    /// Without signals.
    explicit FrameBits(const BusFrame &frame);

    int bitCount() const { return m_frame.length * 8; }
    bool isSet(int bit) const { return (byte(bit / 8) >> static_cast<unsigned>(bit % 8) & 1U) != 0; }
    uchar byte(int number) const { return m_frame.data[static_cast<std::size_t>(number)]; }

    /// Those that the frame's length and its multiplexors let be there, by their place in the message.
    const std::vector<int> &places() const { return m_places; }
    bool isThere(int place) const { return m_bits.count(place) > 0; }
    /// Signals of the message that would be there in a longer frame.
    int missing() const { return m_missing; }
    /// There are more than MaxSignals.
    bool isCut() const { return m_isCut; }
    /// The first signal at a bit, -1: none.
    int at(int bit) const;
    /// With those that take the same bit. Nothing where there is no such bit.
    const std::vector<int> &allAt(int bit) const;
    bool isAt(int place, int bit) const;
    /// The most significant first; nothing of a signal that is not there.
    const std::vector<int> &bitsOf(int place) const;

private:
    BusFrame m_frame;
    int m_missing = 0;
    bool m_isCut = false;
    std::vector<int> m_places;
    std::map<int, std::vector<int>> m_bits;  ///< by place
    std::vector<std::vector<int>> m_signals; ///< by bit
};
