#include "exchange/database/DecodeTable.h"

#include "exchange/BusFrame.h"
#include "exchange/ByteOutput.h"

#include <cstring>

DecodeTable::DecodeTable(const std::vector<DecodeSource> &sources, ByteOutput &out, const DecodeOptions &options)
    : DecodeWriter(sources, out, options)
    , m_begin(static_cast<int>(MaxCell), '\0')
{
    for (std::size_t i = 0; i < sources.size(); ++i) {
        std::vector<Names> names;
        for (int k = 0; k < messageCount(static_cast<int>(i)); ++k) {
            const DatabaseMessage &described = sources[i].database.messages[k];
            Names ofMessage;
            for (const SignalDecoder &signal : message(static_cast<int>(i), k).content()) {
                ofMessage.push_back(cell(described.name) + ',' + cell(described.content[signal.number()].name) + ',');
            }
            names.push_back(ofMessage);
        }
        m_names.push_back(names);
    }
    m_out.put("time,channel,message,signal,raw,physical,unit,text\n");
}

int DecodeTable::writeMessage(const BusFrame &frame, int source, int number)
{
    const Names &names = m_names[static_cast<std::size_t>(source)][static_cast<std::size_t>(number)];
    char *begin = m_begin.data();
    const auto beginSize = static_cast<std::size_t>(putBegin(begin, frame) - begin);
    const uchar *data = frame.data.data();
    return message(source, number).decode(data, frame.length, [&](const SignalDecoder &signal, int place) {
        char *const line = m_out.room(6 * MaxCell);
        std::memcpy(line, begin, beginSize);
        char *to = line + beginSize;
        const QByteArray &name = names[static_cast<std::size_t>(place)];
        std::memcpy(to, name.constData(), static_cast<std::size_t>(name.size()));
        to += name.size();
        const quint64 bits = signal.bits(data);
        to = signal.putRaw(to, bits);
        *to++ = ',';
        if (const ValueScale *scale = signal.scale(bits)) {
            to = signal.putPhysical(to, bits, *scale);
            *to++ = ',';
            to = putCell(to, {scale->unit().constData(), static_cast<std::size_t>(scale->unit().size())});
        } else {
            *to++ = ',';
        }
        *to++ = ',';
        char text[MaxNumberText];
        to = putCell(to, signal.text(bits, text));
        *to++ = '\n';
        m_out.advance(static_cast<std::size_t>(to - line));
        ++m_counts.values;
    });
}
