#include "lin/LINIdPairs.h"
#include "tests/support/TestProgram.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QtTest>

class tst_LINIdPairs : public QObject
{
    Q_OBJECT

private slots:
    static void makesTheWidgets();
    static void tellsTheTickedIdentifiers();
    static void enablesAll();
    static void wraps();
    static void showsUpperCaseHexadecimal_data();
    static void showsUpperCaseHexadecimal();
    static void takesTypedIdentifiers_data();
    static void takesTypedIdentifiers();
};

namespace {
/// Pairs in a window of their own.
struct Form
{
    Form()
        : grid(new QGridLayout(&window))
        , pairs(*grid, 3, 2)
    {
    }
    LINIdSpinBox *id(int number) const
    {
        return window.findChild<LINIdSpinBox *>(QStringLiteral("sbx_ID%1").arg(number));
    }
    QCheckBox *check(int number) const
    {
        return window.findChild<QCheckBox *>(QStringLiteral("chbx_ID%1").arg(number));
    }

    QWidget window;
    QGridLayout *grid;
    LINIdPairs pairs;
};
} // namespace

void tst_LINIdPairs::makesTheWidgets()
{
    const Form form;
    for (int number = 1; number <= 3; ++number) {
        QVERIFY(form.check(number) != nullptr);
        QVERIFY(!form.check(number)->isChecked());
        QCOMPARE(form.check(number)->text(), QStringLiteral("ID%1:").arg(number));
        QVERIFY(form.id(number) != nullptr);
        QCOMPARE(form.id(number)->minimum(), 0);
        QCOMPARE(form.id(number)->maximum(), 63);
        QCOMPARE(form.id(number)->value(), 0);
    }
    QCOMPARE(form.window.findChildren<QCheckBox *>().size(), 3);
    QCOMPARE(form.window.findChildren<QSpinBox *>().size(), 3);
    QCOMPARE(form.grid->itemAtPosition(0, 3)->widget(), form.id(2));
    QCOMPARE(form.grid->itemAtPosition(1, 0)->widget(), form.check(3));
}

void tst_LINIdPairs::tellsTheTickedIdentifiers()
{
    const Form form;
    form.id(1)->setValue(0x3F);
    form.id(2)->setValue(0x10);
    form.id(3)->setValue(0x3F);
    QCOMPARE(form.pairs.checkedIds(), QVector<quint8>());
    form.check(1)->setChecked(true);
    form.check(3)->setChecked(true);
    QCOMPARE(form.pairs.checkedIds(), QVector<quint8>({0x3F, 0x3F}));
    form.check(1)->setChecked(false);
    form.check(2)->setChecked(true);
    QCOMPARE(form.pairs.checkedIds(), QVector<quint8>({0x10, 0x3F}));
}

void tst_LINIdPairs::enablesAll()
{
    Form form;
    for (const bool isEnabled : {false, true}) {
        form.pairs.setEnabled(isEnabled);
        for (int number = 1; number <= 3; ++number) {
            QCOMPARE(form.id(number)->isEnabled(), isEnabled);
            QCOMPARE(form.check(number)->isEnabled(), isEnabled);
        }
    }
}

void tst_LINIdPairs::wraps()
{
    Form form;
    form.id(3)->setValue(63);
    form.id(3)->stepUp();
    QCOMPARE(form.id(3)->value(), 63);
    form.pairs.setWrapping(true);
    form.id(3)->stepUp();
    QCOMPARE(form.id(3)->value(), 0);
    form.id(3)->stepDown();
    QCOMPARE(form.id(3)->value(), 63);
}

void tst_LINIdPairs::showsUpperCaseHexadecimal_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0 << QStringLiteral("0");
    QTest::newRow("9") << 9 << QStringLiteral("9");
    QTest::newRow("10") << 10 << QStringLiteral("A");
    QTest::newRow("16") << 16 << QStringLiteral("10");
    QTest::newRow("47") << 47 << QStringLiteral("2F");
    QTest::newRow("63") << 63 << QStringLiteral("3F");
}

void tst_LINIdPairs::showsUpperCaseHexadecimal()
{
    QFETCH(int, value);
    QFETCH(QString, text);
    LINIdSpinBox box;
    box.setValue(value);
    QCOMPARE(box.text(), text);
    QCOMPARE(int(box.id()), value);
}

void tst_LINIdPairs::takesTypedIdentifiers_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("value");
    QTest::newRow("upper case") << QStringLiteral("3C") << QStringLiteral("3C") << 0x3C;
    QTest::newRow("lower case") << QStringLiteral("2b") << QStringLiteral("2B") << 0x2B;
    QTest::newRow("no digit") << QStringLiteral("1g2") << QStringLiteral("12") << 0x12;
    QTest::newRow("beyond the range") << QStringLiteral("40") << QStringLiteral("4") << 0x04;
}

void tst_LINIdPairs::takesTypedIdentifiers()
{
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(int, value);
    LINIdSpinBox box;
    box.show();
    box.selectAll();
    QTest::keyClicks(&box, typed);
    QCOMPARE(box.text(), shown);
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(box.text(), shown);
    QCOMPARE(int(box.id()), value);
}

X9_GUI_TEST(tst_LINIdPairs)
#include "tst_LINIdPairs.moc"
