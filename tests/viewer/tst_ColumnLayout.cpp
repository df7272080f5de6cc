#include "tests/support/TestProgram.h"
#include "viewer/core/ColumnLayout.h"

#include <QtTest>

namespace {

/// Shown columns from left to right, as numbers of FrameColumn.
QString shown(const ColumnLayout &layout)
{
    QStringList list;
    for (const ColumnLayout::Column &column : layout.columns()) {
        if (column.isShown) {
            list.append(QString::number(static_cast<int>(column.column)));
        }
    }
    return list.join(QLatin1Char(' '));
}

const char *const Standard = "0 2 3 6 7 8 9 10 11 12";

} // namespace

class tst_ColumnLayout : public QObject
{
    Q_OBJECT

private slots:
    static void standard();
    static void everyColumnIsThereOnce();
    static void comesBackFromJson();
    static void damagedJson_data();
    static void damagedJson();
};

void tst_ColumnLayout::standard()
{
    QCOMPARE(shown({}), QLatin1String(Standard));
    QCOMPARE(int(ColumnLayout().columns().size()), FrameColumnCount);
}

void tst_ColumnLayout::everyColumnIsThereOnce()
{
    const ColumnLayout layout(
        {{FrameColumn::Data, 5, true}, {FrameColumn::Number, 1e9, true}, {FrameColumn::Data, 7, false}});
    QCOMPARE(shown(layout), QStringLiteral("12 0"));
    QCOMPARE(int(layout.columns().size()), FrameColumnCount);
    QCOMPARE(layout.columns()[0].width, 5.0);
    QCOMPARE(layout.columns()[1].width, double(ColumnLayout::MaxWidth));
}

void tst_ColumnLayout::comesBackFromJson()
{
    const ColumnLayout layout({{FrameColumn::Data, 60.5, true}, {FrameColumn::Absolute, 31, true}});
    QVERIFY(ColumnLayout::fromJson(layout.toJson()) == layout);
    QVERIFY(layout != ColumnLayout());
}

void tst_ColumnLayout::damagedJson_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("expected");
    const QString all = QLatin1String(Standard);
    QTest::newRow("nothing") << QByteArray() << all;
    QTest::newRow("no JSON") << QByteArray("@ByteArray(\x01") << all;
    QTest::newRow("other things") << QByteArray(R"([1, {}, "data", {"column": 3}])") << all;
    QTest::newRow("none is shown") << QByteArray(R"([{"column": "data", "shown": false}])") << all;
    QTest::newRow("one unknown") << QByteArray(R"([{"column": "x", "shown": true}, {"column": "data"}])")
                                 << QStringLiteral("12");
    QTest::newRow("wrong width") << QByteArray(R"([{"column": "data", "width": -1e300}])") << QStringLiteral("12");
}

void tst_ColumnLayout::damagedJson()
{
    QFETCH(const QByteArray, json);
    QFETCH(const QString, expected);
    const ColumnLayout layout = ColumnLayout::fromJson(json);
    QCOMPARE(shown(layout), expected);
    for (const ColumnLayout::Column &column : layout.columns()) {
        QVERIFY(column.width >= ColumnLayout::MinWidth && column.width <= ColumnLayout::MaxWidth);
    }
}

X9_PLAIN_TEST(tst_ColumnLayout)
#include "tst_ColumnLayout.moc"
