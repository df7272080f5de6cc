#include "tools/gallery/WalkCapture.h"

#include <QDateTime>
#include <QFile>
#include <QTime>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace {

constexpr int CommandMs = 37381; ///< off the beat of the others

struct WalkFrame
{
    quint32 identifier;
    QByteArray data;
    bool isSent = false;
};

QByteArray word(double value, double factor)
{
    const auto raw = static_cast<int>(std::lround(value / factor));
    return QByteArray(1, static_cast<char>(raw)) + static_cast<char>(raw >> 8);
}

double oilPressure(int ms)
{
    constexpr double Usual = 4.1; // bar
    constexpr double Fall = 3.5;
    const double ripple = 0.05 * std::sin(ms / 170.0) + 0.03 * std::sin(ms / 41.0);
    return Usual + ripple - (ms < WalkCapture::DropMs ? 0 : Fall * (1 - std::exp((WalkCapture::DropMs - ms) / 180.0)));
}

QByteArray pumpData(int mode, int duty, int ms)
{
    return QByteArray(1, static_cast<char>(mode)) + static_cast<char>(duty) + QByteArray(5, 0) +
           static_cast<char>(ms / 50);
}

QVector<WalkFrame> framesAt(int ms)
{
    QVector<WalkFrame> frames;
    const bool isReduced = ms > CommandMs;
    const double speed = 2200 + 900 * std::sin(ms / 4000.0);
    const auto counter = static_cast<char>(ms / 10 % 16);
    if (ms % 10 == 0) {
        const QByteArray torque = word(120 + 60 * std::sin(ms / 3000.0), 0.5);
        frames.append({0x0C0, word(speed, 0.25) + torque + QByteArray(3, 0) + counter});
    }
    if (ms % 20 == 3) {
        frames.append({0x2F0, word(speed / 45, 0.01) + QByteArray(5, 0) + counter});
    }
    if (ms % 50 == 7) {
        const auto temperature = static_cast<char>(96 + 40 + ms / 20000);
        frames.append({0x1A0, word(oilPressure(ms), 0.01) + temperature + static_cast<char>(isReduced ? 2 : 1)});
        frames.append({0x1A8, pumpData(isReduced ? 2 : 1, isReduced ? 8 : 60, ms)});
    }
    if (ms % 100 == 11) {
        frames.append({0x3B0, word(ms / 1000.0, 1) + QByteArray(6, 0x55)});
    }
    if (ms % 2000 == 513) {
        frames.append({0x700, QByteArray::fromHex("023E800000000000"), true});
    }
    if (ms == 12204 || ms == CommandMs) {
        frames.append({0x6A0, pumpData(isReduced || ms == CommandMs ? 2 : 1, ms == CommandMs ? 8 : 60, 0), true});
    }
    return frames;
}

QByteArray row(int number, int ms, const WalkFrame &frame)
{
    const QTime clock = QTime(10, 20, 30).addMSecs(ms);
    const QTime device = QTime(0, 0, 4).addMSecs(ms);
    const QByteArray stamp =
        frame.isSent ? QByteArrayLiteral("None") : device.toString(QStringLiteral("h:m:s.z")).toLatin1();
    const QByteArrayList cells{QByteArray::number(number),
                               clock.toString(QStringLiteral("HH:mm:ss.zzz")).toLatin1(),
                               stamp,
                               frame.isSent ? QByteArrayLiteral("Send successfully") : QByteArrayLiteral("Revice"),
                               "0x" + QByteArray::number(frame.identifier, 16).toUpper(),
                               QByteArrayLiteral("CAN"),
                               QByteArrayLiteral("Data"),
                               QByteArrayLiteral("Standard"),
                               "0x" + QByteArray::number(frame.data.size(), 16),
                               frame.data.toHex(' ').toUpper() + ' '};
    return cells.join(',') + ",\n";
}

} // namespace

QByteArray WalkCapture::database()
{
    return R"(VERSION ""
BU_: Motor Body Tool
BO_ 192 Engine: 8 Motor
 SG_ Speed : 0|16@1+ (0.25,0) [0|8000] "rpm" Body
 SG_ Torque : 16|16@1- (0.5,0) [-500|500] "Nm" Body
 SG_ Counter : 56|8@1+ (1,0) [0|15] "" Body
BO_ 416 Oil: 4 Motor
 SG_ OilPressure : 0|16@1+ (0.01,0) [0|10] "bar" Body
 SG_ OilTemperature : 16|8@1+ (1,-40) [-40|215] "degC" Body
 SG_ OilPump : 24|2@1+ (1,0) [0|3] "" Body
BO_ 424 Pump: 8 Motor
 SG_ PumpState : 0|8@1+ (1,0) [0|3] "" Body
 SG_ PumpDuty : 8|8@1+ (1,0) [0|100] "%" Body
BO_ 752 Vehicle: 8 Body
 SG_ Velocity : 0|16@1+ (0.01,0) [0|300] "km/h" Motor
BO_ 944 Cluster: 8 Body
 SG_ OperatingTime : 0|16@1+ (1,0) [0|65535] "s" Motor
BO_ 1696 PumpCommand: 8 Tool
 SG_ Mode : 0|8@1+ (1,0) [0|3] "" Motor
 SG_ Duty : 8|8@1+ (1,0) [0|100] "%" Motor
VAL_ 416 OilPump 0 "off" 1 "normal" 2 "reduced" ;
VAL_ 424 PumpState 0 "off" 1 "normal" 2 "reduced" ;
VAL_ 1696 Mode 0 "off" 1 "normal" 2 "reduced" ;
)";
}

bool WalkCapture::append(const QString &path, int fromMs, int toMs)
{
    QByteArray lines;
    if (fromMs == 0) {
        lines = "Vantora CAN Data\nNo.,System Time,Time Stamp,Direction,ID,Protocol,Format,Type,Length,Data\n\n";
    }
    int number = 0;
    for (int ms = 0; ms < toMs; ++ms) {
        const QVector<WalkFrame> frames = framesAt(ms);
        for (const WalkFrame &frame : frames) {
            ++number;
            if (ms >= fromMs) {
                lines += row(number, ms, frame);
            }
        }
    }
    QFile file(path);
    const QDateTime date(QDate(2026, 3, 31), QTime(10, 21, 20)); // the same in each run
    return file.open(QIODevice::Append) && file.write(lines) == lines.size() && file.flush() &&
           file.setFileTime(date, QFileDevice::FileModificationTime);
}
