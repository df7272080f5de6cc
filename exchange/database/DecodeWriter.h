#pragma once

#include "exchange/CaptureInfo.h"
#include "exchange/database/MessageDecoder.h"
#include "exchange/FrameWriter.h"

#include <QStringList>

#include <memory>

class ByteOutput;
class FrameReader;

/// A database and the channels whose frames it describes.
struct DecodeSource
{
    Database database;
    QVector<int> channels; ///< from 0; empty: all
};

/// What decoded signals are written as: CSV by RFC 4180 in UTF-8, lines end with LF.
struct DecodeOptions
{
    enum Layout {
        Table, ///< a line for each signal of each frame
        Wide   ///< a line for each frame, a column for each signal
    };

    Layout layout = Table;
    /// Wide: a column without a new value keeps the last one of the frame's channel or any other; otherwise it is
    /// empty.
    bool fillGaps = false;
    /// Wide: a value's text instead of its number, where it has one.
    bool preferTexts = false;
    /// Times as 2026-01-31T12:00:00.000000000Z, where the capture has them; otherwise in seconds.
    bool clockTimes = false;
    int timeDigits = 9;      ///< of a second, 0 to 9; further ones are cut off
    bool utf8Mark = false;   ///< begin with the mark that makes spreadsheets read UTF-8
    QStringList signalNames; ///< only these: "Message" or "Message.Signal", with * and ?; empty: all
    CaptureInfo info;        ///< of the capture
};

/// What became of the frames.
struct DecodeCounts
{
    qint64 frames = 0;
    qint64 decoded = 0;        ///< with a signal or more that is wanted
    qint64 withoutMessage = 0; ///< no database of their channel has them
    qint64 withoutData = 0;    ///< error frames, remote frames, frames that were refused or arrived damaged
    qint64 tooShort = 0;       ///< of those with a message: one of its signals or more did not fit
    qint64 values = 0;         ///< that were written
};

/// Writes the signals of frames as text, in constant memory. Nothing is reported of single frames, see counts().
class DecodeWriter : public FrameWriter
{
public:
    /// Names of options.signalNames that no message and no signal of the sources has.
    static QStringList unknownNames(const std::vector<DecodeSource> &sources, const QStringList &signalNames);

    void write(const BusFrame *frames, int count) override;
    const DecodeCounts &counts() const { return m_counts; }

protected:
    /// Most bytes of a cell with a name, a unit or a text, and of a number and what is between cells.
    static constexpr std::size_t MaxCell = 8192;

    DecodeWriter(const std::vector<DecodeSource> &sources, ByteOutput &out, const DecodeOptions &options);

    struct Source
    {
        DatabaseDecoder decoder;
        std::vector<bool> channels; ///< empty: all
    };

    /// Writes the frame's signals and returns how many did not fit. source: its number; number: the message's.
    virtual int writeMessage(const BusFrame &frame, int source, int number) = 0;

    const MessageDecoder &message(int source, int number) const
    {
        return m_sources[static_cast<std::size_t>(source)].decoder.message(number);
    }
    int messageCount(int source) const { return m_messageCounts[static_cast<std::size_t>(source)]; }
    /// The cells of time and channel, each with a comma behind it; takes at most MaxCell bytes.
    char *putBegin(char *to, const BusFrame &frame);
    static QByteArray cell(const QString &text);

    ByteOutput &m_out;
    DecodeCounts m_counts;

private:
    void writeFrame(const BusFrame &frame);
    char *putTime(char *to, qint64 time) const;
    char *putClock(char *to, qint64 time);

    std::vector<Source> m_sources;
    std::vector<int> m_messageCounts;
    std::vector<QByteArray> m_channels; ///< cells of those that have a name
    bool m_isClock;
    int m_digits;
    qint64 m_divisor; ///< from nanoseconds to the last digit
    qint64 m_toEpoch; ///< nanoseconds from 1970 to the times' zero, for clock times
    qint64 m_day = -1;
    QByteArray m_date; ///< of the day
};

/// A writer for the options. out must outlive it.
std::unique_ptr<DecodeWriter> decodeWriter(const std::vector<DecodeSource> &sources, ByteOutput &out,
                                           const DecodeOptions &options);
/// All frames of a capture. options.info is taken from the reader.
DecodeCounts decodeCapture(FrameReader &in, const std::vector<DecodeSource> &sources, ByteOutput &out,
                           DecodeOptions options);
