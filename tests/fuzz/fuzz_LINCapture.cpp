// Fuzz target: any bytes, read as a file of LIN frames, must give frames or none, and the same ones however the file is
// cut into pieces. The first byte is the size of the pieces.

#include "lin/LINCapture.h"

#include <algorithm>
#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

std::optional<QVector<CTableViewLIN::DataObject>> parse(const char *bytes, int size, int pieceSize)
{
    LINCaptureParser parser;
    for (int at = 0; at < size; at += pieceSize) {
        parser.feed(bytes + at, std::min(pieceSize, size - at));
    }
    return parser.finish();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    const char *bytes = reinterpret_cast<const char *>(data) + 1;
    const int count = static_cast<int>(size) - 1;
    const auto frames = parse(bytes, count, std::max(1, count));
    const auto pieces = parse(bytes, count, 1 + data[0]);
    require(frames.has_value() == pieces.has_value());
    if (frames) {
        require(!frames->isEmpty() && frames->size() == pieces->size());
        for (int i = 0; i < frames->size(); ++i) {
            require(frames->at(i).ID <= 0x3F && frames->at(i).data.size() <= 8);
            require(frames->at(i).ID == pieces->at(i).ID && frames->at(i).data == pieces->at(i).data);
        }
    }
    return 0;
}
