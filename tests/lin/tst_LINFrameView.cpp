#include "lin/LINFrameModel.h"
#include "lin/LINFrameView.h"
#include "tests/lin/LINTestFrames.h"
#include "tests/support/TestProgram.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QtTest>

namespace {
constexpr int Many = 200; ///< more than fit on screen

/// Counts what it paints.
class PaintedView : public LINFrameView
{
    Q_OBJECT

public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        LINFrameView::paintEvent(event);
    }
};

bool isAtBottom(const QTableView &view)
{
    const QScrollBar *bar = view.verticalScrollBar();
    return bar->maximum() > 0 && bar->value() == bar->maximum();
}
} // namespace

class tst_LINFrameView : public QObject
{
    Q_OBJECT

private slots:
    static void layout();
    static void showsASingleRowAtOnce();
    static void followsDynamicRows();
    static void followsABatch();
    static void doesNotFollowStaticRows();
    static void paintsManyRowsOnce();
    static void repaintsAReplacedRow();
    static void clears();
};

void tst_LINFrameView::layout()
{
    const LINFrameView view;
    QList<int> widths;
    for (int column = 0; column < view.model()->columnCount(); ++column) {
        widths.append(view.columnWidth(column));
    }
    QCOMPARE(widths, (QList<int>{80, 100, 80, 80, 80, 300, 100, 100}));
    QCOMPARE(view.selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(view.editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(view.alternatingRowColors());
    QVERIFY(view.verticalHeader()->isHidden());
}

void tst_LINFrameView::showsASingleRowAtOnce()
{
    LINFrameView view;
    view.show();
    view.addRow(linFrame(0x12, "01"), false, 0);
    QCOMPARE(view.frames().rowCount(), 1);
    QVERIFY(view.visualRect(view.model()->index(0, 0)).isValid());
    view.addRow(linFrame(0x12, "02"), true, 0);
    QCOMPARE(view.frames().rowCount(), 1);
    QCOMPARE(view.frames().cellText(0, 5), QStringLiteral("02 "));
}

void tst_LINFrameView::followsDynamicRows()
{
    LINFrameView view;
    view.show();
    for (int i = 0; i < Many; ++i) {
        view.addRow(linFrame(0x12, "01"), false, 0);
    }
    QCOMPARE(view.frames().rowCount(), Many);
    QTRY_VERIFY(isAtBottom(view));
    QVERIFY(view.viewport()->rect().contains(view.visualRect(view.model()->index(Many - 1, 0))));
    view.scrollToTop();
    view.addRow(linFrame(0x12, "01"), false, 0);
    QTRY_VERIFY(isAtBottom(view));
}

void tst_LINFrameView::followsABatch()
{
    LINFrameView view;
    view.show();
    view.addRows(QVector<CTableViewLIN::DataObject>(Many, linFrame(0x12, "01")), 0);
    QCOMPARE(view.frames().rowCount(), Many);
    QVERIFY(isAtBottom(view));
    view.scrollToTop();
    view.addRows({}, 0);
    view.addRow(linFrame(0x13, ""), true, 0);
    QTRY_COMPARE(view.verticalScrollBar()->maximum(), Many + 1 - view.verticalScrollBar()->pageStep());
    QCOMPARE(view.verticalScrollBar()->value(), 0);
}

void tst_LINFrameView::doesNotFollowStaticRows()
{
    LINFrameView view;
    view.resize(400, 200);
    view.show();
    for (quint8 id = 0; id < 64; ++id) {
        view.addRow(linFrame(id, "01"), true, 0);
    }
    QTRY_COMPARE(view.verticalScrollBar()->maximum(), 64 - view.verticalScrollBar()->pageStep());
    QCOMPARE(view.verticalScrollBar()->value(), 0);
}

void tst_LINFrameView::paintsManyRowsOnce()
{
    PaintedView view;
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY(view.paints > 0);
    view.addRow(linFrame(0x12, "01"), false, 0);
    const int before = view.paints;
    for (int i = 0; i < Many; ++i) {
        view.addRow(linFrame(0x12, "01"), false, 0);
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    }
    QTRY_VERIFY(isAtBottom(view));
    QVERIFY2(view.paints - before < Many / 4, qPrintable(QString::number(view.paints - before)));
}

void tst_LINFrameView::repaintsAReplacedRow()
{
    PaintedView view;
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.addRow(linFrame(0x12, "01"), true, 0);
    QTRY_VERIFY(view.paints > 0);
    const int before = view.paints;
    view.addRow(linFrame(0x12, "02"), true, 0);
    QTRY_VERIFY(view.paints > before);
}

void tst_LINFrameView::clears()
{
    LINFrameView view;
    view.show();
    view.addRows(QVector<CTableViewLIN::DataObject>(Many, linFrame(0x12, "01")), 0);
    view.clearRows();
    QCOMPARE(view.frames().rowCount(), 0);
    QTRY_COMPARE(view.verticalScrollBar()->maximum(), 0);
    view.addRow(linFrame(0x12, "01"), false, 0);
    QCOMPARE(view.frames().cellText(0, 0), QStringLiteral("1"));
}

X9_GUI_TEST(tst_LINFrameView)
#include "tst_LINFrameView.moc"
