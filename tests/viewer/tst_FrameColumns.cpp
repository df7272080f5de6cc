#include "tests/support/TestProgram.h"
#include "tests/viewer/ViewerFrames.h"
#include "viewer/core/Filter.h"
#include "viewer/core/FrameColumns.h"

#include <QtTest>

Q_DECLARE_METATYPE(BusFrame)

namespace {

/// The cells from the channel on, with "|" between them.
QString cells(const BusFrame &frame)
{
    const FrameNames names({{0x123, QStringLiteral("Door")}});
    QStringList list;
    for (int column = static_cast<int>(FrameColumn::Channel); column < FrameColumnCount; ++column) {
        list.append(FrameColumns::text(static_cast<FrameColumn>(column), 41, frame, names));
    }
    return list.join(QLatin1Char('|'));
}

} // namespace

class tst_FrameColumns : public QObject
{
    Q_OBJECT

private slots:
    static void texts_data();
    static void texts();
    static void times();
    static void sameCellPassesItsFrameOnly();
};

void tst_FrameColumns::texts_data()
{
    QTest::addColumn<BusFrame>("frame");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const BusFrame &frame, const char *expected) {
        QTest::newRow(name) << frame << QString::fromLatin1(expected);
    };
    BusFrame sent = canFrame(0, 0x123, "DEAD");
    sent.direction = BusFrame::Sent;
    sent.channel = 1;
    row("sent", sent, "2|Tx|123|Door|CAN|2|DE AD");
    row("extended", canFrame(0, 0x123, "", BusFrame::Extended), "1|Rx|00000123||CAN|0|");
    row("remote", canFrame(0, 5, "0000", BusFrame::Remote), "1|Rx|005||Remote|2|");
    row("error", canFrame(0, 5, "00", BusFrame::Error), "1|Rx|||Error|1|00");
    row("LIN", canFrame(0, 5, "0A", BusFrame::Lin), "1|Rx|05||LIN|1|0A");
    row("FD", canFrame(0, 5, "0A", BusFrame::Fd), "1|Rx|005||CAN FD|1|0A");
    row("FD, all", canFrame(0, 5, "0A", BusFrame::Fd | BusFrame::BitRateSwitch | BusFrame::ErrorStateIndicator),
        "1|Rx|005||CAN FD BRS ESI|1|0A");
    BusFrame refused = canFrame(0, 5);
    refused.direction = BusFrame::Refused;
    row("refused", refused, "1|Refused|005||CAN|0|");
}

void tst_FrameColumns::texts()
{
    QFETCH(const BusFrame, frame);
    QFETCH(const QString, expected);
    QCOMPARE(cells(frame), expected);
    QCOMPARE(FrameColumns::text(FrameColumn::Number, 41, frame, {}), QStringLiteral("42"));
}

void tst_FrameColumns::times()
{
    BusFrameStore store;
    fill(store, {canFrame(1500, 1), canFrame(BusFrame::NoTime, 1)});
    const auto text = [&store](FrameColumn column, qint64 row) {
        return FrameColumns::text(column, store, {}, row, {-1, 0, 0}, {});
    };
    QCOMPARE(text(FrameColumn::SinceStart, 0), QStringLiteral("0.000001500"));
    QCOMPARE(text(FrameColumn::SinceMark, 0), QStringLiteral("0.000000000"));
    QCOMPARE(text(FrameColumn::SinceShown, 0), QString());
    QCOMPARE(text(FrameColumn::Absolute, 0), QString());
    QCOMPARE(text(FrameColumn::SinceStart, 1), QString());
    QCOMPARE(text(FrameColumn::Number, 1), QStringLiteral("2"));
}

/// Each filter passes the frame that it was made of, and none of the others that differ from it in that cell.
void tst_FrameColumns::sameCellPassesItsFrameOnly()
{
    std::vector<BusFrame> frames{canFrame(0, 0x123, "DEAD"),
                                 canFrame(0, 0x124, "DEAE"),
                                 canFrame(0, 0x123, "", BusFrame::Extended),
                                 canFrame(0, 0x23, "0A", BusFrame::Lin),
                                 canFrame(0, 0x23, "0A"),
                                 canFrame(0, 0x23, "0A", BusFrame::Fd),
                                 canFrame(0, 0x23, "00", BusFrame::Remote),
                                 canFrame(0, 0x23, "00", BusFrame::Error)};
    frames[0].direction = BusFrame::Sent;
    frames[1].direction = BusFrame::Refused;
    frames[2].channel = 3;
    BusFrameStore store;
    fill(store, frames);
    for (int column = 0; column < FrameColumnCount; ++column) {
        const auto which = static_cast<FrameColumn>(column);
        for (qint64 row = 0; row < store.size(); ++row) {
            const QString text = FrameColumns::sameCell(which, row, store.frame(row), {});
            if (text.isEmpty()) {
                continue;
            }
            FilterError error{};
            const std::optional<Filter> filter = Filter::parse(text, {}, error);
            QVERIFY2(filter, qPrintable(text));
            for (qint64 other = 0; other < store.size(); ++other) {
                const bool isSameCell = FrameColumns::text(which, row, store.frame(row), {}) ==
                                        FrameColumns::text(which, other, store.frame(other), {});
                const bool isSameKey =
                    which != FrameColumn::Identifier ||
                    frameKey(frames[std::size_t(row)].identifier, frames[std::size_t(row)].flags) ==
                        frameKey(frames[std::size_t(other)].identifier, frames[std::size_t(other)].flags);
                QVERIFY2(filter->passes(store, other) == (isSameCell && isSameKey),
                         qPrintable(QStringLiteral("%1: row %2").arg(text).arg(other)));
            }
        }
    }
}

X9_PLAIN_TEST(tst_FrameColumns)
#include "tst_FrameColumns.moc"
