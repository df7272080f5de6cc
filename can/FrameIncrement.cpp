#include "can/FrameIncrement.h"

#include "can/CanFrameInput.h"

#include <algorithm>

quint32 incrementedFrameId(quint32 id, bool extended)
{
    return id < frameIdMax(extended) ? id + 1 : id;
}

QByteArray incrementedPayload(QByteArray data)
{
    constexpr char Full = '\xFF';
    auto *const first = std::find_if(data.begin(), data.end(), [](char byte) { return byte != Full; });
    if (first != data.end()) {
        ++*first;
        std::fill(data.begin(), first, '\0');
    }
    return data;
}
