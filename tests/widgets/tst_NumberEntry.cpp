#include "widgets/NumberEntry.h"

#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

Q_DECLARE_METATYPE(NumberEntry)

namespace {
/// A window with one field, which has the keyboard.
template<typename Field>
struct Window
{
    Window()
    {
        (new QVBoxLayout(&widget))->addWidget(field);
        widget.show();
        QApplication::setActiveWindow(&widget);
        field->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&widget) && field->hasFocus(); }
    void pasteOver(const QString &text) const
    {
        field->selectAll();
        paste(text);
    }
    void paste(const QString &text) const
    {
        QApplication::clipboard()->setText(text);
        QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
    }

    QWidget widget;
    Field *field = new Field;
};

void addPattern(QLineEdit *field, const QString &pattern)
{
    field->setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), field));
}
} // namespace

class tst_NumberEntry : public QObject
{
    Q_OBJECT

private slots:
    static void cleans_data();
    static void cleans();
    static void cursorStaysBetweenItsCharacters_data();
    static void cursorStaysBetweenItsCharacters();
    static void fieldTakesPastedNumbers();
    static void fieldKeepsRefusing();
    static void fieldWithoutValidator();
    static void typedPrefix();
    static void plainDigitsCanBeUndone();
    static void spinBoxes_data();
    static void spinBoxes();
    static void spinBoxKeepsItsSuffixAndRange();
    static void restricts();
};

void tst_NumberEntry::cleans_data()
{
    QTest::addColumn<NumberEntry>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cleaned");
    const auto row = [](const char *name, NumberEntry kind, const char *text, const char *cleaned) {
        QTest::newRow(name) << kind << QString::fromUtf8(text) << QString::fromUtf8(cleaned);
    };
    row("decimal", NumberEntry::Decimal, "9600", "9600");
    row("decimal, blanks", NumberEntry::Decimal, "\t9 600 \r\n", "9600");
    row("decimal, no-break space", NumberEntry::Decimal, "9\u00a0600\u200b\ufeff", "9600");
    row("decimal, other text stays", NumberEntry::Decimal, "0x9.6k ", "0x9.6k");
    row("hex", NumberEntry::Hex, " 0x1F\n", "1F");
    row("hex, capital X", NumberEntry::Hex, "0X1f", "1f");
    row("hex, behind digits", NumberEntry::Hex, "010x1F", "011F");
    row("hex, blanks inside", NumberEntry::Hex, "0 x 1 F", "1F");
    row("hex, 0x alone", NumberEntry::Hex, "0x", "");
    row("hex, x typed behind a number", NumberEntry::Hex, "10x", "10x");
    row("hex, x of its own", NumberEntry::Hex, "x1F", "x1F");
    row("hex, empty", NumberEntry::Hex, "", "");
    row("prefixed", NumberEntry::PrefixedHex, " 0x1F\n", "0x1F");
    row("prefixed, without", NumberEntry::PrefixedHex, "1 F ", "1F");
    row("prefixed, twice", NumberEntry::PrefixedHex, "0x0x1F", "0x1F");
    row("prefixed, alone", NumberEntry::PrefixedHex, "0x", "0x");
    row("bytes", NumberEntry::HexBytes, "11 22\n", "11 22 ");
    row("bytes, lines", NumberEntry::HexBytes, "11\t22\r\n33", "11 22  33");
    row("bytes, prefixes", NumberEntry::HexBytes, "0x11 0X22 0x33", "11 22 33");
    row("bytes, without blanks", NumberEntry::HexBytes, "0x110x22", "1122");
    row("bytes, single digits", NumberEntry::HexBytes, "0x1 0x2 0xA", "01 02 0A");
    row("bytes, comma stays", NumberEntry::HexBytes, "0x11,0x22", "11,22");
    row("bytes, 0x typed", NumberEntry::HexBytes, "0x", "");
    row("bytes, 0x typed behind a byte", NumberEntry::HexBytes, "11 0x", "11 ");
    row("bytes, x typed behind digits", NumberEntry::HexBytes, "110x", "110x");
}

void tst_NumberEntry::cleans()
{
    QFETCH(NumberEntry, kind);
    QFETCH(QString, text);
    int cursor = text.size();
    const QString cleaned = cleanedEntry(text, kind, cursor);
    QTEST(cleaned, "cleaned");
    QCOMPARE(cursor, cleaned.size());
}

void tst_NumberEntry::cursorStaysBetweenItsCharacters_data()
{
    QTest::addColumn<NumberEntry>("kind");
    QTest::addColumn<QString>("text"); // the cursor is at the bar
    QTest::addColumn<QString>("cleaned");
    QTest::newRow("in front") << NumberEntry::Hex << "| 0x1F"
                              << "|1F";
    QTest::newRow("in a prefix") << NumberEntry::Hex << "0|x1F"
                                 << "|1F";
    QTest::newRow("in the middle") << NumberEntry::Hex << " 0x1|F "
                                   << "1|F";
    QTest::newRow("before blanks") << NumberEntry::Decimal << "12| \n"
                                   << "12|";
    QTest::newRow("between bytes") << NumberEntry::HexBytes << "0x1 |0x22 33"
                                   << "01 |22 33";
}

void tst_NumberEntry::cursorStaysBetweenItsCharacters()
{
    QFETCH(NumberEntry, kind);
    QFETCH(QString, text);
    int cursor = text.indexOf(QLatin1Char('|'));
    QString cleaned = cleanedEntry(text.remove(cursor, 1), kind, cursor);
    QTEST(cleaned.insert(cursor, QLatin1Char('|')), "cleaned");
}

void tst_NumberEntry::fieldTakesPastedNumbers()
{
    Window<QLineEdit> window;
    addPattern(window.field, QStringLiteral("[0-9a-fA-F]{0,4}"));
    cleanEntry(window.field, NumberEntry::Hex);
    QVERIFY(window.isReady());
    const QSignalSpy edited(window.field, &QLineEdit::textEdited);
    window.pasteOver(QStringLiteral(" 0x1F\n"));
    QCOMPARE(window.field->text(), QStringLiteral("1F"));
    QCOMPARE(window.field->cursorPosition(), 2);
    QCOMPARE(edited.size(), 1);
    QCOMPARE(edited.first().first().toString(), QStringLiteral("1F"));
    window.field->setCursorPosition(1);
    window.paste(QStringLiteral("0xAB "));
    QCOMPARE(window.field->text(), QStringLiteral("1ABF"));
    QCOMPARE(window.field->cursorPosition(), 3);
    window.field->setText(QStringLiteral("0x2 "));
    QCOMPARE(window.field->text(), QStringLiteral("2"));
}

void tst_NumberEntry::fieldKeepsRefusing()
{
    Window<QLineEdit> window;
    addPattern(window.field, QStringLiteral("[0-9]{0,4}"));
    cleanEntry(window.field, NumberEntry::Decimal);
    QVERIFY(window.isReady());
    window.field->setText(QStringLiteral("96"));
    for (const char *text : {"12345", "9600 bps", "1F", "-1"}) {
        window.pasteOver(QString::fromLatin1(text));
        QCOMPARE(window.field->text(), QStringLiteral("96"));
    }
    QVERIFY(window.field->hasAcceptableInput());
}

void tst_NumberEntry::fieldWithoutValidator()
{
    Window<QLineEdit> window;
    cleanEntry(window.field, NumberEntry::Hex);
    QVERIFY(window.isReady());
    window.pasteOver(QStringLiteral(" 0x1F no\n"));
    QCOMPARE(window.field->text(), QStringLiteral("1Fno"));
}

void tst_NumberEntry::typedPrefix()
{
    Window<QLineEdit> window;
    addPattern(window.field, QStringLiteral("[0-9a-fA-F\\s]*"));
    cleanEntry(window.field, NumberEntry::Hex);
    QVERIFY(window.isReady());
    QTest::keyClicks(window.field, QStringLiteral("0x1F"));
    QCOMPARE(window.field->text(), QStringLiteral("1F"));
    QTest::keyClicks(window.field, QStringLiteral("0x"));
    QCOMPARE(window.field->text(), QStringLiteral("1F0"));
}

void tst_NumberEntry::plainDigitsCanBeUndone()
{
    Window<QLineEdit> window;
    cleanEntry(window.field, NumberEntry::Hex);
    QVERIFY(window.isReady());
    QTest::keyClicks(window.field, QStringLiteral("12"));
    window.field->undo();
    QCOMPARE(window.field->text(), QString());
}

void tst_NumberEntry::spinBoxes_data()
{
    QTest::addColumn<int>("base");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::newRow("decimal") << 10 << "9600" << 9600;
    QTest::newRow("decimal, blank behind") << 10 << "9600 " << 9600;
    QTest::newRow("decimal, lines and blanks") << 10 << "\n9 600\r\n" << 9600;
    QTest::newRow("hexadecimal") << 16 << "25aF" << 0x25AF;
    QTest::newRow("hexadecimal, 0x") << 16 << " 0x25AF\n" << 0x25AF;
    QTest::newRow("hexadecimal, blanks") << 16 << "0X25 AF" << 0x25AF;
    QTest::newRow("refused") << 10 << "9600 bps" << 5;
    QTest::newRow("out of range") << 10 << "123456 " << 5;
}

void tst_NumberEntry::spinBoxes()
{
    QFETCH(int, base);
    QFETCH(QString, text);
    QFETCH(int, value);
    Window<QSpinBox> window;
    window.field->setDisplayIntegerBase(base);
    window.field->setRange(0, 65535);
    window.field->setValue(5);
    cleanSpinBoxes(&window.widget);
    QVERIFY(window.isReady());
    window.pasteOver(text);
    QCOMPARE(window.field->value(), value);
    QCOMPARE(window.field->text().toLower(), QString::number(value, base));
}

void tst_NumberEntry::spinBoxKeepsItsSuffixAndRange()
{
    Window<QSpinBox> window;
    window.field->setSuffix(QStringLiteral(" ms"));
    window.field->setRange(1, 500);
    cleanSpinBoxes(&window.widget);
    QVERIFY(window.isReady());
    window.pasteOver(QStringLiteral("2 0\n"));
    QCOMPARE(window.field->text(), QStringLiteral("20 ms"));
    QCOMPARE(window.field->value(), 20);
    window.pasteOver(QStringLiteral("501 "));
    QCOMPARE(window.field->value(), 20);
    QTest::keyClick(window.field, Qt::Key_Up);
    QCOMPARE(window.field->text(), QStringLiteral("21 ms"));
}

/// What a paste brings along is taken out before the pattern is asked.
void tst_NumberEntry::restricts()
{
    QLineEdit field;
    restrictEntry(&field, NumberEntry::Hex, QStringLiteral("[A-F0-9]{1,2}"));
    QTest::keyClicks(&field, QStringLiteral("0x1G 23"));
    QCOMPARE(field.text(), QStringLiteral("12"));
}

X9_GUI_TEST(tst_NumberEntry)
#include "tst_NumberEntry.moc"
