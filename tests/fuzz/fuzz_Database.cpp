// Fuzz target: any bytes, read as a database - as an LDF file where X9_FUZZ_LDF is 1, as a DBC file otherwise - must
// give messages that hold what the model promises, and what is decoded with them must be what the bits say one by one.

#include "exchange/BusFrame.h"
#include "exchange/ByteOutput.h"
#include "exchange/database/DbcParser.h"
#include "exchange/database/DecodeWriter.h"
#include "exchange/database/LdfParser.h"

#include <QBuffer>

#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

quint64 plainly(const DatabaseSignal &signal, const BusFrame &frame)
{
    quint64 value = 0;
    for (const int bit : signalBits(signal)) {
        value = value << 1U | (frame.data[static_cast<std::size_t>(bit / 8)] >> (bit % 8) & 1U);
    }
    return value;
}

void checkSignal(const DatabaseMessage &message, const DatabaseSignal &signal)
{
    require(signal.length >= 1 && signal.length <= 64 && bytesNeeded(signal) <= BusFrame::MaxLength);
    require(signal.multiplexor >= -1 && signal.multiplexor < message.content.size());
    require(signal.type != DatabaseSignal::Float || signal.length == 32 || signal.length == 64);
    int steps = 0;
    for (const DatabaseSignal *at = &signal; at->multiplexor >= 0; at = &message.content.at(at->multiplexor)) {
        require(++steps <= DbcParser::MaxNesting);
    }
}

void checkDatabase(const Database &database, const BusFrame &frame)
{
    require(database.findings.size() <= Database::MaxFindings && database.findingCount >= database.findings.size());
    for (const DatabaseMessage &message : database.messages) {
        require(message.length >= 0 && message.length <= BusFrame::MaxLength);
        for (const DatabaseSignal &signal : message.content) {
            checkSignal(message, signal);
            const quint64 mask = BitField(signal).mask();
            require((SignalDecoder(signal, 0, nullptr).bits(frame.data.data()) & mask) == plainly(signal, frame));
        }
        for (const int frameNumber : message.associated) {
            require(frameNumber >= 0 && frameNumber < database.messages.size());
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray file(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const DatabaseText text = databaseText(file);
    const Database database = X9_FUZZ_LDF == 1 ? LdfParser(text).parse() : DbcParser(text).parse();
    BusFrame frame; // the file's last bytes
    for (size_t i = 0; i < frame.data.size() && i < size; ++i) {
        frame.data[i] = data[size - 1 - i];
    }
    checkDatabase(database, frame);
    for (const auto layout : {DecodeOptions::Table, DecodeOptions::Wide}) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        ByteOutput out(buffer);
        DecodeOptions options;
        options.layout = layout;
        options.fillGaps = size % 2 == 0;
        options.preferTexts = size % 3 == 0;
        const auto writer = decodeWriter({{database, {}}}, out, options);
        for (int i = 0; i < database.messages.size() && i < 20; ++i) {
            frame.identifier = database.messages[i].identifier;
            frame.set(BusFrame::Extended, database.messages[i].extended);
            frame.set(BusFrame::Lin, database.bus == Database::Lin);
            frame.length = static_cast<quint8>(i % 2 == 0 ? 64 : size % 65);
            writer->write(&frame, 1);
        }
        writer->finish();
        require(out.flush());
    }
    return 0;
}
