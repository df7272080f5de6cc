#include "CaptureTestData.h"

#include "capture/CTableViewCAN.h"
#include "tests/support/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>
#include <QToolTip>
#include <QTranslator>
#include <QWheelEvent>

#include <limits>

using namespace CaptureTestData;

namespace {

QVector<FrameRecord> frames(int count, quint32 firstId = 0)
{
    QVector<FrameRecord> result;
    for (int i = 0; i < count; ++i) {
        result.append(frame(firstId + static_cast<quint32>(i)));
    }
    return result;
}

/// The table under test with its parts at hand, in a window that lets it have any size. Its own timer only fires where
/// a test runs the event loop.
struct Table
{
    QWidget window;
    CTableViewCAN widget{&window};
    QTableView *view = widget.findChild<QTableView *>(QStringLiteral("frameView"));
    QScrollBar *bar = widget.findChild<QScrollBar *>(QStringLiteral("frameScrollBar"));
    QStandardItemModel *model = qobject_cast<QStandardItemModel *>(view->model());

    /// Shown with room for that many rows and a few pixels more.
    explicit Table(int rows = 4)
    {
        window.resize(1100, 700);
        setRows(rows);
        window.show();
        setRows(rows);
    }

    void setRows(int rows) { widget.resize(1000, view->horizontalHeader()->height() + rows * 25 + 7); }
    void show(const QVector<FrameRecord> &added)
    {
        widget.append(added);
        widget.refresh();
    }
    QString cell(int row, int column) const { return model->index(row, column).data().toString(); }
    QStringList column(int column) const
    {
        QStringList texts;
        for (int row = 0; row < model->rowCount(); ++row) {
            texts.append(cell(row, column));
        }
        return texts;
    }
    QStringList numbers() const { return column(0); }
    QScrollBar *columnsBar() const { return view->horizontalScrollBar(); }
    /// Whether the view shows all of its last row.
    bool isLastRowWhole() const
    {
        return view->visualRect(model->index(model->rowCount() - 1, 0)).bottom() < view->viewport()->height();
    }
    /// Of the cell under the mouse; empty when it has none.
    QString toolTip(int row, int column) const
    {
        const QPoint place = view->visualRect(model->index(row, column)).center();
        QHelpEvent event(QEvent::ToolTip, place, view->viewport()->mapToGlobal(place));
        return QApplication::sendEvent(view->viewport(), &event) && event.isAccepted() ? QToolTip::text() : QString();
    }
    static void wheel(QWidget *target, int delta) { wheel(target, QPoint(0, delta)); }
    static void wheel(QWidget *target, QPoint delta, Qt::ScrollPhase phase = Qt::NoScrollPhase)
    {
        const QPointF place = target->rect().center();
        QWheelEvent event(place, target->mapToGlobal(place.toPoint()), QPoint(), delta, Qt::NoButton, Qt::NoModifier,
                          phase, false);
        QApplication::sendEvent(target, &event);
        QVERIFY(event.isAccepted());
    }
};

/// Answers every text in angle brackets, and notes what it was asked.
class BracketTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        if (qstrcmp(context, "CTableViewCAN") != 0) {
            return {};
        }
        return QLatin1Char('<') + QString::fromLatin1(text) + QLatin1Char('>');
    }
    bool isEmpty() const override { return false; }
};

/// A text file's content, whatever ends its lines.
QByteArray textOf(const QString &path)
{
    return fileContent(path).replace("\r\n", "\n");
}
} // namespace

class tst_CTableViewCAN : public QObject
{
    Q_OBJECT

private slots:
    void init();

    static void layoutAndColumns();
    static void viewSettings();
    static void itemsCarryFontAndHeight();
    void textsAreTranslated();

    static void cellsOfAReceivedFrame();
    static void cellsOfASentFrame();
    static void longAndEmptyPayload();
    static void extendedRemoteFrame();

    static void fullCacheIgnoresFrames();
    static void batchEndsAtTheCacheSize();
    static void queueCountsForTheCache();
    static void filterHidesIdentifiers();
    static void filterInABatch();
    static void filterInABatchAndTheCache();

    static void clearLeavesTheQueue();
    static void clearEmptiesEverything();
    static void cacheSizeCutsTheNewest();
    static void cacheSizeZeroAndNegative();

    static void ratesEverySecondRefresh();
    static void timerRefreshes();

    static void scrollBarRange();
    static void autoScroll();
    static void withoutAutoScroll();
    static void scrollBarMovesTheRows();
    static void scrollBarArrows();
    static void wheelMovesOneRow_data();
    static void wheelMovesOneRow();
    static void wheelOnTheScrollBar();
    static void wheelSidewaysMovesTheColumns_data();
    static void wheelSidewaysMovesTheColumns();
    static void trackpadWithoutMovement();
    static void lastRowIsWholeAboveAScrollBar();
    static void lowerTableKeepsItsEnd();
    static void cutCellsHaveToolTips();
    static void doubleClickFitsAColumn_data();
    static void doubleClickFitsAColumn();
    static void resizeShowsMoreRows();
    static void resizeAtTheEndMovesTheFirstRow();
    static void resizeBelowOneRow();
    static void onlyVisibleRowsAreItems();
    static void oneSignalForAllCells();
    static void modelIsSound();

    void saveAllAndSome();
    void saveRangeNumbersAsInTheTable();
    void saveIgnoresTheCaseOfTheEnding();
    void saveUnknownEnding();
    void saveFails();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_CTableViewCAN::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_CTableViewCAN::layoutAndColumns()
{
    Table table;
    const auto *layout = qobject_cast<QHBoxLayout *>(table.widget.layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->indexOf(table.view), 0);
    QCOMPARE(layout->indexOf(table.bar), 1);
    QCOMPARE(table.model->columnCount(), 10);
    const QStringList titles = {QStringLiteral("No."),        QStringLiteral("System Time"),
                                QStringLiteral("Time Stamp"), QStringLiteral("Direction"),
                                QStringLiteral("ID"),         QStringLiteral("Protocol"),
                                QStringLiteral("Format"),     QStringLiteral("Type"),
                                QStringLiteral("Length"),     QStringLiteral("Data")};
    const QVector<int> widths = {70, 90, 90, 120, 80, 80, 80, 80, 80, 200};
    for (int column = 0; column < 10; ++column) {
        QCOMPARE(table.model->headerData(column, Qt::Horizontal).toString(), titles[column]);
        QCOMPARE(table.view->columnWidth(column), widths[column]);
    }
}

void tst_CTableViewCAN::viewSettings()
{
    Table table;
    QCOMPARE(table.view->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(table.view->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(table.view->editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(table.view->alternatingRowColors());
    QVERIFY(table.view->verticalHeader()->isHidden());
    QCOMPARE(table.view->verticalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
    QCOMPARE(table.view->verticalHeader()->defaultSectionSize(), 25);
    QCOMPARE(table.bar->orientation(), Qt::Vertical);
    QCOMPARE(table.bar->singleStep(), 1);
    QCOMPARE(table.bar->pageStep(), 1);
    QVERIFY(table.bar->isHidden());
    QCOMPARE(table.bar->maximum(), 0);

    table.show(frames(2));
    QCOMPARE(table.view->rowHeight(1), 25);
    QTest::mouseClick(table.view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(100, 30));
    QTest::mouseDClick(table.view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(100, 30));
    QVERIFY(!table.view->selectionModel()->hasSelection());
    QVERIFY(table.view->viewport()->findChildren<QWidget *>().isEmpty()); // no editor
}

void tst_CTableViewCAN::itemsCarryFontAndHeight()
{
    Table table;
    table.show(frames(2));
    for (int column = 0; column < 10; ++column) {
        const QStandardItem *item = table.model->item(1, column);
        QCOMPARE(item->sizeHint().height(), 25);
        QCOMPARE(item->font().family(), QStringLiteral("Microsoft Yahei"));
        QCOMPARE(item->font().pointSize(), 9);
    }
}

void tst_CTableViewCAN::textsAreTranslated()
{
    BracketTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    Table table(7);
    QStringList titles;
    for (int column = 0; column < 10; ++column) {
        titles.append(table.model->headerData(column, Qt::Horizontal).toString());
    }
    QCOMPARE(
        titles.join(QLatin1Char('|')),
        QStringLiteral("No.|<System Time>|<Time Stamp>|<Direction>|<ID>|<Protocol>|<Format>|<Type>|<Length>|<Data>"));

    QVector<FrameRecord> rows = {frame(1), sentFrame(2, 0), sentFrame(3, 1)};
    rows[0].protocol = FrameRecord::CANFDSpeed;
    rows[1].protocol = FrameRecord::CANFD;
    rows[2].remote = rows[2].extended = 1;
    table.show(rows);
    QCOMPARE(table.cell(1, 2), QStringLiteral("<None>"));
    QCOMPARE(table.column(3).join(QLatin1Char('|')), QStringLiteral("<Revice>|<Send failure>|<Send successfully>"));
    QCOMPARE(table.column(5).join(QLatin1Char('|')), QStringLiteral("<CANFD Speed>|CANFD|CAN"));
    QCOMPARE(table.column(6).join(QLatin1Char('|')), QStringLiteral("<Data>|<Data>|<Remote>"));
    QCOMPARE(table.column(7).join(QLatin1Char('|')), QStringLiteral("<Standard>|<Standard>|<Extend>"));

    QVERIFY(table.widget.save(path("a.csv")));
    const QList<QByteArray> lines = fileContent(path("a.csv")).split('\n');
    QCOMPARE(lines[1].trimmed(), titles.join(QLatin1Char(',')).toUtf8());
    QVERIFY(lines[2].contains(",<Revice>,0x1,<CANFD Speed>,<Data>,<Standard>,0x0,"));
    QCoreApplication::removeTranslator(&translator);
}

void tst_CTableViewCAN::cellsOfAReceivedFrame()
{
    Table table;
    FrameRecord record = frame(0x1AB, "\x01\xA2\xFF");
    record.timeStamp = 3723004;
    record.protocol = FrameRecord::CANFD;
    table.widget.append(record);
    table.widget.refresh();
    const QStringList expected = {QStringLiteral("1"),        QStringLiteral("10:20:30.400"), QStringLiteral("1:2:3.4"),
                                  QStringLiteral("Revice"),   QStringLiteral("0x1AB"),        QStringLiteral("CANFD"),
                                  QStringLiteral("Data"),     QStringLiteral("Standard"),     QStringLiteral("0x3"),
                                  QStringLiteral("01 A2 FF ")};
    for (int column = 0; column < 10; ++column) {
        QCOMPARE(table.cell(0, column), expected[column]);
    }
}

void tst_CTableViewCAN::cellsOfASentFrame()
{
    Table table;
    FrameRecord record = sentFrame(0x10, FrameRecord::SendFailure);
    record.timeStamp = 3723004;
    table.widget.append(record);
    table.widget.refresh();
    QCOMPARE(table.cell(0, 2), QStringLiteral("None"));
    QCOMPARE(table.cell(0, 3), QStringLiteral("Send failure"));
}

void tst_CTableViewCAN::longAndEmptyPayload()
{
    Table table;
    table.show({frame(1, QByteArray(64, '\x5A')), frame(2)});
    QCOMPARE(table.cell(0, 8), QStringLiteral("0x40"));
    QCOMPARE(table.cell(0, 9), QStringLiteral("5A ").repeated(64));
    QCOMPARE(table.cell(1, 8), QStringLiteral("0x0"));
    QCOMPARE(table.cell(1, 9), QString());
}

void tst_CTableViewCAN::extendedRemoteFrame()
{
    Table table;
    FrameRecord record = frame(0x1FFFFFFF);
    record.remote = record.extended = 1;
    table.show({record});
    QCOMPARE(table.cell(0, 4), QStringLiteral("0x1FFFFFFF"));
    QCOMPARE(table.cell(0, 6), QStringLiteral("Remote"));
    QCOMPARE(table.cell(0, 7), QStringLiteral("Extend"));
}

void tst_CTableViewCAN::fullCacheIgnoresFrames()
{
    Table table;
    table.widget.setCacheSize(3);
    table.show(frames(3));
    QCOMPARE(table.widget.rowCount(), 3);
    table.widget.append(frame(9));
    table.widget.append(frames(2, 20));
    table.widget.refresh();
    QCOMPARE(table.widget.rowCount(), 3);
    QCOMPARE(table.column(4), (QStringList{QStringLiteral("0x0"), QStringLiteral("0x1"), QStringLiteral("0x2")}));
}

void tst_CTableViewCAN::batchEndsAtTheCacheSize()
{
    Table table;
    table.widget.setCacheSize(3);
    table.show(frames(5));
    QCOMPARE(table.column(4), (QStringList{QStringLiteral("0x0"), QStringLiteral("0x1"), QStringLiteral("0x2")}));
}

void tst_CTableViewCAN::queueCountsForTheCache()
{
    Table table;
    table.widget.setCacheSize(3);
    table.show(frames(1));
    table.widget.append(frame(7));
    table.widget.append(frames(4, 16));
    QCOMPARE(table.widget.rowCount(), 1);
    table.widget.refresh();
    QCOMPARE(table.column(4), (QStringList{QStringLiteral("0x0"), QStringLiteral("0x7"), QStringLiteral("0x10")}));
}

void tst_CTableViewCAN::filterHidesIdentifiers()
{
    Table table(8);
    table.widget.addFilterId(5);
    table.widget.append(frame(5), true);
    table.widget.refresh();
    QCOMPARE(table.widget.rowCount(), 0);
    table.widget.append(frame(5), false);
    table.widget.append(frame(5));
    table.widget.append(frame(6), true);
    table.widget.refresh();
    QCOMPARE(table.column(4), (QStringList{QStringLiteral("0x5"), QStringLiteral("0x5"), QStringLiteral("0x6")}));
    // Identifiers have 29 bits, and the flags in the frame's word are not part of them.
    table.widget.addFilterId(0xFFFFFFFF);
    FrameRecord extended = frame(0x1FFFFFFF);
    extended.extended = 1;
    table.widget.append(extended, true);
    table.widget.refresh();
    QCOMPARE(table.widget.rowCount(), 3);
    table.widget.clearFilterIds();
    table.widget.append(frame(5), true);
    table.widget.refresh();
    QCOMPARE(table.widget.rowCount(), 4);
}

void tst_CTableViewCAN::filterInABatch()
{
    Table table(8);
    table.widget.addFilterId(1);
    table.widget.addFilterId(3);
    table.widget.append(frames(5), true);
    table.widget.append(frames(2), false);
    table.widget.refresh();
    QCOMPARE(table.column(4).join(QLatin1Char(' ')), QStringLiteral("0x0 0x2 0x4 0x0 0x1"));
}

void tst_CTableViewCAN::filterInABatchAndTheCache()
{
    Table table(8);
    table.widget.addFilterId(0);
    table.widget.addFilterId(1);
    table.widget.setCacheSize(2);
    table.widget.append(frames(6), true); // hidden frames take no room; the fifth one ends the batch
    table.widget.refresh();
    QCOMPARE(table.column(4).join(QLatin1Char(' ')), QStringLiteral("0x2 0x3"));
}

void tst_CTableViewCAN::clearLeavesTheQueue()
{
    Table table;
    table.widget.append(frame(7));
    table.widget.clear();
    table.widget.refresh();
    QCOMPARE(table.widget.rowCount(), 1);
    QCOMPARE(table.cell(0, 4), QStringLiteral("0x7"));
}

void tst_CTableViewCAN::clearEmptiesEverything()
{
    Table table(4);
    table.widget.setAutoScroll(true);
    table.show(frames(100));
    table.widget.clear();
    QCOMPARE(table.widget.rowCount(), 0);
    QCOMPARE(table.model->rowCount(), 0);
    QCOMPARE(table.model->columnCount(), 10);
    QCOMPARE(table.bar->maximum(), 0);
    QVERIFY(table.bar->isHidden());
    table.widget.setAutoScroll(false);
    table.show(frames(2, 50));
    QCOMPARE(table.numbers(), (QStringList{QStringLiteral("1"), QStringLiteral("2")}));
    QCOMPARE(table.cell(0, 4), QStringLiteral("0x32"));
}

void tst_CTableViewCAN::cacheSizeCutsTheNewest()
{
    Table table(4);
    table.show(frames(100));
    QCOMPARE(table.numbers().first(), QStringLiteral("1"));
    table.widget.setCacheSize(100);
    QCOMPARE(table.numbers().first(), QStringLiteral("1")); // nothing to cut
    table.widget.setCacheSize(10);
    QCOMPARE(table.widget.rowCount(), 10);
    QCOMPARE(table.bar->maximum(), 6);
    QCOMPARE(table.bar->value(), 6);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("7 8 9 10"));
    QCOMPARE(table.cell(3, 4), QStringLiteral("0x9"));
    table.widget.setCacheSize(3);
    QVERIFY(table.bar->isHidden());
    QCOMPARE(table.bar->maximum(), 0);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("1 2 3"));
    table.widget.setCacheSize(5);
    table.show(frames(9, 32));
    QCOMPARE(table.widget.rowCount(), 5);
}

void tst_CTableViewCAN::cacheSizeZeroAndNegative()
{
    Table table(4);
    table.show(frames(100));
    table.widget.setCacheSize(0);
    QCOMPARE(table.widget.rowCount(), 0);
    QCOMPARE(table.model->rowCount(), 0);
    table.show(frames(1));
    QCOMPARE(table.widget.rowCount(), 0);
    table.widget.setCacheSize(-5);
    table.show(frames(1));
    QCOMPARE(table.widget.rowCount(), 0);
    table.widget.setCacheSize(1);
    table.widget.append(frames(2));
    table.widget.setCacheSize(std::numeric_limits<int>::min());
    table.widget.append(frames(2));
    table.widget.refresh();
    QCOMPARE(table.widget.rowCount(), 1); // what was queued before
}

void tst_CTableViewCAN::ratesEverySecondRefresh()
{
    CTableViewCAN widget;
    QSignalSpy rates(&widget, &CTableViewCAN::updateRate);
    widget.append(frames(3));
    widget.append(sentFrame(1, 0));
    widget.refresh();
    QCOMPARE(rates.count(), 0);
    widget.append(sentFrame(1, 1));
    widget.append(sentFrame(1, 77));
    widget.append(frame(1));
    widget.refresh();
    QCOMPARE(rates.count(), 1);
    QCOMPARE(rates[0], (QVariantList{3, 4}));
    widget.refresh();
    widget.append(frame(1));
    widget.clear(); // does not touch the counters nor the queue
    widget.refresh();
    QCOMPARE(rates.count(), 2);
    QCOMPARE(rates[1], (QVariantList{0, 1}));
    widget.refresh();
    widget.refresh();
    QCOMPARE(rates[2], (QVariantList{0, 0}));
}

void tst_CTableViewCAN::timerRefreshes()
{
    CTableViewCAN widget;
    QSignalSpy rates(&widget, &CTableViewCAN::updateRate);
    widget.append(frame(1));
    QCOMPARE(widget.rowCount(), 0);
    QTRY_COMPARE(widget.rowCount(), 1);
    QTRY_VERIFY(!rates.isEmpty());
    QCOMPARE(rates[0], (QVariantList{0, 1}));
}

void tst_CTableViewCAN::scrollBarRange()
{
    Table table(4);
    table.show(frames(4));
    QVERIFY(table.bar->isHidden());
    QCOMPARE(table.bar->maximum(), 0);
    table.show(frames(1));
    QVERIFY(table.bar->isVisible());
    QCOMPARE(table.bar->minimum(), 0);
    QCOMPARE(table.bar->maximum(), 1);
    table.show(frames(95));
    QCOMPARE(table.bar->maximum(), 96);
}

void tst_CTableViewCAN::autoScroll()
{
    Table table(4);
    table.widget.setAutoScroll(true);
    table.show(frames(3));
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("1 2 3"));
    table.show(frames(7));
    QCOMPARE(table.bar->value(), 6);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("7 8 9 10"));
    table.bar->setValue(0);
    table.widget.refresh(); // nothing new: stays where it is
    QCOMPARE(table.numbers().first(), QStringLiteral("1"));
    table.show(frames(1));
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("8 9 10 11"));
}

void tst_CTableViewCAN::withoutAutoScroll()
{
    Table table(4);
    table.show(frames(10));
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("1 2 3 4"));
    table.bar->setValue(3);
    table.show(frames(10));
    QCOMPARE(table.bar->value(), 3);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("4 5 6 7"));
}

void tst_CTableViewCAN::scrollBarMovesTheRows()
{
    Table table(4);
    table.show(frames(10));
    table.bar->setValue(6);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("7 8 9 10"));
    QCOMPARE(table.cell(0, 4), QStringLiteral("0x6"));
    table.bar->setValue(2);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("3 4 5 6"));
}

void tst_CTableViewCAN::scrollBarArrows()
{
    Table table(12);
    table.show(frames(100));
    QVERIFY(QTest::qWaitForWindowExposed(&table.window));
    QStyleOptionSlider option;
    option.initFrom(table.bar);
    option.orientation = Qt::Vertical;
    option.maximum = table.bar->maximum();
    option.pageStep = option.singleStep = 1;
    const QRect down =
        table.bar->style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarAddLine, table.bar);
    QTest::mouseClick(table.bar, Qt::LeftButton, Qt::NoModifier, down.center());
    QCOMPARE(table.bar->value(), 1);
    QCOMPARE(table.numbers().first(), QStringLiteral("2"));
}

void tst_CTableViewCAN::wheelMovesOneRow_data()
{
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("value");
    QTest::newRow("towards the user") << -120 << 51;
    QTest::newRow("a bit towards the user") << -1 << 51;
    QTest::newRow("far towards the user") << -9600 << 51;
    QTest::newRow("no delta") << 0 << 51;
    QTest::newRow("away") << 120 << 49;
    QTest::newRow("a bit away") << 1 << 49;
    QTest::newRow("far away") << 9600 << 49;
}

void tst_CTableViewCAN::wheelMovesOneRow()
{
    QFETCH(int, delta);
    QFETCH(int, value);
    Table table(4);
    table.show(frames(100));
    table.bar->setValue(50);
    Table::wheel(table.view->viewport(), delta);
    QCOMPARE(table.bar->value(), value);
    QCOMPARE(table.numbers().first(), QString::number(value + 1));
    table.bar->setValue(50);
    Table::wheel(table.view, delta);
    QCOMPARE(table.bar->value(), value);
    QCOMPARE(table.view->verticalScrollBar()->value(), 0);
}

void tst_CTableViewCAN::wheelOnTheScrollBar()
{
    Table table(4);
    table.show(frames(6));
    Table::wheel(table.bar, -1200);
    QCOMPARE(table.bar->value(), 1);
    Table::wheel(table.bar, -1200);
    Table::wheel(table.bar, -1200);
    QCOMPARE(table.bar->value(), 2); // the end
    Table::wheel(table.bar, 1200);
    QCOMPARE(table.bar->value(), 1);
}

void tst_CTableViewCAN::wheelSidewaysMovesTheColumns_data()
{
    QTest::addColumn<QPoint>("delta");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isToTheRight");
    QTest::newRow("right") << QPoint(-120, 0) << 50 << true;
    QTest::newRow("left") << QPoint(120, 0) << 50 << false;
    QTest::newRow("right and down") << QPoint(-120, -120) << 51 << true;
    QTest::newRow("left and up") << QPoint(120, 120) << 49 << false;
}

void tst_CTableViewCAN::wheelSidewaysMovesTheColumns()
{
    QFETCH(QPoint, delta);
    QFETCH(bool, isToTheRight);
    Table table(4);
    table.view->setColumnWidth(9, 2000);
    table.show(frames(100));
    for (QWidget *target : {static_cast<QWidget *>(table.bar), static_cast<QWidget *>(table.view->viewport())}) {
        table.bar->setValue(50);
        table.columnsBar()->setValue(500);
        Table::wheel(target, delta);
        QTEST(table.bar->value(), "row");
        QVERIFY(table.columnsBar()->value() != 500);
        QCOMPARE(table.columnsBar()->value() > 500, isToTheRight);
    }
}

void tst_CTableViewCAN::trackpadWithoutMovement()
{
    Table table(4);
    table.show(frames(100));
    table.bar->setValue(50);
    for (const Qt::ScrollPhase phase : {Qt::ScrollBegin, Qt::ScrollEnd}) {
        Table::wheel(table.view->viewport(), QPoint(), phase);
        QCOMPARE(table.bar->value(), 50);
    }
}

void tst_CTableViewCAN::lastRowIsWholeAboveAScrollBar()
{
    Table table(8);
    table.widget.setAutoScroll(true);
    table.show(frames(100));
    QCOMPARE(table.numbers().last(), QStringLiteral("100"));
    QCOMPARE(table.model->rowCount(), 8);
    table.view->setColumnWidth(9, 2000);
    QTRY_VERIFY(table.columnsBar()->isVisible());
    QTRY_VERIFY(table.isLastRowWhole());
    QCOMPARE(table.numbers().last(), QStringLiteral("100"));
    QCOMPARE(table.bar->maximum(), 100 - table.model->rowCount());
    for (int height = table.widget.height(); height > 100; --height) {
        table.widget.resize(1000, height);
        QVERIFY(table.isLastRowWhole());
    }
    table.setRows(8);
    table.view->setColumnWidth(9, 20);
    QTRY_VERIFY(!table.columnsBar()->isVisible());
    QTRY_COMPARE(table.model->rowCount(), 8);
    QCOMPARE(table.numbers().last(), QStringLiteral("100"));
}

void tst_CTableViewCAN::lowerTableKeepsItsEnd()
{
    Table table(6);
    table.show(frames(10));
    table.bar->setValue(4);
    table.setRows(3);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("8 9 10"));
    QCOMPARE(table.bar->value(), 7);
    table.bar->setValue(6); // not the end
    table.setRows(2);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("7 8"));
    table.setRows(20); // all rows
    table.setRows(2);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("9 10"));
}

void tst_CTableViewCAN::cutCellsHaveToolTips()
{
    Table table(4);
    FrameRecord record = frame(0x123);
    record.data = QByteArray(64, '\x5A');
    table.show({record});
    QCOMPARE(table.toolTip(0, 9), QStringLiteral("5A ").repeated(64));
    QCOMPARE(table.toolTip(0, 4), QString());
    table.view->setColumnWidth(4, 20);
    QCOMPARE(table.toolTip(0, 4), QStringLiteral("0x123"));
    table.view->setColumnWidth(9, 3000);
    QCOMPARE(table.toolTip(0, 9), QString());
}

void tst_CTableViewCAN::doubleClickFitsAColumn_data()
{
    QTest::addColumn<int>("column");
    for (int column = 0; column < 10; ++column) {
        QTest::addRow("%d", column) << column;
    }
}

void tst_CTableViewCAN::doubleClickFitsAColumn()
{
    QFETCH(int, column);
    Table table(4);
    QVector<FrameRecord> shown = frames(3, 0x1ABCDEF0);
    shown[1].data = QByteArray(8, '\x5A');
    shown[1].systemTime = QStringLiteral("12:34:56.789");
    shown[2].direction = FrameRecord::SendSuccess;
    table.show(shown);
    QHeaderView *header = table.view->horizontalHeader();
    table.view->setColumnWidth(column, 25);
    const int right = header->sectionViewportPosition(column) + header->sectionSize(column) - 1;
    const QPoint border(right, header->height() / 2);
    QTest::mouseMove(header->viewport(), border);
    QTest::mouseDClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, border);
    for (int row = 0; row < 3; ++row) {
        QVERIFY2(table.toolTip(row, column).isEmpty(), qPrintable(table.cell(row, column)));
    }
    const int title =
        header->fontMetrics().horizontalAdvance(table.model->headerData(column, Qt::Horizontal).toString());
    QVERIFY(header->sectionSize(column) > title);
    QVERIFY(header->sectionSize(column) < 300);
}

void tst_CTableViewCAN::resizeShowsMoreRows()
{
    Table table(4);
    table.show(frames(10));
    table.setRows(6);
    QCOMPARE(table.model->rowCount(), 6);
    QCOMPARE(table.bar->maximum(), 4);
    table.setRows(3);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("1 2 3"));
    QCOMPARE(table.bar->maximum(), 7);
    table.setRows(20);
    QCOMPARE(table.model->rowCount(), 10);
    QVERIFY(table.bar->isHidden());
    // Exactly on the border of a row.
    const int header = table.view->horizontalHeader()->height();
    table.widget.resize(1000, header + 5 * 25);
    QCOMPARE(table.model->rowCount(), 5);
    table.widget.resize(1000, header + 5 * 25 - 1);
    QCOMPARE(table.model->rowCount(), 4);
}

void tst_CTableViewCAN::resizeAtTheEndMovesTheFirstRow()
{
    Table table(4);
    table.widget.setAutoScroll(true);
    table.show(frames(10));
    table.setRows(6);
    QCOMPARE(table.bar->value(), 4);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("5 6 7 8 9 10"));
}

void tst_CTableViewCAN::resizeBelowOneRow()
{
    Table table(4);
    table.show(frames(10));
    table.bar->setValue(2);
    const QStringList before = table.numbers();
    table.widget.resize(1000, table.view->horizontalHeader()->height() + 24);
    QCOMPARE(table.numbers(), before);
    QCOMPARE(table.bar->maximum(), 6);
    table.widget.resize(1000, 5);
    QCOMPARE(table.numbers(), before);
    table.setRows(5);
    QCOMPARE(table.numbers().join(QLatin1Char(' ')), QStringLiteral("3 4 5 6 7"));
}

void tst_CTableViewCAN::onlyVisibleRowsAreItems()
{
    Table table(10);
    for (int i = 0; i < 40; ++i) {
        table.show(frames(2500));
    }
    QCOMPARE(table.widget.rowCount(), 100000);
    QCOMPARE(table.model->rowCount(), 10);
    table.bar->setValue(table.bar->maximum());
    QCOMPARE(table.numbers().last(), QStringLiteral("100000"));
}

void tst_CTableViewCAN::oneSignalForAllCells()
{
    Table table(4);
    table.show(frames(10));
    QSignalSpy changes(table.model, &QAbstractItemModel::dataChanged);
    table.bar->setValue(3);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes[0][0].toModelIndex(), table.model->index(0, 0));
    QCOMPARE(changes[0][1].toModelIndex(), table.model->index(3, 9));
    table.show(frames(10)); // behind the shown rows
    QCOMPARE(changes.count(), 1);
}

void tst_CTableViewCAN::modelIsSound()
{
    Table table(4);
    const QAbstractItemModelTester tester(table.model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    table.widget.setAutoScroll(true);
    table.show(frames(2));
    table.show(frames(50));
    table.bar->setValue(3);
    table.setRows(9);
    table.setRows(2);
    Table::wheel(table.view->viewport(), -120);
    table.widget.setCacheSize(7);
    table.widget.clear();
    table.show(frames(3));
    QCOMPARE(table.model->rowCount(), 2);
}

void tst_CTableViewCAN::saveAllAndSome()
{
    Table table;
    table.show(frames(5));
    table.widget.append(frame(9)); // queued, not yet a row
    QVERIFY(table.widget.save(path("all.can")));
    QCOMPARE(fileContent(path("all.can")).size(), 20 + 5 * 24);
    QVERIFY(table.widget.save(path("two.can"), 2));
    const QByteArray two = fileContent(path("two.can"));
    QCOMPARE(two.size(), 20 + 2 * 24);
    QCOMPARE(two[20], char(0));
    QCOMPARE(two[44], char(1));
    QVERIFY(table.widget.save(path("many.can"), 6));
    QCOMPARE(fileContent(path("many.can")).size(), 20 + 5 * 24);
    QVERIFY(table.widget.save(path("none.can"), 0));
    QCOMPARE(fileContent(path("none.can")).size(), 20);
    // By name, as a caller through the meta-object does.
    bool saved = false;
    QVERIFY(QMetaObject::invokeMethod(&table.widget, "save", Q_RETURN_ARG(bool, saved), Q_ARG(QString, path("x.can"))));
    QVERIFY(saved);
}

void tst_CTableViewCAN::saveRangeNumbersAsInTheTable()
{
    Table table;
    table.show(frames(10));
    QVERIFY(table.widget.saveRange(path("a.csv"), 7, 2));
    QList<QByteArray> lines = fileContent(path("a.csv")).split('\n');
    QCOMPARE(lines.size(), 6);
    QVERIFY(lines[2].startsWith("8,") && lines[2].contains(",0x7,"));
    QVERIFY(lines[3].startsWith("9,") && lines[3].contains(",0x8,"));
    const auto rowsOf = [&](int first, int count) {
        return table.widget.saveRange(path("r.can"), first, count) ? (fileContent(path("r.can")).size() - 20) / 24 : -1;
    };
    QCOMPARE(rowsOf(8, 100), 2);
    QCOMPARE(rowsOf(8, -1), 2);
    QCOMPARE(rowsOf(10, 1), 0);
    QCOMPARE(rowsOf(99, 1), 0);
    QCOMPARE(rowsOf(-3, 4), 4);
}

void tst_CTableViewCAN::saveIgnoresTheCaseOfTheEnding()
{
    Table table;
    table.show(frames(1));
    QVERIFY(table.widget.save(path("a.Csv")));
    QVERIFY(textOf(path("a.Csv")).contains("1,10:20:30.400,0:0:0.0,Revice,0x0,CAN,Data,Standard,0x0,\n"));
}

void tst_CTableViewCAN::saveUnknownEnding()
{
    Table table;
    table.show(frames(1));
    QVERIFY(!table.widget.save(path("a.bin")));
    QVERIFY(!table.widget.saveRange(path("a.bin"), 0, 1));
    QCOMPARE(filesIn(m_folder->path()), QStringList());
}

void tst_CTableViewCAN::saveFails()
{
    Table table;
    table.show(frames(1));
    QVERIFY(!table.widget.save(path("gone/a.csv")));
    QVERIFY(!table.widget.saveRange(path("gone/a.csv"), 0, 1));
}

X9_GUI_TEST(tst_CTableViewCAN)
#include "tst_CTableViewCAN.moc"
