#include "exchange/CandumpFormat.h"

#include "capture/FrameCells.h"
#include "exchange/ByteInput.h"
#include "exchange/ByteOutput.h"
#include "exchange/CandumpLine.h"
#include "exchange/ChannelNames.h"
#include "exchange/Findings.h"
#include "exchange/FrameLosses.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

constexpr qint64 NanosecondsPerSecond = 1000000000;
/// Seconds; what is more counts from 1970.
constexpr qint64 FirstAbsolute = 100000000;

class Reader : public FrameReader
{
public:
    Reader(ByteInput &in, Findings &findings)
        : m_in(in)
        , m_findings(findings)
    {
        m_info.format = QStringLiteral("candump");
    }

    int read(BusFrame *frames, int room) override
    {
        int count = 0;
        while (count < room) {
            const std::optional<std::string_view> line = m_in.line();
            if (!line) {
                break;
            }
            if (m_in.isCut() || !m_line.read(*line, frames[count])) {
                refuse(*line);
                continue;
            }
            frames[count].time = m_line.time;
            frames[count].channel = m_names.number(m_line.name);
            if (!m_hasBegun) {
                m_hasBegun = true;
                m_info.timeBase = m_line.time >= FirstAbsolute * NanosecondsPerSecond ? CaptureInfo::Absolute
                                                                                      : CaptureInfo::SinceStart;
            }
            ++count;
        }
        m_info.channelNames = m_names.names();
        return count;
    }

private:
    void refuse(std::string_view line)
    {
        if (line.find_first_not_of(" \t") != std::string_view::npos) {
            m_findings.add(Finding::Line, m_in.lineNumber(),
                           QCoreApplication::translate("CandumpFormat", "a line that holds no frame was left out"));
        }
    }

    ByteInput &m_in;
    Findings &m_findings;
    CandumpLine m_line;
    ChannelNames m_names;
    bool m_hasBegun = false;
};

class Writer : public FrameWriter
{
public:
    Writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
        : m_out(out)
        , m_info(options.info)
        , m_losses(CandumpFormat::Holds, findings)
        , m_start(options.info.timeBase == CaptureInfo::SinceStart ? options.info.start : 0)
    {
    }

    void write(const BusFrame *frames, int count) override
    {
        for (const BusFrame *frame = frames; frame != frames + count; ++frame) {
            m_time = frame->time != BusFrame::NoTime ? frame->time : m_time;
            if (m_losses.takes(*frame)) {
                put(*frame);
            }
        }
    }
    void finish() override { m_losses.report(); }

private:
    void put(const BusFrame &frame)
    {
        if (frame.channel != m_channel) {
            findName(frame.channel);
        }
        const std::string_view name(m_name.constData(), static_cast<std::size_t>(m_name.size()));
        char *begin = m_out.room(MaxCandumpLine + name.size());
        char *to = putTime(begin, std::max<qint64>(m_start + m_time, 0));
        std::memcpy(to, name.data(), name.size());
        to = putCandumpFrame(to + name.size(), frame);
        m_out.advance(static_cast<std::size_t>(to - begin));
    }
    static char *putTime(char *to, qint64 time)
    {
        constexpr qint64 TenSeconds = 1000000000;
        const qint64 seconds = time / NanosecondsPerSecond;
        *to++ = '(';
        for (qint64 least = TenSeconds; seconds < least && least >= 10; least /= 10) {
            *to++ = '0'; // ten digits
        }
        to = FrameBytes::putDecimal(to, static_cast<quint64>(seconds));
        *to++ = '.';
        qint64 micros = time / 1000 % 1000000;
        for (int i = 5; i >= 0; --i) {
            to[i] = static_cast<char>('0' + micros % 10);
            micros /= 10;
        }
        to += 6;
        *to++ = ')';
        *to++ = ' ';
        return to;
    }
    void findName(int channel)
    {
        constexpr int MaxName = 64;
        const QString known = m_info.channelNames.value(channel).simplified();
        const bool isWord = !known.isEmpty() && !known.contains(QLatin1Char(' ')) && known.size() <= MaxName;
        m_name = (isWord ? known : QStringLiteral("can%1").arg(channel)).toUtf8() + ' ';
        m_channel = channel;
    }

    ByteOutput &m_out;
    const CaptureInfo m_info;
    FrameLosses m_losses;
    const qint64 m_start;
    qint64 m_time = 0;
    int m_channel = -1; ///< that m_name belongs to
    QByteArray m_name;  ///< with a blank behind
};

} // namespace

/// By its first line that is not empty.
bool CandumpFormat::recognises(std::string_view head)
{
    head.remove_prefix(std::min(head.find_first_not_of("\r\n"), head.size()));
    std::string_view line = head.substr(0, head.find('\n'));
    line = line.substr(0, line.find_last_not_of('\r') + 1);
    BusFrame frame;
    return CandumpLine().read(line, frame);
}

std::unique_ptr<FrameReader> CandumpFormat::reader(ByteInput &in, const ReadOptions & /*options*/, Findings &findings)
{
    return std::make_unique<Reader>(in, findings);
}

std::unique_ptr<FrameWriter> CandumpFormat::writer(ByteOutput &out, const WriteOptions &options, Findings &findings)
{
    return std::make_unique<Writer>(out, options, findings);
}
