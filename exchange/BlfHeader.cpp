#include "exchange/BlfHeader.h"

#include "exchange/BlfLayout.h"
#include "exchange/TimeOrigin.h"

#include <QtEndian>

#include <cstring>

namespace {

constexpr std::size_t FileSizeAt = 16;
constexpr std::size_t UncompressedSizeAt = 24;
constexpr std::size_t ObjectsAt = 32;
constexpr std::size_t StartAt = 40;
constexpr std::size_t EndAt = 56;

/// Year, month, day of the week from Sunday, day, hours, minutes, seconds, milliseconds; 2 bytes each.
qint64 readTime(const char *bytes)
{
    const auto field = [bytes](int i) {
        return qFromLittleEndian<quint16>(bytes + std::ptrdiff_t(i) * 2);
    };
    return nanosecondsOfLocalTime(QDate(field(0), field(1), field(3)), QTime(field(4), field(5), field(6), field(7)));
}

void writeTime(char *bytes, qint64 nanoseconds)
{
    if (nanoseconds == 0) {
        return;
    }
    const QDateTime local = localTime(nanoseconds);
    const QDate date = local.date();
    const QTime time = local.time();
    const int fields[] = {date.year(), date.month(),  date.dayOfWeek() % 7, date.day(),
                          time.hour(), time.minute(), time.second(),        time.msec()};
    for (const int field : fields) {
        qToLittleEndian(static_cast<quint16>(field), bytes);
        bytes += 2;
    }
}

} // namespace

BlfHeader BlfHeader::read(const char *bytes)
{
    BlfHeader header;
    header.size = qFromLittleEndian<quint32>(bytes + 4);
    header.fileSize = qFromLittleEndian<quint64>(bytes + FileSizeAt);
    header.uncompressedSize = qFromLittleEndian<quint64>(bytes + UncompressedSizeAt);
    header.objects = qFromLittleEndian<quint32>(bytes + ObjectsAt);
    header.start = readTime(bytes + StartAt);
    header.end = readTime(bytes + EndAt);
    return header;
}

std::array<char, BlfHeader::Size> BlfHeader::bytes() const
{
    constexpr std::array<char, 4> FormatVersion = {2, 6, 8, 1}; // which public programs write, too
    std::array<char, Size> bytes{};
    std::memcpy(bytes.data(), BlfLayout::FileSignature.data(), BlfLayout::FileSignature.size());
    qToLittleEndian(size, bytes.data() + 4);
    std::memcpy(bytes.data() + 12, FormatVersion.data(), FormatVersion.size());
    qToLittleEndian(fileSize, bytes.data() + FileSizeAt);
    qToLittleEndian(uncompressedSize, bytes.data() + UncompressedSizeAt);
    qToLittleEndian(objects, bytes.data() + ObjectsAt);
    writeTime(bytes.data() + StartAt, start);
    writeTime(bytes.data() + EndAt, end);
    return bytes;
}
