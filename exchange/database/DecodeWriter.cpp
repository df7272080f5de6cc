#include "exchange/database/DecodeWriter.h"

#include "exchange/ByteOutput.h"
#include "exchange/database/DecodeTable.h"
#include "exchange/database/DecodeWide.h"
#include "exchange/FrameReader.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace {

constexpr qint64 Second = 1000000000;
constexpr qint64 Day = 86400 * Second;
constexpr int BatchSize = 1024;
constexpr int MaxChannelName = 256;

/// Finds signals by the names that a user gave.
class NameFilter
{
public:
    explicit NameFilter(const QStringList &names)
    {
        for (const QString &name : names) {
            m_patterns.append(QRegularExpression(QRegularExpression::anchoredPattern(pattern(name))));
        }
    }

    bool isWanted(const DatabaseMessage &message, const DatabaseSignal &signal) const
    {
        return m_patterns.isEmpty() || std::any_of(m_patterns.begin(), m_patterns.end(), [&](const auto &pattern) {
                   return matches(pattern, message.name, signal.name) ||
                          matches(pattern, message.symbol, signal.symbol);
               });
    }

private:
    static QString pattern(const QString &name)
    {
        return QRegularExpression::escape(name)
            .replace(QLatin1String("\\*"), QLatin1String(".*"))
            .replace(QLatin1String("\\?"), QLatin1String("."));
    }

    static bool matches(const QRegularExpression &pattern, const QString &message, const QString &signal)
    {
        return pattern.match(message).hasMatch() || pattern.match(message + QLatin1Char('.') + signal).hasMatch();
    }

    QVector<QRegularExpression> m_patterns;
};

} // namespace

QStringList DecodeWriter::unknownNames(const std::vector<DecodeSource> &sources, const QStringList &signalNames)
{
    QStringList unknown;
    for (const QString &name : signalNames) {
        const NameFilter filter({name});
        const bool isKnown = std::any_of(sources.begin(), sources.end(), [&filter](const DecodeSource &source) {
            const auto &messages = source.database.messages;
            return std::any_of(messages.begin(), messages.end(), [&filter](const DatabaseMessage &message) {
                return std::any_of(message.content.begin(), message.content.end(),
                                   [&](const DatabaseSignal &signal) { return filter.isWanted(message, signal); });
            });
        });
        if (!isKnown) {
            unknown.append(name);
        }
    }
    return unknown;
}

DecodeWriter::DecodeWriter(const std::vector<DecodeSource> &sources, ByteOutput &out, const DecodeOptions &options)
    : m_out(out)
    , m_isClock(options.clockTimes && (options.info.timeBase == CaptureInfo::Absolute || options.info.start != 0))
    , m_digits(std::clamp(options.timeDigits, 0, 9))
    , m_divisor(static_cast<qint64>(powerOfTen(9 - m_digits)))
    , m_toEpoch(options.info.timeBase == CaptureInfo::Absolute ? 0 : options.info.start)
{
    const NameFilter filter(options.signalNames);
    DatabaseDecoder::Filter isWanted;
    if (!options.signalNames.isEmpty()) {
        isWanted = [&filter](const auto &message, const auto &signal) {
            return filter.isWanted(message, signal);
        };
    }
    for (const DecodeSource &source : sources) {
        std::vector<bool> channels;
        for (const int channel : source.channels) {
            if (channel >= 0 && channel <= 0xFFFF) {
                channels.resize(std::max(channels.size(), static_cast<std::size_t>(channel) + 1));
                channels[static_cast<std::size_t>(channel)] = true;
            }
        }
        m_sources.push_back({DatabaseDecoder(source.database, isWanted), channels});
        m_messageCounts.push_back(source.database.messages.size());
    }
    for (const QString &name : options.info.channelNames) {
        m_channels.push_back(name.isEmpty() ? QByteArray() : cell(name.left(MaxChannelName)));
    }
    if (options.utf8Mark) {
        m_out.put("\xEF\xBB\xBF");
    }
}

void DecodeWriter::write(const BusFrame *frames, int count)
{
    std::for_each(frames, frames + count, [this](const BusFrame &frame) { writeFrame(frame); });
}

void DecodeWriter::writeFrame(const BusFrame &frame)
{
    ++m_counts.frames;
    if (!hasSoundData(frame)) {
        ++m_counts.withoutData;
        return;
    }
    for (std::size_t i = 0; i < m_sources.size(); ++i) {
        const Source &source = m_sources[i];
        if (!source.channels.empty() && (frame.channel >= source.channels.size() || !source.channels[frame.channel])) {
            continue;
        }
        const int number = source.decoder.messageOf(frame);
        if (number >= 0) {
            const qint64 before = m_counts.values;
            m_counts.tooShort += writeMessage(frame, static_cast<int>(i), number) > 0 ? 1 : 0;
            m_counts.decoded += m_counts.values > before ? 1 : 0;
            return;
        }
    }
    ++m_counts.withoutMessage;
}

QByteArray DecodeWriter::cell(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    QByteArray cell(2 * utf8.size() + 2, '\0');
    char *end = putCell(cell.data(), {utf8.constData(), static_cast<std::size_t>(utf8.size())});
    cell.truncate(static_cast<int>(end - cell.constData()));
    return cell;
}

char *DecodeWriter::putBegin(char *to, const BusFrame &frame)
{
    if (frame.time != BusFrame::NoTime) {
        to = m_isClock ? putClock(to, frame.time) : putTime(to, frame.time);
    }
    *to++ = ',';
    if (frame.channel < m_channels.size() && !m_channels[frame.channel].isEmpty()) {
        const QByteArray &name = m_channels[frame.channel];
        to = std::copy(name.begin(), name.end(), to);
    } else {
        to = putUnsigned(to, frame.channel + 1U);
    }
    *to++ = ',';
    return to;
}

char *DecodeWriter::putTime(char *to, qint64 time) const
{
    return putFixed(to, time / m_divisor, m_digits);
}

/// The date is made once a day.
char *DecodeWriter::putClock(char *to, qint64 time)
{
    const bool isTooFar = m_toEpoch > 0 && time > std::numeric_limits<qint64>::max() - m_toEpoch;
    time += isTooFar || (m_toEpoch < 0 && time < std::numeric_limits<qint64>::min() - m_toEpoch) ? 0 : m_toEpoch;
    qint64 day = time / Day;
    qint64 left = time % Day;
    if (left < 0) {
        left += Day;
        --day;
    }
    if (m_date.isEmpty() || day != m_day) {
        m_day = day;
        m_date = QDate(1970, 1, 1).addDays(day).toString(Qt::ISODate).toLatin1() + 'T';
    }
    to = std::copy(m_date.begin(), m_date.end(), to);
    const auto putTwo = [&to](qint64 value, char behind) {
        *to++ = static_cast<char>('0' + value / 10);
        *to++ = static_cast<char>('0' + value % 10);
        *to++ = behind;
    };
    putTwo(left / Second / 3600, ':');
    putTwo(left / Second / 60 % 60, ':');
    const qint64 seconds = left % (60 * Second);
    if (seconds < 10 * Second) {
        *to++ = '0';
    }
    to = putFixed(to, seconds / m_divisor, m_digits);
    *to++ = 'Z';
    return to;
}

std::unique_ptr<DecodeWriter> decodeWriter(const std::vector<DecodeSource> &sources, ByteOutput &out,
                                           const DecodeOptions &options)
{
    if (options.layout == DecodeOptions::Wide) {
        return std::make_unique<DecodeWide>(sources, out, options);
    }
    return std::make_unique<DecodeTable>(sources, out, options);
}

DecodeCounts decodeCapture(FrameReader &in, const std::vector<DecodeSource> &sources, ByteOutput &out,
                           DecodeOptions options)
{
    std::vector<BusFrame> frames(BatchSize);
    int count = in.read(frames.data(), BatchSize);
    options.info = in.info();
    const std::unique_ptr<DecodeWriter> writer = decodeWriter(sources, out, options);
    for (; count > 0; count = in.read(frames.data(), BatchSize)) {
        writer->write(frames.data(), count);
    }
    writer->finish();
    return writer->counts();
}
