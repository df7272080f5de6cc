#include "exchange/database/MessageDecoder.h"

#include "exchange/BusFrame.h"

#include <algorithm>
#include <iterator>

namespace {

quint32 keyOf(quint32 identifier, bool extended)
{
    return identifier | (extended ? 1U << 31U : 0);
}

bool isSame(const QVector<RawRange> &left, const QVector<RawRange> &right)
{
    return left.constData() == right.constData() ||
           std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const RawRange &a, const RawRange &b) { return a.first == b.first && a.last == b.last; });
}

/// The same values, as ranges that are apart from each other, from the lowest to the highest.
std::vector<RawRange> inOrder(const QVector<RawRange> &ranges)
{
    std::vector<RawRange> sorted;
    std::copy_if(ranges.begin(), ranges.end(), std::back_inserter(sorted),
                 [](const RawRange &range) { return range.first <= range.last; });
    std::sort(sorted.begin(), sorted.end(), [](const RawRange &a, const RawRange &b) { return a.first < b.first; });
    std::vector<RawRange> apart;
    for (const RawRange &range : sorted) {
        if (!apart.empty() && range.first <= apart.back().last) {
            apart.back().last = std::max(apart.back().last, range.last);
        } else {
            apart.push_back(range);
        }
    }
    return apart;
}

bool contains(const std::vector<RawRange> &inOrder, quint64 value)
{
    const auto behind = std::upper_bound(inOrder.begin(), inOrder.end(), value,
                                         [](quint64 wanted, const RawRange &range) { return wanted < range.first; });
    return behind != inOrder.begin() && value <= (behind - 1)->last;
}

} // namespace

bool hasSoundData(const BusFrame &frame)
{
    return !frame.is(BusFrame::Error) && !frame.is(BusFrame::Remote) && frame.direction != BusFrame::Refused &&
           frame.linState != BusFrame::LinError && frame.linState != BusFrame::WrongChecksumV1 &&
           frame.linState != BusFrame::WrongChecksumV2;
}

std::shared_ptr<const ValueTexts> SharedTexts::of(const DatabaseSignal &signal)
{
    if (signal.texts.isEmpty()) {
        return nullptr;
    }
    const quint64 mask = SignalDecoder::textMask(signal);
    auto &texts = m_texts[{signal.texts.constData(), mask}];
    if (texts == nullptr) {
        texts = std::make_shared<const ValueTexts>(signal.texts, mask);
    }
    return texts;
}

MessageDecoder::MessageDecoder(const DatabaseMessage &message, SharedTexts &texts, const Filter &isWanted)
{
    const DatabaseSignal *last = nullptr; // that was wanted
    for (int i = 0; i < message.content.size(); ++i) {
        const DatabaseSignal &signal = message.content[i];
        if (isWanted && !isWanted(signal)) {
            continue;
        }
        if (last == nullptr || last->multiplexor != signal.multiplexor ||
            !isSame(last->multiplexed, signal.multiplexed)) {
            const int begin = static_cast<int>(m_signals.size());
            m_blocks.push_back({addCondition(message, signal), begin, begin});
        }
        last = &signal;
        m_signals.emplace_back(signal, i, texts.of(signal));
        ++m_blocks.back().end;
    }
    m_multiplexorConditions.clear();
}

/// The condition under which a signal is there: -1: always. What a multiplexor needs is added once for all that need
/// it.
int MessageDecoder::addCondition(const DatabaseMessage &message, const DatabaseSignal &signal)
{
    if (signal.multiplexor < 0) {
        return -1;
    }
    const DatabaseSignal &multiplexor = message.content[signal.multiplexor];
    auto needed = m_multiplexorConditions.find(signal.multiplexor);
    if (needed == m_multiplexorConditions.end()) {
        const int added = addCondition(message, multiplexor);
        needed = m_multiplexorConditions.emplace(signal.multiplexor, added).first;
    }
    m_conditions.push_back({BitField(multiplexor), inOrder(signal.multiplexed), needed->second});
    return static_cast<int>(m_conditions.size()) - 1;
}

bool MessageDecoder::holds(int condition, const uchar *data, int length) const
{
    for (; condition >= 0; condition = m_conditions[static_cast<std::size_t>(condition)].needed) {
        const Condition &tested = m_conditions[static_cast<std::size_t>(condition)];
        if (tested.multiplexor.bytes() > length) {
            return false;
        }
        if (!contains(tested.ranges, tested.multiplexor.read(data))) {
            return false;
        }
    }
    return true;
}

bool MessageDecoder::has(int i, const uchar *data, int length) const
{
    const auto block = std::upper_bound(m_blocks.begin(), m_blocks.end(), i,
                                        [](int wanted, const Block &candidate) { return wanted < candidate.end; });
    return m_signals[static_cast<std::size_t>(i)].bytes() <= length &&
           (block->condition < 0 || holds(block->condition, data, length));
}

DatabaseDecoder::DatabaseDecoder(const Database &database, const Filter &isWanted)
    : m_bus(database.bus)
{
    SharedTexts texts;
    m_messages.reserve(static_cast<std::size_t>(database.messages.size()));
    for (const DatabaseMessage &message : database.messages) {
        const auto number = static_cast<int>(m_messages.size());
        MessageDecoder::Filter isWantedOfMessage;
        if (isWanted) {
            isWantedOfMessage = [&](const DatabaseSignal &signal) {
                return isWanted(message, signal);
            };
        }
        m_messages.emplace_back(message, texts, isWantedOfMessage);
        const quint32 key = keyOf(message.identifier, message.extended);
        if (message.kind != DatabaseMessage::Sporadic && !m_numbers.contains(key)) {
            m_numbers.insert(key, number);
        }
        if (message.kind == DatabaseMessage::EventTriggered) {
            QHash<quint32, int> &associated = m_eventTriggered[number];
            for (const int frame : message.associated) {
                associated.insert(database.messages[frame].identifier, frame);
            }
        }
    }
}

int DatabaseDecoder::messageOf(const BusFrame &frame) const
{
    if (frame.is(BusFrame::Lin) != (m_bus == Database::Lin)) {
        return -1;
    }
    const int number = m_numbers.value(keyOf(frame.identifier, frame.is(BusFrame::Extended)), -1);
    const auto events = m_eventTriggered.constFind(number);
    if (events == m_eventTriggered.constEnd()) {
        return number;
    }
    return frame.length > 0 ? events->value(frame.data[0] & 0x3FU, -1) : -1;
}
