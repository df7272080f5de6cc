#include "exchange/database/DecodeWide.h"

#include "exchange/BusFrame.h"
#include "exchange/ByteOutput.h"

#include <algorithm>
#include <cstring>

DecodeWide::DecodeWide(const std::vector<DecodeSource> &sources, ByteOutput &out, const DecodeOptions &options)
    : DecodeWriter(sources, out, options)
    , m_isFilled(options.fillGaps)
    , m_isTextPreferred(options.preferTexts)
    , m_room(MaxCell)
{
    m_out.put("time,channel");
    for (std::size_t i = 0; i < sources.size(); ++i) {
        m_first.emplace_back();
        for (int k = 0; k < messageCount(static_cast<int>(i)); ++k) {
            m_first.back().push_back(m_columns);
            addColumns(sources[i].database.messages[k], message(static_cast<int>(i), k));
        }
    }
    m_out.put("\n");
    if (m_isFilled) {
        m_last.resize(static_cast<std::size_t>(m_columns));
    }
}

void DecodeWide::addColumns(const DatabaseMessage &described, const MessageDecoder &decoder)
{
    for (const SignalDecoder &signal : decoder.content()) {
        const DatabaseSignal &column = described.content[signal.number()];
        QString title = described.name + QLatin1Char('.') + column.name;
        if (!column.unit().isEmpty()) {
            title += QLatin1String(" [") + column.unit() + QLatin1Char(']');
        }
        const QByteArray text = ',' + cell(title);
        m_out.put({text.constData(), static_cast<std::size_t>(text.size())});
        ++m_columns;
    }
}

int DecodeWide::writeMessage(const BusFrame &frame, int source, int number)
{
    const int first = m_first[static_cast<std::size_t>(source)][static_cast<std::size_t>(number)];
    const MessageDecoder &decoder = message(source, number);
    return m_isFilled ? writeFilled(frame, decoder, first) : writeWithGaps(frame, decoder, first);
}

int DecodeWide::writeWithGaps(const BusFrame &frame, const MessageDecoder &decoder, int first)
{
    const uchar *data = frame.data.data();
    int last = -1; // column that was written
    const int missing = decoder.decode(data, frame.length, [&](const SignalDecoder &signal, int place) {
        if (last < 0) {
            beginLine(frame);
        }
        putCommas(first + place - last);
        last = first + place;
        char *to = m_out.room(MaxCell);
        m_out.advance(static_cast<std::size_t>(putValue(to, signal, data) - to));
        ++m_counts.values;
    });
    if (last >= 0) {
        putCommas(m_columns - 1 - last);
        m_out.put("\n");
    }
    return missing;
}

int DecodeWide::writeFilled(const BusFrame &frame, const MessageDecoder &decoder, int first)
{
    const uchar *data = frame.data.data();
    bool isChanged = false;
    const int missing = decoder.decode(data, frame.length, [&](const SignalDecoder &signal, int place) {
        char *const begin = m_room.data();
        m_last[static_cast<std::size_t>(first) + static_cast<std::size_t>(place)].assign(begin,
                                                                                         putValue(begin, signal, data));
        isChanged = true;
        ++m_counts.values;
    });
    if (isChanged) {
        beginLine(frame);
        for (const std::string &value : m_last) {
            char *to = m_out.room(MaxCell);
            *to++ = ',';
            std::copy(value.begin(), value.end(), to);
            m_out.advance(value.size() + 1);
        }
        m_out.put("\n");
    }
    return missing;
}

char *DecodeWide::putValue(char *to, const SignalDecoder &signal, const uchar *data) const
{
    const quint64 bits = signal.bits(data);
    const ValueScale *scale = signal.scale(bits);
    if (m_isTextPreferred) {
        char room[MaxNumberText];
        const std::string_view text = signal.text(bits, room);
        if (!text.empty()) {
            return putCell(to, text);
        }
    }
    return scale != nullptr ? signal.putPhysical(to, bits, *scale) : signal.putRaw(to, bits);
}

/// Time and channel, without a comma behind them.
void DecodeWide::beginLine(const BusFrame &frame)
{
    char *to = m_out.room(MaxCell);
    m_out.advance(static_cast<std::size_t>(putBegin(to, frame) - to) - 1);
}

void DecodeWide::putCommas(int count)
{
    for (auto left = static_cast<std::size_t>(count); left > 0;) {
        const std::size_t now = std::min(left, MaxCell);
        std::memset(m_out.room(now), ',', now);
        m_out.advance(now);
        left -= now;
    }
}
