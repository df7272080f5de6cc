#include "lin/LINFrameModel.h"
#include "tests/lin/LINTestFrames.h"
#include "tests/support/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

namespace {
constexpr quint8 Classic = 0;
constexpr quint8 Enhanced = 1;

QString row(const LINFrameModel &model, int number)
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column) {
        texts.append(model.index(number, column).data().toString());
    }
    return texts.join(QLatin1Char('|'));
}

QStringList identifiers(const LINFrameModel &model)
{
    QStringList texts;
    for (int i = 0; i < model.rowCount(); ++i) {
        texts.append(model.cellText(i, 3).left(2));
    }
    return texts;
}
} // namespace

class tst_LINFrameModel : public QObject
{
    Q_OBJECT

private slots:
    static void headers();
    static void appends();
    static void appendsABatchAtOnce();
    static void judgesTheStateWhenAdded();
    static void replacesTheFirstRowOfAnIdentifier();
    static void appendsAnIdentifierThatIsNotThere();
    static void clears();
    static void isReadOnly();
    static void hasNoCellsBeyondItsEdges();
};

void tst_LINFrameModel::headers()
{
    const LINFrameModel model;
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 8);
    QCOMPARE(model.headerData(5, Qt::Horizontal).toString(), QStringLiteral("Data(Hex)"));
    QCOMPARE(model.headerData(7, Qt::Horizontal).toString(), QStringLiteral("State"));
    QVERIFY(!model.headerData(8, Qt::Horizontal).isValid());
    QVERIFY(!model.headerData(-1, Qt::Horizontal).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
}

void tst_LINFrameModel::appends()
{
    LINFrameModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.append(linFrame(0x12, "01A2"), Classic);
    model.append(linFrame(0x12, ""), Classic);
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(row(model, 0), QStringLiteral("1|12:34:56.789|Revice|12[92]|2|01 A2 |5C|V1"));
    QCOMPARE(row(model, 1), QStringLiteral("2|12:34:56.789|Revice|12[92]|0||FF|V1"));
    QCOMPARE(model.headerData(1, Qt::Vertical).toInt(), 2);
    QCOMPARE(model.index(0, 7).data(Qt::ToolTipRole).toString(), QStringLiteral("V1"));
    QCOMPARE(model.index(0, 5).data(Qt::EditRole).toString(), QStringLiteral("01 A2 "));
}

void tst_LINFrameModel::appendsABatchAtOnce()
{
    LINFrameModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.append(QVector<CTableViewLIN::DataObject>(), Classic);
    QCOMPARE(inserted.count(), 0);
    model.append(linFrame(0x00, ""), Classic);
    model.append({linFrame(0x01, ""), linFrame(0x02, ""), linFrame(0x03, "")}, Classic);
    QCOMPARE(inserted.count(), 2);
    QCOMPARE(inserted.at(1).at(1).toInt(), 1);
    QCOMPARE(inserted.at(1).at(2).toInt(), 3);
    QCOMPARE(identifiers(model).join(QLatin1Char(' ')), QStringLiteral("00 01 02 03"));
    QCOMPARE(model.cellText(3, 0), QStringLiteral("4"));
}

/// A row keeps the state it was added with when the checksum type is another one for the rows after it.
void tst_LINFrameModel::judgesTheStateWhenAdded()
{
    LINFrameModel model;
    const CTableViewLIN::DataObject frame = linFrame(0x3C, "0000000000000000");
    model.append(frame, Classic);
    model.append(frame, Enhanced);
    QCOMPARE(model.cellText(0, 7), QStringLiteral("V1"));
    QCOMPARE(model.cellText(1, 7), QStringLiteral("Error checksum(V1)"));
    QCOMPARE(model.replace(frame, Enhanced), 0);
    QCOMPARE(model.cellText(0, 7), QStringLiteral("Error checksum(V1)"));
}

void tst_LINFrameModel::replacesTheFirstRowOfAnIdentifier()
{
    LINFrameModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.append({linFrame(0x01, "01"), linFrame(0x12, "02"), linFrame(0x12, "03")}, Classic);
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    CTableViewLIN::DataObject frame = linFrame(0x12, "0405");
    frame.time = QStringLiteral("23:59:59.999");
    frame.direction = CTableViewLIN::DataObject::Sent;
    frame.PID = 0xD2; // "ID[PID]" stays
    QCOMPARE(model.replace(frame, Classic), 1);
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(row(model, 0), QStringLiteral("1|12:34:56.789|Revice|01[C1]|1|01 |FE|V1"));
    QCOMPARE(row(model, 1), QStringLiteral("2|23:59:59.999|Send|12[92]|2|04 05 |F6|V1"));
    QCOMPARE(row(model, 2), QStringLiteral("3|12:34:56.789|Revice|12[92]|1|03 |FC|V1"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex().row(), 1);
    QCOMPARE(changed.at(0).at(1).toModelIndex(), model.index(1, 7));
}

void tst_LINFrameModel::appendsAnIdentifierThatIsNotThere()
{
    LINFrameModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.replace(linFrame(0x3F, "01"), Classic), 0);
    QCOMPARE(model.replace(linFrame(0x00, "02"), Classic), 1);
    QCOMPARE(model.replace(linFrame(0x3F, "03"), Classic), 0);
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(row(model, 0), QStringLiteral("1|12:34:56.789|Revice|3F[BF]|1|03 |FC|V1"));
}

void tst_LINFrameModel::clears()
{
    LINFrameModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.clear();
    model.append({linFrame(0x01, ""), linFrame(0x02, "")}, Classic);
    model.clear();
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 8);
    QCOMPARE(model.replace(linFrame(0x02, "33"), Classic), 0);
    QCOMPARE(model.cellText(0, 0), QStringLiteral("1"));
}

void tst_LINFrameModel::isReadOnly()
{
    LINFrameModel model;
    model.append(linFrame(0x12, "01A2"), Classic);
    const QString before = row(model, 0);
    const QModelIndex cell = model.index(0, 5);
    QVERIFY(!model.setData(cell, QStringLiteral("x")));
    QVERIFY(!model.setItemData(cell, {{Qt::EditRole, QStringLiteral("x")}}));
    QVERIFY(!model.setHeaderData(0, Qt::Horizontal, QStringLiteral("x")));
    QVERIFY(!model.insertRows(0, 1));
    QVERIFY(!model.insertColumns(0, 1));
    QVERIFY(!model.removeColumns(0, 1));
    QVERIFY(!model.dropMimeData(nullptr, Qt::CopyAction, 0, 0, QModelIndex()));
    QVERIFY(!model.flags(cell).testFlag(Qt::ItemIsEditable));
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(row(model, 0), before);
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.itemData(cell).value(Qt::DisplayRole).toString(), QStringLiteral("01 A2 "));
    QVERIFY(!cell.data(Qt::CheckStateRole).isValid());
    QVERIFY(!model.removeRows(0, 1));
    QCOMPARE(model.rowCount(), 1);
}

void tst_LINFrameModel::hasNoCellsBeyondItsEdges()
{
    LINFrameModel model;
    model.append(linFrame(0x12, "01A2"), Classic);
    for (const auto &[r, c] : {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 8}}) {
        QVERIFY(!model.index(r, c).isValid());
        QVERIFY(model.cellText(r, c).isEmpty());
    }
    QVERIFY(!model.index(0, 0, model.index(0, 0)).isValid());
    QVERIFY(!model.data(QModelIndex()).isValid());
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
    QCOMPARE(model.columnCount(model.index(0, 0)), 0);
}

X9_CORE_TEST(tst_LINFrameModel)
#include "tst_LINFrameModel.moc"
