#include "viewer/ComparisonWindow.h"

#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/ByteDelegate.h"
#include "viewer/CaptureTab.h"
#include "viewer/ViewerWindow.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr qint64 Frames = 50000;
constexpr qint64 Moved = 30001; ///< the row in which the made-up capture's switch moves

} // namespace

class tst_ComparisonWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void findsTheSwitchAtTheMark();
    void partsByTime();
    void problemsAreTold();
    void twoCaptures();
    void capturesComeAndGo();
    void swaps();
    void selectionStays();
    void copiesAndColors();
    static void model();

private:
    QTabWidget &tabs() { return *m_viewer->findChild<QTabWidget *>(QStringLiteral("tabs")); }
    CaptureTab &tab(int index) { return *qobject_cast<CaptureTab *>(tabs().widget(index)); }
    ComparisonWindow *open(const char *action);
    QString cell(int row, ComparisonModel::Column column) const
    {
        return m_window->table().model()->index(row, column).data().toString();
    }
    template<typename Widget>
    Widget *part(const char *side, const char *name) const
    {
        return m_window->findChild<QWidget *>(QLatin1String(side))->findChild<Widget *>(QLatin1String(name));
    }
    QString state() const { return m_window->findChild<QLabel *>(QStringLiteral("state"))->text(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ViewerWindow> m_viewer;
    ComparisonWindow *m_window = nullptr;
};

void tst_ComparisonWindow::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_viewer = std::make_unique<ViewerWindow>(ViewerSettings(m_folder->path()), [](const QString &path) {
        return syntheticCapture(path.contains(QLatin1String("short")) ? Moved - 1 : Frames);
    });
    m_viewer->show();
    m_viewer->openFiles({QStringLiteral("short.csv"), QStringLiteral("long.csv")});
    QTRY_COMPARE(tab(0).capture().rowCount(), Moved - 1);
    QTRY_COMPARE(tab(1).capture().rowCount(), Frames);
}

void tst_ComparisonWindow::cleanup()
{
    m_viewer.reset();
}

ComparisonWindow *tst_ComparisonWindow::open(const char *action)
{
    m_viewer->findChild<QAction *>(QLatin1String(action))->trigger();
    m_window = m_viewer->findChild<ComparisonWindow *>();
    return m_window;
}

void tst_ComparisonWindow::findsTheSwitchAtTheMark()
{
    tabs().setCurrentIndex(1);
    tab(1).table().setCurrentPlace(static_cast<int>(Moved));
    QVERIFY(open("compareAtMark") != nullptr);
    QCOMPARE(tab(1).capture().mark(), Moved); // the selected frame
    QTRY_VERIFY(m_window->table().model()->rowCount() > 15);
    QTRY_VERIFY(!state().contains(QLatin1String("comparing")));
    QCOMPARE(cell(0, ComparisonModel::Difference).section(QLatin1Char(';'), 0, 0),
             QStringLiteral("byte 5 bit 0: 0 → 1"));
    // A double click filters, and shows the first frame in which it is moved.
    tab(1).table().setCurrentPlace(5);
    const QModelIndex top = m_window->table().model()->index(0, ComparisonModel::Difference);
    const QString identifier = cell(0, ComparisonModel::Identifier);
    QTest::mouseDClick(m_window->table().viewport(), Qt::LeftButton, {}, m_window->table().visualRect(top).center());
    QTest::keyClick(&m_window->table(), Qt::Key_Return);
    QTRY_VERIFY(tab(1).table().currentRow() >= Moved);
    const BusFrame frame = tab(1).capture().store().frame(tab(1).table().currentRow());
    QCOMPARE(FrameColumns::identifierText(frameKey(frame.identifier, frame.flags)), identifier);
    QVERIFY(tab(1).table().currentRow() < Moved + 40);
    QVERIFY(tab(1).capture().isFiltered());
    QVERIFY(!tab(0).capture().isFiltered());
}

void tst_ComparisonWindow::partsByTime()
{
    QVERIFY(open("compare") != nullptr);
    for (const char *side : {"A", "B"}) {
        part<QComboBox>(side, "capture")->setCurrentIndex(1);
        part<QComboBox>(side, "part")->setCurrentIndex(ComparisonWindow::Range);
        QVERIFY(part<QLineEdit>(side, "from")->isVisible());
    }
    QTest::keyClicks(part<QLineEdit>("A", "to"), QStringLiteral("5 s"));
    QTest::keyClick(part<QLineEdit>("A", "to"), Qt::Key_Return);
    QTest::keyClicks(part<QLineEdit>("B", "from"), QStringLiteral("20s"));
    QTest::keyClick(part<QLineEdit>("B", "from"), Qt::Key_Return);
    QTRY_VERIFY(state().contains(QLocale().toString(10000)) && state().contains(QLocale().toString(Frames - 40000)));
    QTRY_VERIFY(!state().contains(QLatin1String("comparing")));
    int switches = 0;
    for (int row = 0; row < m_window->table().model()->rowCount(); ++row) {
        switches += cell(row, ComparisonModel::Difference).contains(QStringLiteral("byte 5 bit 0: 0 → 1")) ? 1 : 0;
    }
    QVERIFY(switches >= 18);
    part<QLineEdit>("A", "to")->clear();
    QTest::keyClicks(part<QLineEdit>("A", "to"), QStringLiteral("yesterday"));
    QTest::keyClick(part<QLineEdit>("A", "to"), Qt::Key_Return);
    QVERIFY(state().contains(QLatin1String("yesterday")));
    QCOMPARE(m_window->table().model()->rowCount(), 0);
}

void tst_ComparisonWindow::problemsAreTold()
{
    tabs().setCurrentIndex(0);
    QVERIFY(open("compareAtMark") != nullptr); // no frame is selected, none is marked
    QVERIFY(state().contains(QLatin1String("short.csv")));
    tab(0).table().setCurrentPlace(100);
    tab(0).toggleMark();
    QTRY_VERIFY(m_window->table().model()->rowCount() > 0); // by itself
}

void tst_ComparisonWindow::twoCaptures()
{
    tabs().setCurrentIndex(0);
    QVERIFY(open("compare") != nullptr);
    QCOMPARE(part<QComboBox>("A", "capture")->currentText(), QStringLiteral("short.csv"));
    QCOMPARE(part<QComboBox>("B", "capture")->currentText(), QStringLiteral("long.csv"));
    QTRY_VERIFY(state().contains(QLocale().toString(Frames)));
    QTRY_VERIFY(!state().contains(QLatin1String("comparing")));
    // The switch is not always the same there; frames and their rates are.
    QVERIFY(cell(0, ComparisonModel::Difference).contains(QLatin1String("byte 5 bit 0 moves in B")));
    QCOMPARE(m_window->table().model()->rowCount(), 21); // all have a wave
    part<QComboBox>("A", "capture")->setCurrentIndex(1);
    QTRY_COMPARE(m_window->table().model()->rowCount(), 0); // the same on both sides
    m_window->findChild<QCheckBox *>(QStringLiteral("onlyDifferent"))->click();
    QTRY_COMPARE(m_window->table().model()->rowCount(), 21);
    part<QComboBox>("A", "capture")->setCurrentIndex(0);
    QTRY_VERIFY(cell(0, ComparisonModel::Difference).contains(QLatin1String("byte 5 bit 0 moves in B")));
    auto *channels = m_window->findChild<QCheckBox *>(QStringLiteral("tellsChannels"));
    QVERIFY(!m_window->table().isColumnHidden(ComparisonModel::Channel));
    channels->click();
    QVERIFY(m_window->table().isColumnHidden(ComparisonModel::Channel));
    m_window->table().sortByColumn(ComparisonModel::CountChange, Qt::DescendingOrder);
    QVERIFY(cell(0, ComparisonModel::CountChange).startsWith(QLatin1Char('+')));
    QTest::keyClick(&m_window->table(), Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(&m_window->table(), Qt::Key_Return);
    QTRY_VERIFY(tab(0).capture().isFiltered() && tab(1).capture().isFiltered());
    QCOMPARE(tabs().currentIndex(), 1);
    QTRY_VERIFY(tab(1).table().currentRow() >= Moved);
}

void tst_ComparisonWindow::capturesComeAndGo()
{
    QVERIFY(open("compare") != nullptr);
    m_viewer->openFiles({QStringLiteral("third.csv")});
    QTRY_COMPARE(part<QComboBox>("A", "capture")->count(), 3);
    QTRY_VERIFY(m_window->table().model()->rowCount() > 0);
    const QString a = part<QComboBox>("A", "capture")->currentText();
    const int index = a == QLatin1String("short.csv") ? 0 : 1;
    emit tabs().tabCloseRequested(index);
    QTest::keyClick(&m_window->table(), Qt::Key_Return); // of a capture that is not open any more
    QTRY_COMPARE(part<QComboBox>("A", "capture")->count(), 2);
    QTRY_COMPARE(part<QComboBox>("A", "capture")->currentIndex(), -1);
    QCOMPARE(m_window->table().model()->rowCount(), 0);
    QVERIFY(!state().isEmpty());
}

void tst_ComparisonWindow::swaps()
{
    tabs().setCurrentIndex(0);
    QVERIFY(open("compare") != nullptr);
    QTRY_VERIFY(state().contains(QLocale().toString(Frames)));
    QTRY_VERIFY(m_window->table().model()->rowCount() > 0);
    part<QComboBox>("A", "part")->setCurrentIndex(ComparisonWindow::Range);
    part<QLineEdit>("A", "from")->setText(QStringLiteral("1 s"));
    QTest::mouseClick(m_window->findChild<QPushButton *>(QStringLiteral("swap")), Qt::LeftButton);
    QCOMPARE(part<QComboBox>("A", "capture")->currentText(), QStringLiteral("long.csv"));
    QCOMPARE(part<QLineEdit>("B", "from")->text(), QStringLiteral("1 s"));
    QVERIFY(part<QLineEdit>("B", "from")->isVisible() && !part<QLineEdit>("A", "from")->isVisible());
    QTRY_VERIFY(cell(0, ComparisonModel::Difference).contains(QLatin1String("moves in A")));
}

void tst_ComparisonWindow::selectionStays()
{
    QVERIFY(open("compare") != nullptr);
    m_window->findChild<QCheckBox *>(QStringLiteral("onlyDifferent"))->click();
    m_window->table().sortByColumn(ComparisonModel::Identifier, Qt::AscendingOrder);
    QTRY_COMPARE(m_window->table().model()->rowCount(), 21);
    QTRY_VERIFY(!state().contains(QLatin1String("comparing")));
    m_window->table().selectRow(2);
    QCOMPARE(cell(2, ComparisonModel::Identifier), QStringLiteral("122"));
    for (const char *side : {"A", "B"}) { // in the first 3 ms there are few identifiers
        part<QLineEdit>(side, "to")->setText(QStringLiteral("3 ms"));
        part<QComboBox>(side, "part")->setCurrentIndex(ComparisonWindow::Range);
    }
    QTRY_VERIFY(m_window->table().model()->rowCount() < 10);
    const QModelIndex current = m_window->table().currentIndex();
    QCOMPARE(current.siblingAtColumn(ComparisonModel::Identifier).data().toString(), QStringLiteral("122"));
}

void tst_ComparisonWindow::copiesAndColors()
{
    tabs().setCurrentIndex(1);
    tab(1).table().setCurrentPlace(static_cast<int>(Moved));
    QVERIFY(open("compareAtMark") != nullptr);
    QTRY_VERIFY(m_window->table().model()->rowCount() > 15);
    QTRY_VERIFY(!state().contains(QLatin1String("comparing")));
    QTest::mouseClick(m_window->findChild<QPushButton *>(QStringLiteral("copyAll")), Qt::LeftButton);
    const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), m_window->table().model()->rowCount() + 2);
    QCOMPARE(lines.first().split(QLatin1Char('\t')).size(), ComparisonModel::ColumnCount - 1); // without names
    m_window->activateWindow();
    m_window->table().setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
    QTest::keySequence(&m_window->table(), QKeySequence::Copy);
    QCOMPARE(QApplication::clipboard()->text().split(QLatin1Char('\n')).size(), 3);
    const QModelIndex bytes = m_window->table().model()->index(0, ComparisonModel::BytesB);
    QCOMPARE(bytes.data(ByteDelegate::MarksRole).toByteArray().at(5), char(ByteDelegate::Other));
    QCOMPARE(bytes.data().toString().section(QLatin1Char(' '), 5, 5), QStringLiteral("01"));
}

void tst_ComparisonWindow::model()
{
    ComparisonModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto comparisonOf = [](int identifiers) {
        auto comparison = std::make_shared<Comparison>();
        for (int i = 0; i < identifiers; ++i) {
            comparison->identifiers.emplace_back();
            comparison->identifiers.back().difference.key = static_cast<FrameKey>(i);
        }
        return comparison;
    };
    model.setComparison(comparisonOf(3));
    QCOMPARE(model.rowCount(), 3);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.setComparison(comparisonOf(3)); // others, of the same identifiers: what is selected stays
    QCOMPARE(changed.count(), 1);
    QCOMPARE(reset.count(), 0);
    model.setComparison(comparisonOf(4));
    QCOMPARE(reset.count(), 1);
    ComparedIdentifier identifier;
    identifier.difference.what = IdentifierDifference::OnlyHere;
    QCOMPARE(ComparisonModel::differenceText(identifier), QStringLiteral("only in A"));
    const auto add = [](ByteValues &values, std::initializer_list<uchar> data) {
        values.add(data.begin(), 0, static_cast<int>(data.size()));
    };
    identifier.difference.what = IdentifierDifference::OtherBits | IdentifierDifference::Rate;
    add(identifier.bytesHere, {0x12, 0x30, 0x00, 0x01});
    add(identifier.bytesHere, {0x12, 0x31, 0x00, 0x01});
    add(identifier.bytesThere, {0x3F, 0xC0, 0x00, 0x01});
    add(identifier.bytesThere, {0x3F, 0xC1, 0x06, 0x81});
    QCOMPARE(
        ComparisonModel::differenceText(identifier),
        QStringLiteral("byte 0: 12 → 3F; byte 1 & F0: 30 → C0; byte 2 & 06 moves in B; byte 3 bit 7 moves in B; rate"));
    model.setComparison(nullptr);
    QCOMPARE(model.rowCount(), 0);
}

X9_GUI_TEST(tst_ComparisonWindow)
#include "tst_ComparisonWindow.moc"
