#include "exchange/FrameMerge.h"

#include "tests/support/TestProgram.h"

#include <QtTest>

namespace {

FrameMerge::Source source(const QList<int> &times, int batch, qint64 timeOffset = 0, int channelOffset = 0)
{
    return {[times, batch, place = 0](BusFrame *frames, int room) mutable {
                int count = 0;
                for (; count < std::min(room, batch) && place < times.size(); ++count, ++place) {
                    frames[count] = BusFrame();
                    frames[count].time = times.at(place);
                }
                return count;
            },
            timeOffset, channelOffset};
}

QString merged(std::vector<FrameMerge::Source> sources, int room)
{
    FrameMerge merge(std::move(sources));
    std::vector<BusFrame> frames(static_cast<std::size_t>(room));
    QStringList texts;
    for (int count = 0; (count = merge.read(frames.data(), room)) > 0;) {
        for (int i = 0; i < count; ++i) {
            const BusFrame &frame = frames[static_cast<std::size_t>(i)];
            texts.append(QStringLiteral("%1@%2").arg(frame.time).arg(frame.channel));
        }
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace

class tst_FrameMerge : public QObject
{
    Q_OBJECT

private slots:
    static void byTime();
    static void jumpsBackStayInTheirOrder();
};

void tst_FrameMerge::byTime()
{
    for (const int room : {1, 2, 100}) {
        QCOMPARE(merged({source({1, 3, 3, 7}, 2), source({}, 1), source({2, 3, 9}, 1, 0, 4)}, room),
                 QStringLiteral("1@0 2@4 3@0 3@0 3@4 7@0 9@4"));
    }
    QCOMPARE(merged({source({1, 5}, 9), source({1, 5}, 9, 2, 1)}, 10), QStringLiteral("1@0 3@1 5@0 7@1"));
    QCOMPARE(merged({}, 10), QString());
}

void tst_FrameMerge::jumpsBackStayInTheirOrder()
{
    QCOMPARE(merged({source({5, 1, 6}, 9), source({4, 7}, 9, 0, 1)}, 10), QStringLiteral("4@1 5@0 1@0 6@0 7@1"));
}

X9_PLAIN_TEST(tst_FrameMerge)
#include "tst_FrameMerge.moc"
