#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// Where something stands in a text: both from 1, the column counted in characters.
struct TextPlace
{
    int line = 0;
    int column = 0;
};

/// Something that a parser did not understand, or that cannot be so, and where.
struct DatabaseFinding
{
    TextPlace place;
    QString text; ///< in the user's language
};

/// From first to last, both included.
struct RawRange
{
    quint64 first;
    quint64 last;
};

/// What a raw value stands for.
struct ValueText
{
    quint64 value; ///< of a negative one the two's complement
    QString text;
};

/// How physical values are made: physical = raw * factor + offset.
struct SignalScale
{
    RawRange raw{0, ~quint64(0)}; ///< the values that it is for
    double factor = 1;
    double offset = 0;
    QString unit;
};

/// A signal: some bits of a message, and what they mean.
struct DatabaseSignal
{
    enum ByteOrder : quint8 {
        LittleEndian, ///< Intel
        BigEndian     ///< Motorola
    };
    enum Type : quint8 {
        Unsigned,
        Signed,
        Float, ///< IEEE 754, of 32 or 64 bits
        Bcd,   ///< two decimal digits in each byte
        Bytes, ///< no number: an array of a LIN frame
        Ascii  ///< the same, and a text
    };

    QString name;   ///< the long one where there is one
    QString symbol; ///< the name as other lines of the file have it
    QString comment;
    QStringList receivers;
    TextPlace place;

    /// Bits are numbered by byte * 8 + bit, bit 0 is a byte's lowest. Of a little-endian signal its lowest bit, of a
    /// big-endian one its highest, as a DBC file has it.
    quint16 startBit = 0;
    quint16 length = 1; ///< 1 to 64; of Bytes and Ascii a multiple of 8, of Bcd of 4
    ByteOrder byteOrder = LittleEndian;
    Type type = Unsigned;

    /// The first that has the raw value counts, and a value that none has is not a physical one. A DBC file gives one
    /// for all values.
    QVector<SignalScale> scales;
    double minimum = 0; ///< physical; both 0 where none are given
    double maximum = 0;
    QVector<ValueText> texts; ///< in the file's order

    bool isMultiplexor = false;
    int multiplexor = -1;          ///< the signal of the message that selects this one; none: -1
    QVector<RawRange> multiplexed; ///< the raw values of the multiplexor with which this is there

    QString unit() const { return scales.isEmpty() ? QString() : scales.first().unit; }
};

/// A frame of a CAN or LIN bus, and the signals in it.
struct DatabaseMessage
{
    enum Kind : quint8 {
        Plain,          ///< CAN; LIN: unconditional
        Diagnostic,     ///< LIN
        EventTriggered, ///< LIN: carries one of the associated frames, whose protected identifier is its first byte
        Sporadic        ///< LIN: a name for the associated frames, without an identifier
    };

    QString name;   ///< the long one where there is one
    QString symbol; ///< the name as other lines of the file have it
    QString comment;
    QStringList senders;
    TextPlace place;

    quint32 identifier = 0;
    bool extended = false;
    bool fd = false; ///< CAN FD
    Kind kind = Plain;
    int length = 0;                  ///< bytes
    std::optional<double> cycleTime; ///< milliseconds
    QVector<DatabaseSignal> content; ///< in the file's order
    QVector<int> associated;         ///< numbers of messages

    /// Number of the signal with this symbol, or -1.
    int signalNumber(const QString &signalSymbol) const;
};

/// The messages of a bus, as a DBC or LDF file describes them.
struct Database
{
    enum Bus : quint8 { Can, Lin };

    Bus bus = Can;
    QString version;
    QString encoding; ///< that the file was read in
    QStringList nodes;
    QVector<DatabaseMessage> messages; ///< in the file's order
    QVector<DatabaseFinding> findings; ///< the first MaxFindings
    int findingCount = 0;              ///< of all

    static constexpr int MaxFindings = 1000;
};

/// Places of a signal's bits in a frame's data, byte * 8 + bit each, the most significant first. They may lie beyond
/// any frame.
QVector<int> signalBits(const DatabaseSignal &signal);
/// Bytes a frame must have for the signal to be whole; 65 where no frame has so many, or the start is no place.
int bytesNeeded(const DatabaseSignal &signal);
