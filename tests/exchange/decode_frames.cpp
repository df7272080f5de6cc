// decode_frames DATABASE < frames > table
//
// Decodes frames that are given one a line, identifier#data in hexadecimal, eight digits of an extended identifier:
// decode_witness.py compares the table with what another program decodes.

#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/database/DatabaseFile.h"
#include "exchange/database/DecodeWriter.h"

#include <QFile>

#include <algorithm>
#include <cstdio>

namespace {

BusFrame frameOf(const QByteArray &line, qint64 number)
{
    const QList<QByteArray> parts = line.split('#');
    const QByteArray data = QByteArray::fromHex(parts.value(1));
    BusFrame frame;
    frame.time = number * 1000000000;
    frame.identifier = parts.value(0).toUInt(nullptr, 16);
    frame.set(BusFrame::Extended, parts.value(0).size() == 8);
    frame.set(BusFrame::Fd, data.size() > 8);
    frame.length = static_cast<quint8>(data.size());
    std::copy(data.begin(), data.end(), frame.data.begin());
    return frame;
}

} // namespace

int main(int argc, char *argv[])
{
    QString error;
    const auto database = readDatabase(QFile::decodeName(argc == 2 ? argv[1] : ""), QString(), error);
    QFile input;
    QFile output;
    if (!database || !input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    for (const DatabaseFinding &finding : database->findings) {
        std::fprintf(stderr, "%d:%d: %s\n", finding.place.line, finding.place.column, qPrintable(finding.text));
    }
    ByteInput in(input);
    ByteOutput out(output);
    DecodeOptions options;
    options.timeDigits = 0; // the time is the line's number
    const auto writer = decodeWriter({{*database, {}}}, out, options);
    while (const auto line = in.line()) {
        const BusFrame frame = frameOf(QByteArray(line->data(), static_cast<int>(line->size())), in.lineNumber());
        writer->write(&frame, 1);
    }
    writer->finish();
    return out.flush() ? 0 : 1;
}
