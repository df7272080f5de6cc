// Fuzz target: any bytes, read as a capture of the format X9_FUZZ_FORMAT, must give what the plain reader gives.

#include "capture/CaptureReader.h"
#include "tests/support/PlainCaptureReader.h"

#include <QBuffer>

#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

void compare(const CaptureFrame &frame, const CaptureFrame &expected)
{
    require(frame.idWord == expected.idWord);
    require(frame.attributes == expected.attributes);
    require(frame.data == expected.data);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray file(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    const auto content = readCapture(buffer, captureFormat(X9_FUZZ_FORMAT));
    const auto expected = readPlainly(file, X9_FUZZ_FORMAT);
    require(content.has_value() == expected.has_value());
    if (content) {
        require(content->frames.size() == static_cast<qint64>(expected->size()));
        for (std::size_t i = 0; i < expected->size(); ++i) {
            compare(content->frames.at(static_cast<qint64>(i)), (*expected)[i]);
        }
    }
    return 0;
}
