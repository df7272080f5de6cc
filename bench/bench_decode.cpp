// bench_decode [--frames N] [--repetitions N] [--json FILE]
//
// Signals per second of processor time, from frames in memory to text that is thrown away: N frames (1,000,000) of a
// database of 50 messages with eight signals each - both byte orders, scaled, signed, with texts, floats - as a table
// and with a column per signal; the same with a multiplexed message of 64 times eight signals; taking the values out
// alone; and a DBC file of 20,000 signals.
//
//     build/release/bin/bench_decode

#include "bench/BenchReport.h"
#include "bench/ProcessFigures.h"

#include "exchange/BusFrame.h"
#include "exchange/ByteOutput.h"
#include "exchange/database/DatabaseFile.h"
#include "exchange/database/DecodeWriter.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QIODevice>

#include <random>

namespace {

constexpr int Messages = 50;
constexpr int SignalsPerMessage = 8;
constexpr quint32 FirstIdentifier = 100;
constexpr quint32 ExtendedBit = 1U << 31U;
constexpr double SignalGoal = 5.0;
constexpr int BatchSize = 1024;

/// Takes everything and keeps nothing.
class Nowhere : public QIODevice
{
public:
    Nowhere() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }
    qint64 size() const override { return m_size; }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 count) override
    {
        m_size += count;
        return count;
    }

private:
    qint64 m_size = 0;
};

QByteArray plainDbc(int messages)
{
    QByteArray text = "VERSION \"\"\nBU_: Engine Gateway\n";
    QByteArray tables;
    for (int i = 0; i < messages; ++i) {
        const QByteArray number = QByteArray::number(i);
        const QByteArray identifier = QByteArray::number(FirstIdentifier + static_cast<quint32>(i) + ExtendedBit);
        text += "BO_ " + identifier + " Message" + number +
                ": 8 Engine\n"
                " SG_ Speed : 0|16@1+ (0.01,0) [0|655.35] \"km/h\" Gateway\n"
                " SG_ Torque : 23|12@0- (0.5,-20) [-1000|1000] \"Nm\" Gateway\n"
                " SG_ Gear : 24|4@1+ (1,0) [0|15] \"\" Gateway\n"
                " SG_ Counter : 28|4@1+ (1,0) [0|15] \"\" Gateway\n"
                " SG_ Temperature : 32|8@1+ (1,-40) [-40|215] \"degC\" Gateway\n"
                " SG_ Switch : 40|1@1+ (1,0) [0|1] \"\" Gateway\n"
                " SG_ Pressure : 41|7@1+ (0.0125,0) [0|2] \"bar\" Gateway\n"
                " SG_ Checksum : 55|16@0+ (1,0) [0|65535] \"\" Gateway\n\n";
        tables += "VAL_ " + identifier + " Gear 0 \"Neutral\" 1 \"First\" 2 \"Second\" 15 \"Reverse\" ;\n";
    }
    return text + tables;
}

/// One message: a multiplexor, and eight signals for each of its values.
QByteArray multiplexedDbc()
{
    QByteArray text =
        "BU_: Engine\nBO_ 2147483748 Multiplexed: 8 Engine\n SG_ Mux M : 0|6@1+ (1,0) [0|0] \"\" Engine\n";
    for (int value = 0; value < 64; ++value) {
        for (int i = 0; i < SignalsPerMessage; ++i) {
            text += QStringLiteral(" SG_ S%1_%2 m%1 : %3|6@1+ (0.5,0) [0|0] \"V\" Engine\n")
                        .arg(value)
                        .arg(i)
                        .arg(8 + 7 * i)
                        .toLatin1();
        }
    }
    return text;
}

std::vector<BusFrame> someFrames(int messages)
{
    std::mt19937 random(1);
    std::vector<BusFrame> frames(BatchSize);
    qint64 time = 0;
    for (BusFrame &frame : frames) {
        frame.time = time += 230000;
        frame.set(BusFrame::Extended);
        frame.identifier = FirstIdentifier + static_cast<quint32>(random() % static_cast<unsigned>(messages));
        frame.length = 8;
        for (int i = 0; i < 8; ++i) {
            frame.data[static_cast<std::size_t>(i)] = static_cast<uchar>(random());
        }
    }
    return frames;
}

struct Options
{
    int frames = 1000000;
    int repetitions = 5;
};

void benchLayout(BenchReport &report, const Options &options, const QString &name, const QByteArray &dbc,
                 const DecodeOptions &decoding)
{
    const Database database = parseDatabase(dbc);
    const std::vector<BusFrame> frames = someFrames(database.messages.size());
    std::vector<double> rates;
    double size = 0;
    for (int i = 0; i < options.repetitions; ++i) {
        Nowhere device;
        ByteOutput out(device);
        const auto writer = decodeWriter({{database, {}}}, out, decoding);
        const double begin = cpuSeconds();
        for (int done = 0; done < options.frames; done += BatchSize) {
            writer->write(frames.data(), BatchSize);
        }
        writer->finish();
        out.flush();
        rates.push_back(static_cast<double>(writer->counts().values) / 1e6 / (cpuSeconds() - begin));
        size = static_cast<double>(device.size()) / static_cast<double>(writer->counts().values);
    }
    report.add(name, median(rates), QStringLiteral("M signals/s"), BenchReport::Target::AtLeast, SignalGoal);
    report.add(QStringLiteral("  text of a signal"), size, QStringLiteral("bytes"));
}

/// Raw and physical values without any text, as a plot needs them.
void benchValues(BenchReport &report, const Options &options)
{
    const Database database = parseDatabase(plainDbc(Messages));
    const DatabaseDecoder decoder(database);
    const std::vector<BusFrame> frames = someFrames(Messages);
    std::vector<double> rates;
    double sum = 0;
    for (int i = 0; i < options.repetitions; ++i) {
        qint64 count = 0;
        const double begin = cpuSeconds();
        for (int done = 0; done < options.frames; done += BatchSize) {
            for (const BusFrame &frame : frames) {
                const uchar *data = frame.data.data();
                decoder.message(decoder.messageOf(frame))
                    .decode(data, frame.length, [&](const SignalDecoder &signal, int) {
                        sum += signal.physical(signal.bits(data)).value_or(0);
                        ++count;
                    });
            }
        }
        rates.push_back(static_cast<double>(count) / 1e6 / (cpuSeconds() - begin));
    }
    report.add(sum != 0 ? QStringLiteral("values alone") : QString(), median(rates), QStringLiteral("M signals/s"));
}

void benchParsing(BenchReport &report, const Options &options)
{
    const QByteArray dbc = plainDbc(20000 / SignalsPerMessage);
    std::vector<double> times;
    for (int i = 0; i < options.repetitions; ++i) {
        const double begin = cpuSeconds();
        const Database database = parseDatabase(dbc);
        times.push_back((cpuSeconds() - begin) * 1e3);
        if (database.findingCount > 0) {
            qFatal("the database is not understood");
        }
    }
    report.add(
        QStringLiteral("DBC file of 20,000 signals, %1 MB").arg(static_cast<double>(dbc.size()) / 1e6, 0, 'f', 1),
        median(times), QStringLiteral("ms"));
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption frames(QStringLiteral("frames"), QString(), QStringLiteral("N"),
                                    QStringLiteral("1000000"));
    const QCommandLineOption repetitions(QStringLiteral("repetitions"), QString(), QStringLiteral("N"),
                                         QStringLiteral("5"));
    const QCommandLineOption json(QStringLiteral("json"), QString(), QStringLiteral("FILE"));
    parser.addOptions({frames, repetitions, json});
    parser.process(application);

    Options options;
    options.frames = parser.value(frames).toInt();
    options.repetitions = parser.value(repetitions).toInt();
    DecodeOptions wide;
    wide.layout = DecodeOptions::Wide;
    BenchReport report;
    benchLayout(report, options, QStringLiteral("as a table"), plainDbc(Messages), DecodeOptions());
    benchLayout(report, options, QStringLiteral("a column per signal"), plainDbc(Messages), wide);
    benchLayout(report, options, QStringLiteral("multiplexed, as a table"), multiplexedDbc(), DecodeOptions());
    benchValues(report, options);
    benchParsing(report, options);
    report.print();
    return report.writeJson(parser.value(json)) ? 0 : 1;
}
