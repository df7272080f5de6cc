#include "tests/support/TestProgram.h"
#include "tests/viewer/TestSignals.h"
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

/// Frames of 0x123 are called Engine, and Speed is in them.
class NamesOnly : public TestSignals
{
public:
    QVector<Message> messages() const override { return {{0x123, QStringLiteral("Engine")}}; }
};

} // namespace

class tst_FrameColumns : public QObject
{
    Q_OBJECT

private slots:
    static void texts_data();
    static void texts();
    static void times();
    static void longData();
    static void sameCellPassesItsFrameOnly();
    static void namesWithQuotationMarks();
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

void tst_FrameColumns::longData()
{
    QCOMPARE(FrameColumns::groupedData(QString()), QString());
    QCOMPARE(FrameColumns::groupedData(QStringLiteral("00 01 02 03 04 05 06 07")),
             QStringLiteral("00 01 02 03 04 05 06 07"));
    QCOMPARE(FrameColumns::groupedData(QStringLiteral("00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10")),
             QStringLiteral("00 01 02 03 04 05 06 07  08 09 0A 0B 0C 0D 0E 0F  10"));
    QCOMPARE(FrameColumns::dataLines(canFrame(0, 1, "30313233340A41FF7A")),
             QStringLiteral(" 0  30 31 32 33 34 0A 41 FF 01234.A.\n"
                            " 8  7A                      z"));
    QCOMPARE(FrameColumns::dataLines(canFrame(0, 1, "3031323334353637")).count(QLatin1Char('\n')), 0);
    QCOMPARE(FrameColumns::dataLines(canFrame(0, 1)), QString());
}

/// Each filter passes the frame that it was made of, and none of the others that differ from it in that cell.
void tst_FrameColumns::sameCellPassesItsFrameOnly()
{
    const FrameNames names({{0x123, QStringLiteral("Engine")}});
    std::vector<BusFrame> frames{canFrame(0, 0x123, "DEAD"),
                                 canFrame(-900, 0x124, "DEAE"),
                                 canFrame(1234567890123456789, 0x123, "", BusFrame::Extended),
                                 canFrame(BusFrame::NoTime, 0x23, "0A", BusFrame::Lin),
                                 canFrame(900, 0x23, "0A"),
                                 canFrame(901, 0x23, "0A", BusFrame::Fd),
                                 canFrame(901, 0x23, "00", BusFrame::Remote),
                                 canFrame(1, 0x23, "00", BusFrame::Error)};
    frames[0].direction = BusFrame::Sent;
    frames[1].direction = BusFrame::Refused;
    frames[2].channel = 3;
    BusFrameStore store;
    fill(store, frames);
    /// What the cell says; an identifier with its kind, an empty one of data with its reason, a time as it is.
    const auto cell = [&](FrameColumn column, qint64 row) {
        const BusFrame &frame = frames[std::size_t(row)];
        const QString text = FrameColumns::text(column, row, frame, names);
        return column == FrameColumn::Identifier ? QString::number(frameKey(frame.identifier, frame.flags))
               : column == FrameColumn::Data     ? text + QString::number(frame.is(BusFrame::Remote))
               : FrameColumns::isTime(column)    ? QString::number(frame.time)
                                                 : text;
    };
    const auto source = std::make_shared<NamesOnly>();
    for (int column = 0; column < FrameColumnCount; ++column) {
        const auto which = static_cast<FrameColumn>(column);
        for (qint64 row = 0; row < store.size(); ++row) {
            const QString text = FrameColumns::sameCell(which, store, row, names);
            FilterError error{};
            const std::optional<Filter> filter = Filter::parse(text, source, error);
            QVERIFY2(filter && !filter->passesAll(), qPrintable(text));
            for (qint64 other = 0; other < store.size(); ++other) {
                QVERIFY2(filter->passes(store, other) == (cell(which, row) == cell(which, other)),
                         qPrintable(QStringLiteral("%1: row %2").arg(text).arg(other)));
            }
        }
    }
}

void tst_FrameColumns::namesWithQuotationMarks()
{
    BusFrameStore store;
    fill(store, {canFrame(0, 1), canFrame(0, 2), canFrame(0, 3)});
    const FrameNames names({{1, QStringLiteral("a\"b")}, {2, QStringLiteral("a'b")}, {3, QStringLiteral("\"'")}});
    const auto filter = [&](qint64 row) {
        return FrameColumns::sameCell(FrameColumn::Name, store, row, names);
    };
    QCOMPARE(filter(0), QStringLiteral("name == 'a\"b'"));
    QCOMPARE(filter(1), QStringLiteral("name == \"a'b\""));
    QCOMPARE(filter(2), QStringLiteral("id == 0x003 and not ext and not lin"));
}

X9_PLAIN_TEST(tst_FrameColumns)
#include "tst_FrameColumns.moc"
