#pragma once

#include "exchange/database/SignalDecoder.h"

#include <functional>
#include <map>
#include <vector>

struct BusFrame;

/// Whether a frame's data were on the bus as they are: not of error, remote and refused frames, and of LIN frames that
/// arrived damaged.
bool hasSoundData(const BusFrame &frame);

/// Prepared texts, shared by signals that have the same ones.
class SharedTexts
{
public:
    /// Null where the signal has none. signal's texts must outlive this.
    std::shared_ptr<const ValueTexts> of(const DatabaseSignal &signal);

private:
    std::map<std::pair<const ValueText *, quint64>, std::shared_ptr<const ValueTexts>> m_texts;
};

/// One message, prepared for decoding many frames. Of a frame, those signals are there that fit into it and that its
/// multiplexors select.
class MessageDecoder
{
public:
    /// Which of a message's signals are wanted.
    using Filter = std::function<bool(const DatabaseSignal &signal)>;

    MessageDecoder(const DatabaseMessage &message, SharedTexts &texts, const Filter &isWanted);

    /// The signals that are wanted, in the message's order.
    const std::vector<SignalDecoder> &content() const { return m_signals; }

    /// Calls take(signal, place in content()) for each signal that is in a frame's data, and returns how many are
    /// selected but do not fit. data: BusFrame::MaxLength bytes; length: how many of them the frame has.
    template<typename Take>
    int decode(const uchar *data, int length, Take take) const
    {
        int missing = 0;
        for (const Block &block : m_blocks) {
            if (block.condition >= 0 && !holds(block.condition, data, length)) {
                continue;
            }
            for (int i = block.first; i < block.end; ++i) {
                const SignalDecoder &signal = m_signals[static_cast<std::size_t>(i)];
                if (signal.bytes() <= length) {
                    take(signal, i);
                } else {
                    ++missing;
                }
            }
        }
        return missing;
    }
    /// Whether signal i of content() is in the data, see decode().
    bool has(int i, const uchar *data, int length) const;

private:
    /// A multiplexor has one of some values.
    struct Condition
    {
        BitField multiplexor;
        std::vector<RawRange> ranges; ///< apart from each other, from the lowest to the highest
        int needed;                   ///< a further condition, under which the multiplexor is there; -1: always
    };
    /// Signals one after the other that are there under the same condition.
    struct Block
    {
        int condition; ///< -1: always
        int first;
        int end;
    };

    int addCondition(const DatabaseMessage &message, const DatabaseSignal &signal);
    bool holds(int condition, const uchar *data, int length) const;

    std::vector<SignalDecoder> m_signals;
    std::vector<Block> m_blocks;
    std::vector<Condition> m_conditions;
    std::map<int, int> m_multiplexorConditions; ///< of multiplexors that are multiplexed
};

/// A database, prepared for decoding many frames.
class DatabaseDecoder
{
public:
    using Filter = std::function<bool(const DatabaseMessage &message, const DatabaseSignal &signal)>;

    /// Keeps what it needs of the database. An empty filter wants all signals.
    explicit DatabaseDecoder(const Database &database, const Filter &isWanted = Filter());

    /// Number of the message whose signals are in a frame, or -1: by identifier, and of an event-triggered frame by the
    /// protected identifier in it.
    int messageOf(const BusFrame &frame) const;
    /// By number, as in Database::messages.
    const MessageDecoder &message(int number) const { return m_messages[static_cast<std::size_t>(number)]; }

private:
    Database::Bus m_bus;
    std::vector<MessageDecoder> m_messages;
    QHash<quint32, int> m_numbers;                    ///< by identifier, with bit 31 of an extended one
    QHash<int, QHash<quint32, int>> m_eventTriggered; ///< numbers by identifier, of messages by number
};
