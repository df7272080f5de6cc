#include "viewer/core/SignalCells.h"

namespace {

QString textOf(const char *begin, const char *end)
{
    return QString::fromLatin1(begin, static_cast<int>(end - begin));
}

} // namespace

SignalCells signalCells(const SignalDecoder &signal, const uchar *data)
{
    SignalCells cells;
    char room[MaxNumberText];
    const quint64 bits = signal.bits(data);
    cells.raw = textOf(room, signal.putRaw(room, bits));
    if (const ValueScale *scale = signal.scale(bits)) {
        cells.physical = textOf(room, signal.putPhysical(room, bits, *scale));
        cells.unit = QString::fromUtf8(scale->unit());
    }
    const std::string_view text = signal.text(bits, room);
    cells.text = QString::fromUtf8(text.data(), static_cast<int>(text.size()));
    return cells;
}
