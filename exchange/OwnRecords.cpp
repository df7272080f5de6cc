#include "exchange/OwnRecords.h"

#include "capture/CaptureFormat.h"
#include "device/FrameIdentifier.h"
#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/Findings.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>

namespace OwnRecords {

bool isIdentifier(quint32 identifier, bool isExtended)
{
    return identifier <= frameIdMax(isExtended);
}

Header passHeader(ByteInput &in, std::string_view text, std::size_t size)
{
    if (!in.need(size) && in.isGrowing()) {
        return Header::NotYet;
    }
    if (in.window().substr(0, text.size()) != text) {
        return Header::Missing;
    }
    in.skip(std::min(size, in.window().size()));
    return Header::Passed;
}

void putHeader(ByteOutput &out, std::string_view text)
{
    constexpr std::size_t Size = CaptureLayout::HeaderSize;
    char *to = out.room(Size);
    std::memset(to, 0, Size);
    std::memcpy(to, text.data(), text.size());
    out.advance(Size);
}

void reportRest(ByteInput &in, Findings &findings)
{
    const std::size_t rest = in.window().size();
    if (rest > 0 && !in.isGrowing()) {
        findings.add(Finding::Offset, in.offset(),
                     QCoreApplication::translate("OwnRecords", "the last record is cut and was left out"));
        in.skip(rest);
    }
}

} // namespace OwnRecords
