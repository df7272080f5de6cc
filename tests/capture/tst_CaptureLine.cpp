#include "capture/CaptureLine.h"

#include "capture/CaptureFrames.h"
#include "tests/support/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextCodec>

namespace {

std::string_view toView(const QByteArray &bytes)
{
    return {bytes.constData(), std::size_t(bytes.size())};
}

/// "1AB standard 0 01A2": identifier, type, protocol, payload; "-" without a frame.
QString described(const std::optional<CaptureLine> &line)
{
    if (!line) {
        return QStringLiteral("-");
    }
    CaptureFrame frame;
    frame.idWord = line->idWord;
    frame.attributes = line->attributes;
    if (frame.length() != line->size || frame.isRemote()) {
        return QStringLiteral("broken");
    }
    const QByteArray data(reinterpret_cast<const char *>(line->data.data()), line->size);
    return QStringLiteral("%1 %2 %3 %4")
        .arg(QString::number(frame.id(), 16).toUpper(),
             frame.isExtended() ? QStringLiteral("extended") : QStringLiteral("standard"))
        .arg(frame.protocol())
        .arg(QString::fromLatin1(data.toHex().toUpper()));
}

/// A line of the program's own with these cells, the others of no importance.
QByteArray ownLine(const QByteArray &id, const QByteArray &protocol, const QByteArray &type, const QByteArray &data)
{
    return "7,time,stamp,direction," + id + ',' + protocol + ",format," + type + ",length," + data;
}

QString ownRead(const QByteArray &id, const QByteArray &protocol, const QByteArray &type, const QByteArray &data)
{
    return described(CaptureLine::own(toView(ownLine(id, protocol, type, data)), ","));
}

} // namespace

class tst_CaptureLine : public QObject
{
    Q_OBJECT

private slots:
    static void identifier_data();
    static void identifier();
    static void type_data();
    static void type();
    static void protocol_data();
    static void protocol();
    static void payload_data();
    static void payload();
    static void cells_data();
    static void cells();
    static void longCellsKeepTheirCharacters();
    static void identifierLikeTheToolkit();
};

void tst_CaptureLine::identifier_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QByteArray("1ab") << "1AB";
    QTest::newRow("prefix") << QByteArray("0x1AB") << "1AB";
    QTest::newRow("large prefix") << QByteArray("0X1aB") << "1AB";
    QTest::newRow("blanks") << QByteArray(" \t0x1AB\v\r ") << "1AB";
    QTest::newRow("plus") << QByteArray("+1AB") << "1AB";
    QTest::newRow("plus and prefix") << QByteArray(" +0x1AB") << "1AB";
    QTest::newRow("leading zeros") << QByteArray("0x0000000000000000000001AB") << "1AB";
    QTest::newRow("zero") << QByteArray("0") << "0";
    QTest::newRow("32 bits: 29 are kept") << QByteArray("FFFFFFFF") << "1FFFFFFF";
    QTest::newRow("33 bits") << QByteArray("100000000") << "-";
    QTest::newRow("72 bits") << QByteArray("1AB000000000000000") << "-";
    QTest::newRow("nothing") << QByteArray("") << "-";
    QTest::newRow("blank") << QByteArray(" ") << "-";
    QTest::newRow("prefix only") << QByteArray("0x") << "-";
    QTest::newRow("sign only") << QByteArray("+") << "-";
    QTest::newRow("minus") << QByteArray("-1") << "-";
    QTest::newRow("two prefixes") << QByteArray("0x0x1") << "-";
    QTest::newRow("no digit") << QByteArray("1AG") << "-";
    QTest::newRow("zero byte") << QByteArray("1A\0B", 4) << "-";
    QTest::newRow("suffix") << QByteArray("1ABh") << "-";
    QTest::newRow("blank inside") << QByteArray("1A B") << "-";
    QTest::newRow("no ASCII") << QByteArray("1A\xA0") << "-";
}

void tst_CaptureLine::identifier()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    QCOMPARE(ownRead(text, "CAN", "Extend", "").section(QLatin1Char(' '), 0, 0), expected);
}

void tst_CaptureLine::type_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<QString>("expected");
    const QString standard = QStringLiteral("standard");
    const QString extended = QStringLiteral("extended");
    QTest::newRow("Standard") << QByteArray("Standard") << standard;
    QTest::newRow("Extend") << QByteArray("Extend") << extended;
    QTest::newRow("Extended") << QByteArray("Extended") << extended;
    const QVector<QPair<QString, QString>> words = {{QStringLiteral("\u6807\u51c6\u5e27"), standard},
                                                    {QStringLiteral("\u6a19\u6e96\u5e40"), standard},
                                                    {QStringLiteral("\u6269\u5c55\u5e27"), extended},
                                                    {QStringLiteral("\u64f4\u5c55\u5e40"), extended}};
    for (const char *encoding : {"UTF-8", "GBK", "GB18030"}) {
        for (int i = 0; i < words.size(); ++i) {
            QTest::addRow("Chinese %d, %s", i, encoding)
                << QTextCodec::codecForName(encoding)->fromUnicode(words[i].first) << words[i].second;
        }
    }
    for (const char *other : {"", "standard", "EXTEND", " Standard", "Standard ", "Std", "Extende", "Extendedd",
                              "\xE6\xA0\x87\xE5\x87\x86\xE5\xB8", "\xB1\xEA\xD7\xBC"}) {
        QTest::addRow("other: %s", QByteArray(other).toPercentEncoding().constData()) << QByteArray(other) << QString();
    }
}

void tst_CaptureLine::type()
{
    QFETCH(QByteArray, word);
    QFETCH(QString, expected);
    QCOMPARE(ownRead("1", "CAN", word, "").section(QLatin1Char(' '), 1, 1), expected);
    const QByteArray foreign = "1,," + word + ",,";
    QCOMPARE(described(CaptureLine::foreign(toView(foreign), ",")).section(QLatin1Char(' '), 1, 1), expected);
}

void tst_CaptureLine::protocol_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<QString>("expected");
    QTest::newRow("CAN") << QByteArray("CAN") << "0";
    QTest::newRow("CANFD") << QByteArray("CANFD") << "1";
    QTest::newRow("CANFD Speed") << QByteArray("CANFD Speed") << "2";
    const QString chinese = QStringLiteral("CANFD\u52a0\u901f");
    for (const char *encoding : {"UTF-8", "GBK"}) {
        QTest::addRow("Chinese, %s", encoding) << QTextCodec::codecForName(encoding)->fromUnicode(chinese) << "2";
    }
    for (const char *other : {"", "canfd", "CANFD ", "CANFD speed", "CAN FD"}) {
        QTest::addRow("other: '%s'", other) << QByteArray(other) << "0";
    }
}

void tst_CaptureLine::protocol()
{
    QFETCH(QByteArray, word);
    QFETCH(QString, expected);
    QCOMPARE(ownRead("1", word, "Standard", "").section(QLatin1Char(' '), 2, 2), expected);
    // Another program's line says nothing about it.
    const QByteArray foreign = ownLine("1", word, "x", "") + ",1," + word + ",Standard," + word + ",";
    QCOMPARE(described(CaptureLine::foreign(toView(foreign), ",")).section(QLatin1Char(' '), 2, 2),
             QStringLiteral("0"));
}

void tst_CaptureLine::payload_data()
{
    QTest::addColumn<QByteArray>("cell");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing") << QByteArray() << "";
    QTest::newRow("one blank") << QByteArray(" ") << "";
    QTest::newRow("as saved") << QByteArray("01 A2 FF ") << "01A2FF";
    QTest::newRow("small letters, no blanks") << QByteArray("01a2ff") << "01A2FF";
    QTest::newRow("one digit") << QByteArray("7") << "07";
    QTest::newRow("odd: the first by itself") << QByteArray("012") << "0012";
    QTest::newRow("prefix: its zero counts") << QByteArray("0x12 34") << "001234";
    QTest::newRow("16 digits") << QByteArray("0123456789ABCDEF") << "0123456789ABCDEF";
    QTest::newRow("17 digits") << QByteArray("0123456789ABCDEF0") << "0123456789ABCDEF";
    QTest::newRow("15 digits") << QByteArray("123456789ABCDEF") << "0123456789ABCDEF";
    QTest::newRow("other letters") << QByteArray("xyz-12;\"34\"\0\x7F", 14) << "1234";
    QTest::newRow("UTF-8") << QByteArray("1\xE8\xBD\xAC\xF0\x9F\x9A\x97"
                                         "2")
                           << "12";
    QTest::newRow("GBK, second byte D") << QByteArray("1\xDE"
                                                      "D2")
                                        << "12";
    QTest::newRow("GBK, second byte D, pairs") << QByteArray("\xDE"
                                                             "D\xDE"
                                                             "D\xDE"
                                                             "D12")
                                               << "12";
    QTest::newRow("GB18030, four bytes") << QByteArray("1\x81\x30\x81\x31"
                                                       "2")
                                         << "12";
    QTest::newRow("UTF-8 but for its end: GBK, second byte F") << QByteArray("1\xE5\x80\xA0"
                                                                             "F2\xE9")
                                                               << "12";
    QTest::newRow("full before other characters") << QByteArray("0123456789ABCDEF\xFF") << "0123456789ABCDEF";
}

void tst_CaptureLine::payload()
{
    QFETCH(QByteArray, cell);
    QFETCH(QString, expected);
    QCOMPARE(ownRead("1", "CAN", "Standard", cell).section(QLatin1Char(' '), 3, 3), expected);
    const QByteArray foreign = "1,,Standard,," + cell;
    QCOMPARE(described(CaptureLine::foreign(toView(foreign), ",")).section(QLatin1Char(' '), 3, 3), expected);
}

void tst_CaptureLine::cells_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("separator");
    QTest::addColumn<QString>("own");
    QTest::addColumn<QString>("foreign");
    const QByteArray comma(",");
    const QByteArray blanks("     ");
    const QString none = QStringLiteral("-");
    QTest::newRow("no byte") << QByteArray() << comma << none << none;
    QTest::newRow("four cells") << QByteArray("1,Standard,x,1") << comma << none << none;
    QTest::newRow("five cells") << QByteArray("1,x,Standard,x,2") << comma << none << "1 standard 0 02";
    QTest::newRow("seven cells") << QByteArray("a,b,1,x,Standard,x,2") << comma << none << "1 standard 0 02";
    QTest::newRow("type in the last cell")
        << QByteArray("1,1,1,1,1,CAN,x,Standard") << comma << "1 standard 0 ADAD" << none;
    QTest::newRow("nine cells") << QByteArray("0,0,0,0,1,CAN,Standard,Standard,2") << comma << "1 standard 0 02"
                                << "1 standard 0 02";
    QTest::newRow("separator at the end")
        << QByteArray("0,0,0,0,1,CAN,x,Standard,1,22,") << comma << "1 standard 0 " << none;
    QTest::newRow("many cells") << QByteArray("0,0,0,0,1,CANFD,x,Extend") + QByteArray(100, ',') + "33" << comma
                                << "1 extended 1 33" << none;
    QTest::newRow("blanks") << QByteArray("0,0,0,0,1,CANFD Speed,x,Extend,1,01 02 ").replace(",", blanks) << blanks
                            << "1 extended 2 0102" << none;
    QTest::newRow("blank and separator at the end")
        << QByteArray("0,0,0,0,1,CANFD Speed,x,Extend,1,01 02 ,").replace(",", blanks) << blanks << "1 extended 2 "
        << none;
    QTest::newRow("six blanks: one belongs to the next cell")
        << QByteArray("2      1     x     Standard     x     2") << blanks << none << "1 standard 0 02";
    QTest::newRow("four blanks do not separate")
        << QByteArray("1    x    Standard    x    2") << blanks << none << none;
    QTest::newRow("ten blanks: an empty cell")
        << QByteArray("1          Standard          2") << blanks << none << "1 standard 0 02";
}

void tst_CaptureLine::cells()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, separator);
    QFETCH(QString, own);
    QFETCH(QString, foreign);
    QCOMPARE(described(CaptureLine::own(toView(line), toView(separator))), own);
    QCOMPARE(described(CaptureLine::foreign(toView(line), toView(separator))), foreign);
}

/// Text that is decoded in pieces must not be cut inside a character.
void tst_CaptureLine::longCellsKeepTheirCharacters()
{
    for (const int shift : {0, 1, 2, 3}) {
        const QByteArray before(shift, 'x');
        QByteArray gbk = before;
        QByteArray utf8 = before;
        for (int i = 0; i < 20000; ++i) {
            gbk += "\xDE"
                   "D";
            utf8 += "\xE8\xBD\xAC";
        }
        QCOMPARE(ownRead("1", "CAN", "Standard", gbk + "1234"), QStringLiteral("1 standard 0 1234"));
        QCOMPARE(ownRead("1", "CAN", "Standard", utf8 + "1234"), QStringLiteral("1 standard 0 1234"));
    }
}

void tst_CaptureLine::identifierLikeTheToolkit()
{
    QRandomGenerator random(5);
    const QByteArray alphabet("0123456789abcdefABCDEFxX+- \tgG");
    int numbers = 0;
    for (int i = 0; i < 200000; ++i) {
        QByteArray text(random.bounded(7), '\0');
        for (char &c : text) {
            c = alphabet.at(random.bounded(alphabet.size()));
        }
        bool isNumber = false;
        const quint32 number = QString::fromLatin1(text).toUInt(&isNumber, 16);
        const auto line = CaptureLine::own(toView(ownLine(text, "CAN", "Extend", "")), ",");
        if (line.has_value() != isNumber || (line && (line->idWord & 0x1FFFFFFFU) != (number & 0x1FFFFFFFU))) {
            QFAIL(text.constData());
        }
        numbers += isNumber ? 1 : 0;
    }
    QVERIFY(numbers > 1000);
}

X9_PLAIN_TEST(tst_CaptureLine)
#include "tst_CaptureLine.moc"
