#include "exchange/FrameMerge.h"

#include <algorithm>
#include <utility>

FrameMerge::FrameMerge(std::vector<Source> sources)
{
    for (Source &source : sources) {
        Input input{std::move(source), std::vector<BusFrame>(BatchSize)};
        if (fill(input)) {
            m_inputs.push_back(std::move(input));
        }
    }
}

/// Has a frame at hand, with its time and channel in the merged capture; false at the end.
bool FrameMerge::fill(Input &input)
{
    if (input.next == input.size) {
        input.next = 0;
        input.size = static_cast<std::size_t>(input.source.read(input.batch.data(), BatchSize));
        if (input.size == 0) {
            return false;
        }
    }
    BusFrame &frame = input.batch[input.next];
    if (frame.time != BusFrame::NoTime) {
        frame.time += input.source.timeOffset;
        input.time = std::max(input.time, frame.time);
    }
    frame.channel = static_cast<quint16>(frame.channel + input.source.channelOffset);
    return true;
}

int FrameMerge::read(BusFrame *frames, int room)
{
    int count = 0;
    while (count < room && !m_inputs.empty()) {
        const auto first = std::min_element(m_inputs.begin(), m_inputs.end(),
                                            [](const Input &a, const Input &b) { return a.time < b.time; });
        frames[count++] = first->batch[first->next++];
        if (!fill(*first)) {
            m_inputs.erase(first);
        }
    }
    return count;
}
