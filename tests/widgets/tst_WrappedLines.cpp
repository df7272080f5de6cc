#include "tests/support/TestProgram.h"
#include "widgets/WrappedLines.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QtTest>

namespace {
const QString Ellipsis = QString(QChar(0x2026));

qreal widthOf(const QString &line)
{
    return QFontMetricsF(QGuiApplication::font()).horizontalAdvance(line);
}

/// Pixels in which the line has room, and nothing longer.
int roomFor(const QString &line)
{
    return static_cast<int>(widthOf(line)) + 1;
}
} // namespace

class tst_WrappedLines : public QObject
{
    Q_OBJECT

private slots:
    static void fittingLinesStay_data();
    static void fittingLinesStay();
    static void breaksBetweenWords();
    static void breaksLongWords();
    static void cutsAtTheLastLine_data();
    static void cutsAtTheLastLine();
    static void narrowerThanACharacter();
};

void tst_WrappedLines::fittingLinesStay_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("lines"); // with "|" between them
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("one") << "one"
                         << "one";
    QTest::newRow("blanks") << "  one  "
                            << "  one  ";
    QTest::newRow("three") << "one\ntwo\nthree"
                           << "one|two|three";
    QTest::newRow("empty lines") << "\none\n\n"
                                 << "|one||";
    QTest::newRow("carriage returns") << "one\r\ntwo"
                                      << "one|two";
    QTest::newRow("Chinese") << "设备已打开\n设备"
                             << "设备已打开|设备";
}

void tst_WrappedLines::fittingLinesStay()
{
    QFETCH(QString, text);
    QTEST(wrappedLines(text, QGuiApplication::font(), 1000).join(QLatin1Char('|')), "lines");
}

void tst_WrappedLines::breaksBetweenWords()
{
    const QString text = QStringLiteral("several words here\nand there");
    const QStringList lines = wrappedLines(text, QGuiApplication::font(), roomFor(QStringLiteral("several words")));
    QCOMPARE(lines,
             QStringList({QStringLiteral("several words"), QStringLiteral("here"), QStringLiteral("and there")}));
}

void tst_WrappedLines::breaksLongWords()
{
    const QString word(500, QLatin1Char('m'));
    const int room = roomFor(QString(10, QLatin1Char('m')));
    const QStringList lines = wrappedLines(word, QGuiApplication::font(), room);
    QVERIFY(lines.size() >= 50);
    QCOMPARE(lines.join(QString()), word);
    for (const QString &line : lines) {
        QVERIFY(widthOf(line) <= room);
    }
}

void tst_WrappedLines::cutsAtTheLastLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("maxLines");
    QTest::addColumn<QString>("lines"); // with "|" between them
    QTest::newRow("fits") << "one\ntwo\nthree" << 3 << "one|two|three";
    QTest::newRow("two") << "one\ntwo\nthree" << 2 << "one|two…";
    QTest::newRow("one") << "one\ntwo\nthree" << 1 << "one…";
    QTest::newRow("empty last") << "one\n\nthree" << 2 << "one|…";
}

void tst_WrappedLines::cutsAtTheLastLine()
{
    QFETCH(QString, text);
    QFETCH(int, maxLines);
    QTEST(wrappedLines(text, QGuiApplication::font(), 1000, maxLines).join(QLatin1Char('|')), "lines");

    const QString word(500, QLatin1Char('m'));
    const int room = roomFor(QString(10, QLatin1Char('m')));
    const QStringList lines = wrappedLines(word, QGuiApplication::font(), room, maxLines);
    QCOMPARE(lines.size(), maxLines);
    QVERIFY(lines.last().endsWith(Ellipsis));
    QVERIFY(widthOf(lines.last()) <= room);
}

void tst_WrappedLines::narrowerThanACharacter()
{
    const QStringList lines = wrappedLines(QStringLiteral("mmm"), QGuiApplication::font(), 1);
    QCOMPARE(lines.join(QString()), QStringLiteral("mmm"));
}

X9_GUI_TEST(tst_WrappedLines)
#include "tst_WrappedLines.moc"
