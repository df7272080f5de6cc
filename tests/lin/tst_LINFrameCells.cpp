#include "lin/LINFrameCells.h"
#include "resources/Resources.h"
#include "tests/lin/LINTestFrames.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QTranslator>
#include <QtTest>

namespace {
QStringList cells(const CTableViewLIN::DataObject &frame, int number, quint8 checksumType)
{
    QStringList texts;
    for (int column = 0; column < LINColumnCount; ++column) {
        texts.append(linCell(frame, number, checksumType, static_cast<LINColumn>(column)));
    }
    return texts;
}
} // namespace

class tst_LINFrameCells : public QObject
{
    Q_OBJECT

private slots:
    static void rows_data();
    static void rows();
    static void states_data();
    static void states();
    static void columnTitles();
    static void inChinese();
};

void tst_LINFrameCells::rows_data()
{
    QTest::addColumn<CTableViewLIN::DataObject>("frame");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("row");

    CTableViewLIN::DataObject frame;
    frame.time = QStringLiteral("01:02:03.004");
    frame.direction = 1;
    frame.ID = 0x12;
    frame.PID = 0x92;
    frame.data = QByteArray::fromHex("01A2");
    frame.checksum = 0x5C;
    QTest::newRow("received") << frame << 1 << QStringLiteral("1|01:02:03.004|Revice|12[92]|2|01 A2 |5C|V1");
    frame.direction = 0;
    QTest::newRow("sent") << frame << 720000 << QStringLiteral("720000|01:02:03.004|Send|12[92]|2|01 A2 |5C|V1");
    frame.PID = 0xD2;
    QTest::newRow("a PID of another parity")
        << frame << 2 << QStringLiteral("2|01:02:03.004|Send|12[D2]|2|01 A2 |5C|V1");
    frame.ID = 0x0A;
    frame.PID = 0xCA;
    frame.data.clear();
    frame.checksum = 0x0F;
    QTest::newRow("no data") << frame << 3 << QStringLiteral("3|01:02:03.004|Send|0A[CA]|0||0F|Error state");
    frame.data = QByteArray::fromHex("00ff7f800a0bfe10");
    QTest::newRow("eight bytes") << frame << 4
                                 << QStringLiteral(
                                        "4|01:02:03.004|Send|0A[CA]|8|00 FF 7F 80 0A 0B FE 10 |0F|Error state");
}

void tst_LINFrameCells::rows()
{
    QFETCH(CTableViewLIN::DataObject, frame);
    QFETCH(int, number);
    QTEST(cells(frame, number, LINChecksumClassic).join(QLatin1Char('|')), "row");
}

/// Identifier 3C with eight zeros: classic FF, enhanced C3.
void tst_LINFrameCells::states_data()
{
    QTest::addColumn<int>("checksum");
    QTest::addColumn<int>("checksumType");
    QTest::addColumn<QString>("text");

    QTest::newRow("classic as set") << 0xFF << 0 << QStringLiteral("V1");
    QTest::newRow("classic, set to enhanced") << 0xFF << 1 << QStringLiteral("Error checksum(V1)");
    QTest::newRow("enhanced as set") << 0xC3 << 1 << QStringLiteral("V2");
    QTest::newRow("enhanced, set to classic") << 0xC3 << 0 << QStringLiteral("Error checksum(V2)");
    QTest::newRow("neither, set to classic") << 0xC4 << 0 << QStringLiteral("Error state");
    QTest::newRow("neither, set to enhanced") << 0x00 << 1 << QStringLiteral("Error state");
}

void tst_LINFrameCells::states()
{
    QFETCH(int, checksum);
    QFETCH(int, checksumType);
    CTableViewLIN::DataObject frame = linFrame(0x3C, "0000000000000000");
    frame.checksum = static_cast<quint32>(checksum);
    QTEST(linCell(frame, 1, static_cast<quint8>(checksumType), LINColumn::State), "text");
}

void tst_LINFrameCells::columnTitles()
{
    QCOMPARE(linColumnTitles().join(QLatin1Char('|')),
             QStringLiteral("No.|System Time|Direction|ID[PID]|Length|Data(Hex)|Check(Hex)|State"));
}

void tst_LINFrameCells::inChinese()
{
    initResources();
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/Language/CN.qm")));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(linColumnTitles().join(QLatin1Char('|')),
             QString::fromUtf8("No.|系统时间|方向|ID[PID]|长度|数据(Hex)|校验(Hex)|状态"));
    CTableViewLIN::DataObject frame = linFrame(0x12, "01A2");
    frame.checksum = 0xC9;
    QCOMPARE(cells(frame, 1, LINChecksumClassic).join(QLatin1Char('|')),
             QString::fromUtf8("1|12:34:56.789|接收|12[92]|2|01 A2 |C9|校验和错误(V2)"));
    frame.direction = CTableViewLIN::DataObject::Sent;
    frame.checksum = 0;
    QCOMPARE(cells(frame, 1, LINChecksumClassic).join(QLatin1Char('|')),
             QString::fromUtf8("1|12:34:56.789|发送|12[92]|2|01 A2 |00|状态错误"));
    QCoreApplication::removeTranslator(&translator);
}

X9_CORE_TEST(tst_LINFrameCells)
#include "tst_LINFrameCells.moc"
