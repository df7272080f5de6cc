#include "exchange/BusLoad.h"

#include <algorithm>
#include <array>

namespace {

constexpr int MaxClassic = 8;
/// CRC delimiter, acknowledgement and its delimiter, end of frame, intermission.
constexpr int ClassicTail = 1 + 2 + 7 + 3;
constexpr int FdNominalTail = 2 + 7 + 3;
constexpr unsigned CrcPolynomial = 0x4599;
constexpr unsigned CrcBits = 15;
constexpr unsigned CrcMask = (1U << CrcBits) - 1;

/// The length codes of 9 to 15.
constexpr int LongLengths[] = {12, 16, 20, 24, 32, 48, 64};

unsigned lengthCode(int length)
{
    if (length <= MaxClassic) {
        return static_cast<unsigned>(length);
    }
    const auto *found = std::lower_bound(std::begin(LongLengths), std::end(LongLengths), length);
    return static_cast<unsigned>(9 + (found - std::begin(LongLengths)));
}

constexpr unsigned Byte = 8;
constexpr unsigned ByteValues = 1U << Byte;
constexpr unsigned MaxEqual = 5;

/// What stuffing knows of the bits before: the last one, and how many equal ones there were.
constexpr unsigned stateOf(unsigned last, unsigned equal)
{
    return last * (MaxEqual + 1) + equal;
}
constexpr unsigned StateCount = 2 * (MaxEqual + 1);

/// What a byte does from each state on: a whole frame bit by bit would take ten times as long.
struct ByteSteps
{
    std::array<std::array<quint8, ByteValues>, StateCount> state{};
    std::array<std::array<quint8, ByteValues>, StateCount> stuffBits{};
    std::array<quint16, ByteValues> crc{};
};

/// The CRC of a classic frame, one bit further.
constexpr unsigned crcStep(unsigned crc, unsigned bit)
{
    const unsigned carry = (crc >> (CrcBits - 1U) ^ bit) & 1U;
    return (crc << 1U ^ (carry != 0 ? CrcPolynomial : 0U)) & CrcMask;
}

/// Bits one after the other: the state of stuffing, one bit further, with a stuff bit behind each five equal ones.
struct StuffStep
{
    unsigned last;
    unsigned equal;
    int stuffBits;

    /// The bit behind five equal ones, once it is known that another one follows.
    constexpr void stuff()
    {
        if (equal == MaxEqual) {
            ++stuffBits;
            last ^= 1U;
            equal = 1;
        }
    }
    constexpr void put(unsigned bit)
    {
        stuff();
        equal = bit == last ? equal + 1 : 1;
        last = bit;
    }
};

constexpr ByteSteps makeByteSteps()
{
    ByteSteps steps;
    for (unsigned value = 0; value < ByteValues; ++value) {
        unsigned crc = value << (CrcBits - Byte);
        for (unsigned bit = 0; bit < Byte; ++bit) {
            crc = crcStep(crc, 0);
        }
        steps.crc[value] = static_cast<quint16>(crc);
        for (unsigned state = 0; state < StateCount; ++state) {
            StuffStep step{state / (MaxEqual + 1), state % (MaxEqual + 1), 0};
            for (unsigned bit = Byte; bit-- > 0;) {
                step.put(value >> bit & 1U);
            }
            steps.state[state][value] = static_cast<quint8>(stateOf(step.last, step.equal));
            steps.stuffBits[state][value] = static_cast<quint8>(step.stuffBits);
        }
    }
    return steps;
}

constexpr ByteSteps Steps = makeByteSteps();

/// Bits one after the other, counted with those that are stuffed.
class BitStream
{
public:
    /// At most 24 bits at a time.
    void put(unsigned value, unsigned bits)
    {
        m_waiting = m_waiting << bits | value;
        for (m_waitingBits += bits; m_waitingBits >= Byte; m_waitingBits -= Byte) {
            putByte(m_waiting >> (m_waitingBits - Byte) & (ByteValues - 1));
        }
    }
    /// From here on bits count as those of the data phase.
    void beginDataPhase()
    {
        putWaiting();
        m_isData = true;
    }
    /// The CRC of a classic frame over all bits so far; no bit is stuffed behind it.
    void putCrc()
    {
        putWaiting();
        put(m_crc, CrcBits);
        putWaiting();
        StuffStep step = current();
        step.stuff();
        take(step, 0);
    }
    BusLoad::Bits bits()
    {
        putWaiting();
        return m_bits;
    }

private:
    StuffStep current() const { return {m_state / (MaxEqual + 1), m_state % (MaxEqual + 1), 0}; }
    void take(const StuffStep &step, int bits)
    {
        m_state = stateOf(step.last, step.equal);
        count(bits + step.stuffBits);
    }
    /// What does not fill a byte.
    void putWaiting()
    {
        for (; m_waitingBits > 0; --m_waitingBits) {
            putBit(m_waiting >> (m_waitingBits - 1) & 1U);
        }
    }
    void putBit(unsigned bit)
    {
        m_crc = crcStep(m_crc, bit);
        StuffStep step = current();
        step.put(bit);
        take(step, 1);
    }
    void putByte(unsigned value)
    {
        m_crc = (m_crc << Byte ^ Steps.crc[(m_crc >> (CrcBits - Byte) ^ value) & (ByteValues - 1)]) & CrcMask;
        count(static_cast<int>(Byte) + Steps.stuffBits[m_state][value]);
        m_state = Steps.state[m_state][value];
    }
    void count(int bits) { (m_isData ? m_bits.data : m_bits.nominal) += bits; }

    BusLoad::Bits m_bits;
    bool m_isData = false;
    unsigned m_waiting = 0; ///< its last m_waitingBits bits were put, but are not counted yet
    unsigned m_waitingBits = 0;
    unsigned m_crc = 0;
    unsigned m_state = stateOf(1, 0); ///< the bus is recessive before the frame
};

/// Up to the bit that tells a classic frame (0) from a CAN FD one (1), which is put by the caller.
void putIdentifier(BitStream &stream, const BusFrame &frame)
{
    const unsigned remote = frame.is(BusFrame::Remote) ? 1 : 0;
    stream.put(0, 1);
    if (frame.is(BusFrame::Extended)) {
        stream.put(frame.identifier >> 18U & 0x7FFU, 11);
        stream.put(3, 2);
        stream.put(frame.identifier & 0x3FFFFU, 18);
        stream.put(remote, 1);
    } else {
        stream.put(frame.identifier & 0x7FFU, 11);
        stream.put(remote, 1);
        stream.put(0, 1);
    }
}

void putData(BitStream &stream, const BusFrame &frame, int length)
{
    for (int i = 0; i < length; ++i) {
        stream.put(frame.data[static_cast<std::size_t>(i)], 8);
    }
}

BusLoad::Bits classicBits(const BusFrame &frame)
{
    const int length = std::min<int>(frame.length, MaxClassic);
    BitStream stream;
    putIdentifier(stream, frame);
    stream.put(0, frame.is(BusFrame::Extended) ? 2 : 1);
    stream.put(lengthCode(length), 4);
    putData(stream, frame, frame.is(BusFrame::Remote) ? 0 : length);
    stream.putCrc();
    BusLoad::Bits bits = stream.bits();
    bits.nominal += ClassicTail;
    return bits;
}

BusLoad::Bits fdBits(const BusFrame &frame)
{
    const int length = std::min<int>(frame.length, BusFrame::MaxLength);
    BitStream stream;
    putIdentifier(stream, frame);
    stream.put(2, 2); // FDF, res
    const bool isSwitched = frame.is(BusFrame::BitRateSwitch);
    stream.put(isSwitched ? 1 : 0, 1);
    if (isSwitched) {
        stream.beginDataPhase();
    }
    stream.put(frame.is(BusFrame::ErrorStateIndicator) ? 1 : 0, 1);
    stream.put(lengthCode(length), 4);
    putData(stream, frame, length);
    BusLoad::Bits bits = stream.bits();
    // Stuff count of 4 bits, CRC, a fixed stuff bit before and behind each four of them, CRC delimiter.
    const int behindData = length <= 16 ? 4 + 17 + 6 + 1 : 4 + 21 + 7 + 1;
    (isSwitched ? bits.data : bits.nominal) += behindData;
    bits.nominal += FdNominalTail;
    return bits;
}

qint64 nanoseconds(int bits, qint64 rate)
{
    return bits * qint64{1000000000} / rate;
}

} // namespace

BusLoad::Bits BusLoad::canBits(const BusFrame &frame)
{
    return frame.is(BusFrame::Fd) ? fdBits(frame) : classicBits(frame);
}

int BusLoad::linBits(const BusFrame &frame)
{
    constexpr int Header = 14 + 10 + 10; // break with its delimiter, synchronisation, protected identifier
    return Header + (frame.length > 0 ? 10 * (frame.length + 1) : 0);
}

qint64 BusLoad::busy(const BusFrame &frame) const
{
    if (frame.is(BusFrame::Error) || frame.direction == BusFrame::Refused) {
        return 0;
    }
    if (frame.is(BusFrame::Lin)) {
        return nanoseconds(linBits(frame), m_rates.linBitRate);
    }
    const Bits bits = canBits(frame);
    return nanoseconds(bits.nominal, m_rates.bitRate) + nanoseconds(bits.data, m_rates.dataBitRate);
}
