#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/CaptureTab.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr qint64 Frames = 100000;

} // namespace

class tst_CaptureTab : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void loadsAndScrolls();
    void keysMove();
    void showsAFrameAmongOthers();
    void filterLine();
    void wrongFilterIsTold();
    void completionIsOffered();
    void cellsMakeFilters();
    void theCurrentRowStaysWithAnotherFilter();
    void finds();
    void overviewFilters();
    void copies();
    void marksAndTimes();
    void findingsAreTold();
    static void tableModel();

private:
    FilterEdit *filter() { return m_tab->findChild<FilterEdit *>(QStringLiteral("filter")); }
    QString cell(int place, FrameColumn column) { return m_model->text(place, column); }
    void type(const char *text);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<CaptureTab> m_tab;
    std::unique_ptr<FrameTableModel> m_model;
};

void tst_CaptureTab::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_tab = std::make_unique<CaptureTab>(QStringLiteral("made-up"), syntheticCapture(Frames), m_folder->path());
    m_model = std::make_unique<FrameTableModel>(m_tab->capture());
    m_tab->resize(1000, 700);
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
    QTRY_COMPARE(m_tab->capture().rowCount(), Frames);
    QTRY_COMPARE(m_tab->capture().overview().covered(), Frames);
}

void tst_CaptureTab::cleanup()
{
    m_model.reset();
    m_tab.reset();
}

void tst_CaptureTab::type(const char *text)
{
    filter()->setFocus();
    filter()->clear();
    QTest::keyClicks(filter(), QString::fromLatin1(text));
    QTest::keyClick(filter(), Qt::Key_Escape); // a list of candidates that may be open
    filter()->setText(QString::fromLatin1(text));
    QTest::keyClick(filter(), Qt::Key_Return);
}

void tst_CaptureTab::loadsAndScrolls()
{
    FrameTableView &table = m_tab->table();
    QCOMPARE(table.verticalScrollBar()->maximum(), int(Frames) - table.visibleRows());
    table.scrollToEnd();
    QVERIFY(table.isAtEnd());
    QCOMPARE(cell(int(Frames) - 1, FrameColumn::Number), QString::number(Frames));
    const auto *state = m_tab->findChild<QLabel *>(QStringLiteral("state"));
    QTRY_COMPARE(state->text(),
                 QStringLiteral("%1 frames over 49.999 s, following the file").arg(QLocale().toString(Frames)));
}

void tst_CaptureTab::keysMove()
{
    FrameTableView &table = m_tab->table();
    table.setFocus();
    QTest::keyClick(&table, Qt::Key_Down);
    QCOMPARE(table.currentPlace(), 0);
    QTest::keyClick(&table, Qt::Key_PageDown);
    QCOMPARE(table.currentPlace(), table.visibleRows());
    QTest::keyClick(&table, Qt::Key_End);
    QCOMPARE(table.currentRow(), Frames - 1);
    QVERIFY(table.isAtEnd());
    QTest::keyClick(&table, Qt::Key_Down);
    QTest::keyClick(&table, Qt::Key_PageDown);
    QCOMPARE(table.currentRow(), Frames - 1);
    QTest::keyClick(&table, Qt::Key_Home);
    QTest::keyClick(&table, Qt::Key_Up);
    QTest::keyClick(&table, Qt::Key_PageUp);
    QCOMPARE(table.currentPlace(), 0);
    QCOMPARE(table.firstVisible(), 0);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, {50, table.viewport()->height() / 2});
    QVERIFY(table.currentPlace() > 3);
}

/// A frame that something leads to has some in front of it on screen.
void tst_CaptureTab::showsAFrameAmongOthers()
{
    FrameTableView &table = m_tab->table();
    m_tab->showPanels(false);
    QTRY_VERIFY(table.visibleRows() > 6);
    for (const qint64 row : {Frames / 2, Frames / 3}) {
        m_tab->showRow(row);
        QCOMPARE(qint64(table.currentRow()), row);
        QCOMPARE(table.currentPlace() - table.firstVisible(), table.visibleRows() / 3);
    }
    const int first = table.firstVisible();
    m_tab->showRow(table.currentRow() + 1); // is seen already
    QCOMPARE(table.firstVisible(), first);
}

void tst_CaptureTab::filterLine()
{
    type("id == 0x18FF1234");
    QTRY_COMPARE(m_tab->capture().rowCount(), Frames / 20);
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    QCOMPARE(cell(1, FrameColumn::Number), QStringLiteral("28"));
    QCOMPARE(m_tab->table().verticalScrollBar()->maximum(), int(Frames / 20) - m_tab->table().visibleRows());
    type("");
    QCOMPARE(m_tab->capture().rowCount(), Frames);
}

void tst_CaptureTab::wrongFilterIsTold()
{
    type("id == == 5");
    QCOMPARE(m_tab->capture().rowCount(), Frames);
    QVERIFY(!filter()->problem().isEmpty());
    QCOMPARE(m_tab->findChild<QLabel *>(QStringLiteral("problem"))->text(), filter()->problem());
    QCOMPARE(filter()->cursorPosition(), 8);
    type("fd");
    QVERIFY(m_tab->findChild<QLabel *>(QStringLiteral("problem"))->text().isEmpty());
}

void tst_CaptureTab::completionIsOffered()
{
    filter()->setFocus();
    filter()->clear();
    QTest::keyClicks(filter(), QStringLiteral("dir == re"));
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    QCOMPARE(filter()->text(), QStringLiteral("dir == refused "));
}

void tst_CaptureTab::cellsMakeFilters()
{
    FrameTableView &table = m_tab->table();
    emit table.sig_filterWanted(m_model->sameCell(3, FrameColumn::Direction), false);
    QCOMPARE(filter()->text(), QStringLiteral("dir == tx"));
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    QCOMPARE(m_tab->capture().rowCount(), Frames / 20);
    emit table.sig_filterWanted(QStringLiteral("number == 4"), true);
    QCOMPARE(filter()->text(), QStringLiteral("(dir == tx) and not (number == 4)"));
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    QCOMPARE(m_tab->capture().rowCount(), Frames / 20 - 1);
}

void tst_CaptureTab::theCurrentRowStaysWithAnotherFilter()
{
    m_tab->table().setCurrentPlace(70007);
    type("id == 0x18FF1234");
    QTRY_COMPARE(m_tab->table().currentRow(), 70007);
    type("");
    QTRY_COMPARE(m_tab->table().currentRow(), 70007);
}

void tst_CaptureTab::finds()
{
    auto *find = m_tab->findChild<FilterEdit *>(QStringLiteral("find"));
    find->setFocus();
    find->setText(QStringLiteral("error"));
    QTest::keyClick(find, Qt::Key_Return);
    QTRY_COMPARE(m_tab->table().currentRow(), 19);
    m_tab->findNext(false);
    QTRY_COMPARE(m_tab->table().currentRow(), 5019);
    m_tab->findNext(true);
    QTRY_COMPARE(m_tab->table().currentRow(), 19);
    m_tab->findNext(true);
    QTRY_VERIFY(!m_tab->findChild<QLabel *>(QStringLiteral("problem"))->text().isEmpty());
    QCOMPARE(m_tab->table().currentRow(), 19);
}

void tst_CaptureTab::overviewFilters()
{
    auto *overview = m_tab->findChild<QTableView *>(QStringLiteral("overview"));
    QTRY_COMPARE(overview->model()->rowCount(), 21); // 19 of 11 bits, one of 29, errors
    overview->sortByColumn(OverviewModel::Count, Qt::AscendingOrder);
    QCOMPARE(overview->model()->index(0, OverviewModel::Count).data().toString(), QStringLiteral("20"));
    QTest::mouseDClick(overview->viewport(), Qt::LeftButton, {},
                       overview->visualRect(overview->model()->index(0, 1)).center());
    QTest::keyClick(overview, Qt::Key_Return);
    QTRY_COMPARE(m_tab->capture().rowCount(), 20);
}

void tst_CaptureTab::copies()
{
    FrameTableView &table = m_tab->table();
    table.setFocus();
    table.setCurrentPlace(3);
    QTest::keyClick(&table, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keySequence(&table, QKeySequence::Copy);
    const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 4); // titles, two rows, an end of line
    QVERIFY(lines.at(1).startsWith(QStringLiteral("4\t0.0015")));
    QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(QApplication::clipboard()->text().contains(QStringLiteral("\n5,0.0020")));
}

void tst_CaptureTab::marksAndTimes()
{
    m_tab->table().setCurrentPlace(40);
    m_tab->toggleMark();
    QCOMPARE(cell(40, FrameColumn::SinceMark), QStringLiteral("0.000000000"));
    QVERIFY(cell(39, FrameColumn::SinceMark).startsWith(QStringLiteral("-0.0005")));
    QVERIFY(cell(40, FrameColumn::SinceIdentifier).startsWith(QStringLiteral("0.0099")));
    QVERIFY(cell(40, FrameColumn::SinceShown).startsWith(QStringLiteral("0.0005")));
    m_tab->toggleMark();
    QCOMPARE(cell(40, FrameColumn::SinceMark), QString());
}

void tst_CaptureTab::findingsAreTold()
{
    auto *button = m_tab->findChild<QPushButton *>(QStringLiteral("findings"));
    QTRY_VERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    auto *dialog = m_tab->findChild<QDialog *>();
    QVERIFY(dialog != nullptr);
    dialog->close();
}

void tst_CaptureTab::tableModel()
{
    constexpr int Few = 1000; // the tester asks for every cell
    OpenCapture capture(QStringLiteral("small"), syntheticCapture(Few), false);
    FrameTableModel model(capture);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QTRY_COMPARE(model.rowCount(), Few);
    FilterError error{};
    capture.setFilter(Filter::parse(QStringLiteral("fd"), {}, error).value_or(Filter()));
    QTRY_COMPARE(model.rowCount(), Few / 20);
    capture.setFilter({});
    QCOMPARE(model.rowCount(), Few);
    QCOMPARE(model.index(0, static_cast<int>(FrameColumn::Identifier)).data().toString(), QStringLiteral("100"));
    QVERIFY(model.text(Few, FrameColumn::Number).isEmpty());
}

X9_GUI_TEST(tst_CaptureTab)
#include "tst_CaptureTab.moc"
