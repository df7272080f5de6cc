#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "tests/viewer/TestSignals.h"
#include "viewer/CaptureTab.h"
#include "viewer/RowColors.h"
#include "viewer/RowCopier.h"
#include "viewer/TableLook.h"
#include "viewer/TableSettings.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolTip>
#include <QTreeWidget>
#include <QtTest>

namespace {

constexpr qint64 Frames = 150000;

/// Clicks an entry of the menu that opens when the event loop runs next.
void clickInMenu(const char *action)
{
    QTimer::singleShot(0, [action] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        for (QAction *found : menu->actions()) {
            if (found->objectName() == QLatin1String(action) || found->text() == QLatin1String(action)) {
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(found).center());
                return;
            }
        }
        menu->close();
        QFAIL(action);
    });
}

/// Types into the dialog that opens when the event loop runs next, and takes it.
void typeInDialog(const char *text)
{
    QTimer::singleShot(0, [text] {
        auto *dialog = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        auto *line = dialog->findChild<QLineEdit *>();
        line->clear();
        QTest::keyClicks(line, QString::fromLatin1(text));
        QTest::keyClick(line, Qt::Key_Return);
    });
}

} // namespace

class tst_FrameTable : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void selectionByMouseAndKeys();
    void copiesManyWithoutWaiting();
    static void everyCellMakesAFilter_data();
    void everyCellMakesAFilter();
    void keysOfTheCell();
    void theMenuIsOfTheCellBelow();
    void columnsAreRemembered();
    void columnsByTheDialog();
    void layoutComesBack();
    void oneColumnStays();
    void longDataAreShown();
    void toolTips();
    void rulesColorRows();
    void signalsInRules();
    void namesComeFromTheDatabase();
    void bookmarksInTheirPanel();
    void bookmarksByKeys();
    void goesToNumberAndTime();
    void timesAreOfWhatIsShown();

private:
    FrameTableView &table() { return m_tab->table(); }
    FilterEdit &filter() { return *m_tab->findChild<FilterEdit *>(QStringLiteral("filter")); }
    QPoint cellCenter(int place, FrameColumn column);
    void contextMenu(int place, FrameColumn column, const char *action);
    QColor rowColor(int place);
    QString shown();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<TableSettings> m_settings;
    std::unique_ptr<CaptureTab> m_tab;
};

void tst_FrameTable::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<TableSettings>(ViewerSettings(m_folder->path()));
    m_tab = std::make_unique<CaptureTab>(QStringLiteral("made-up"), syntheticCapture(Frames), m_folder->path());
    m_tab->setSettings(*m_settings);
    m_tab->resize(1300, 700);
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
    QApplication::setActiveWindow(m_tab.get());
    QTRY_COMPARE(m_tab->capture().rowCount(), Frames);
    QTRY_COMPARE(m_tab->capture().overview().covered(), Frames);
    table().setFocus();
}

void tst_FrameTable::cleanup()
{
    m_tab.reset();
    m_settings.reset();
}

QPoint tst_FrameTable::cellCenter(int place, FrameColumn column)
{
    const int section = static_cast<int>(column);
    return {table().header().sectionViewportPosition(section) + table().header().sectionSize(section) / 2,
            (place - table().firstVisible()) * table().rowHeight() + table().rowHeight() / 2};
}

void tst_FrameTable::contextMenu(int place, FrameColumn column, const char *action)
{
    const QPoint center = cellCenter(place, column);
    QTest::mouseClick(table().viewport(), Qt::RightButton, {}, center);
    clickInMenu(action);
    QContextMenuEvent event(QContextMenuEvent::Mouse, center, table().viewport()->mapToGlobal(center));
    QApplication::sendEvent(table().viewport(), &event);
}

/// The ground of a row, left of its first letter.
QColor tst_FrameTable::rowColor(int place)
{
    const QImage image = table().viewport()->grab().toImage();
    return image.pixelColor(1, cellCenter(place, FrameColumn::Number).y());
}

QString tst_FrameTable::shown()
{
    QStringList titles;
    for (int visual = 0; visual < FrameColumnCount; ++visual) {
        const int column = table().header().logicalIndex(visual);
        if (!table().header().isSectionHidden(column)) {
            titles.append(FrameColumns::title(static_cast<FrameColumn>(column)));
        }
    }
    return titles.join(QLatin1Char('|'));
}

void tst_FrameTable::selectionByMouseAndKeys()
{
    const auto copied = [this] {
        QTest::keySequence(&table(), QKeySequence::Copy);
        return QApplication::clipboard()->text().count(QLatin1Char('\n')) - 1; // without the titles
    };
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, cellCenter(2, FrameColumn::Data));
    QCOMPARE(copied(), 1);
    QTest::mouseClick(table().viewport(), Qt::LeftButton, Qt::ShiftModifier, cellCenter(6, FrameColumn::Data));
    QCOMPARE(copied(), 5);
    QTest::keyClick(&table(), Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(copied(), 4);
    QTest::keyClick(&table(), Qt::Key_PageDown, Qt::ShiftModifier);
    QCOMPARE(copied(), 4 + table().visibleRows());
    QTest::keyClick(&table(), Qt::Key_Home, Qt::ShiftModifier);
    QCOMPARE(copied(), 3);
    QTest::keyClick(&table(), Qt::Key_Down);
    QCOMPARE(copied(), 1);
}

void tst_FrameTable::copiesManyWithoutWaiting()
{
    QTest::keySequence(&table(), QKeySequence::SelectAll);
    QSignalSpy told(&table(), &FrameTableView::sig_told);
    QApplication::clipboard()->setText(QStringLiteral("before"));
    QTest::keyClick(&table(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before")); // still at it
    filter().take(QStringLiteral("number > 5"));                           // changes nothing of it
    QTRY_COMPARE_WITH_TIMEOUT(told.count(), 1, 30000);
    const QString text = QApplication::clipboard()->text();
    QCOMPARE(text.count(QLatin1Char('\n')), int(RowCopier::MaxRows) + 1);
    QVERIFY(text.contains(QStringLiteral("\n1,0.000000000,,")));
    QVERIFY(text.contains(QStringLiteral("\n2,0.000500900,0.000500900,")));
    QVERIFY(told.at(0).at(0).toString().contains(QLocale().toString(int(RowCopier::MaxRows))));
}

void tst_FrameTable::everyCellMakesAFilter_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("filter");
    const auto row = [](FrameColumn column, const char *text) {
        QTest::newRow(qPrintable(FrameColumns::title(column))) << static_cast<int>(column) << QString::fromLatin1(text);
    };
    row(FrameColumn::Number, "number == 4");
    row(FrameColumn::SinceStart, "time == 0.001502700");
    row(FrameColumn::SinceShown, "time == 0.001502700");
    row(FrameColumn::Channel, "channel == 1");
    row(FrameColumn::Direction, "dir == tx");
    row(FrameColumn::Identifier, "id == 0x133 and not ext and not lin");
    row(FrameColumn::Name, "name !~ \"\"");
    row(FrameColumn::Type, "not fd and not remote and not error and not lin");
    row(FrameColumn::Length, "len == 8");
    row(FrameColumn::Data, "data == \"D0 07 00 00 00 00 00 00\"");
}

void tst_FrameTable::everyCellMakesAFilter()
{
    QFETCH(const int, column);
    QFETCH(const QString, filter);
    const auto which = static_cast<FrameColumn>(column);
    contextMenu(3, which, "onlyThese");
    QCOMPARE(this->filter().text(), filter);
    QTRY_COMPARE(table().currentRow(), 3);
    this->filter().take({});
    contextMenu(3, which, "notThese");
    QCOMPARE(this->filter().text(), QStringLiteral("not (%1)").arg(filter));
    this->filter().take({});
    QTRY_COMPARE(m_tab->capture().rowCount(), Frames);
    // By keys: to the column, and the same.
    QApplication::setActiveWindow(m_tab.get());
    table().setFocus();
    table().setCurrentPlace(3);
    for (int i = 0; i < FrameColumnCount; ++i) {
        QTest::keyClick(&table(), Qt::Key_Left);
    }
    for (int i = 0; i < FrameColumnCount && table().currentColumn() != which; ++i) {
        QTest::keyClick(&table(), Qt::Key_Right);
    }
    QTest::keyClick(&table(), Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(this->filter().text(), filter);
}

void tst_FrameTable::keysOfTheCell()
{
    table().setCurrentPlace(3);
    table().setCurrentColumn(FrameColumn::Direction);
    QTest::keyClick(&table(), Qt::Key_F3, Qt::ControlModifier);
    QTRY_COMPARE(table().currentRow(), 23);
    QCOMPARE(m_tab->findChild<FilterEdit *>(QStringLiteral("find"))->text(), QStringLiteral("dir == tx"));
    QTest::keyClick(&table(), Qt::Key_F3, Qt::ControlModifier | Qt::ShiftModifier);
    QTRY_COMPARE(table().currentRow(), 3);
    auto *find = m_tab->findChild<FilterEdit *>(QStringLiteral("find"));
    find->setText(QStringLiteral("error")); // what stands there is looked for, taken or not
    m_tab->findNext(false);
    QTRY_COMPARE(table().currentRow(), 19);
    find->setText(QString());
    m_tab->findNext(false); // nothing to look for
    QCOMPARE(m_tab->focusWidget(), find);
    table().setFocus();
    table().setCurrentPlace(3);
    QTest::keyClick(&table(), Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(filter().text(), QStringLiteral("not (dir == tx)"));
    table().setFocus();
    filter().take({});
    table().setCurrentPlace(3);
    QTest::keyClick(&table(), Qt::Key_K, Qt::ControlModifier);
    auto *dialog = table().findChild<QDialog *>();
    QVERIFY(dialog != nullptr);
    QCOMPARE(dialog->findChild<QListWidget *>(QStringLiteral("rules"))->item(0)->text(), QStringLiteral("dir == tx"));
    dialog->close();
}

/// A click with the right button in a selection leaves it, and is of its own row all the same.
void tst_FrameTable::theMenuIsOfTheCellBelow()
{
    table().setCurrentPlace(2);
    table().setCurrentPlace(8, true);
    contextMenu(4, FrameColumn::Number, "onlyThese");
    QCOMPARE(filter().text(), QStringLiteral("number == 5"));
    filter().take({});
    table().setCurrentPlace(2);
    table().setCurrentPlace(8, true);
    contextMenu(4, FrameColumn::Number, "fromHere");
    QCOMPARE(filter().text(), QStringLiteral("number >= 5"));
    filter().take({});
    table().setCurrentPlace(0); // the first row is on screen again
    contextMenu(4, FrameColumn::Data, "toHere");
    QCOMPARE(filter().text(), QStringLiteral("number <= 5"));
    QTRY_COMPARE(m_tab->capture().rowCount(), 5);
    filter().take({});
    table().setCurrentPlace(3);
    table().setCurrentColumn(FrameColumn::Direction);
    clickInMenu("notThese"); // by the menu key it is of the current cell
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {1, 1}, table().mapToGlobal({1, 1}));
    QApplication::sendEvent(&table(), &event);
    QCOMPARE(filter().text(), QStringLiteral("not (dir == tx)"));
}

void tst_FrameTable::columnsAreRemembered()
{
    const QString before = shown();
    clickInMenu("Date and time");
    emit table().header().customContextMenuRequested({10, 5});
    QVERIFY(shown() != before);
    table().header().moveSection(table().header().visualIndex(int(FrameColumn::Data)), 0);
    table().header().resizeSection(int(FrameColumn::Channel), 222);
    const QString after = shown();
    QVERIFY(after.startsWith(QLatin1String("Data|No.|Date and time|Time [s]")));
    const auto kept = [this] {
        return TableSettings(ViewerSettings(m_folder->path())).columns();
    };
    QTRY_VERIFY(kept() == m_settings->columns());
    const ColumnLayout settingsColumns = kept();
    CaptureTab other(QStringLiteral("other"), syntheticCapture(10), m_folder->path());
    other.table().setColumnLayout(settingsColumns);
    QCOMPARE(other.table().columnLayout().columns()[0].column, FrameColumn::Data);
    QVERIFY(std::abs(other.table().header().sectionSize(int(FrameColumn::Channel)) - 222) < 3);
    QVERIFY(!other.table().header().isSectionHidden(int(FrameColumn::Absolute)));
    // The mark brings its column, which is not remembered.
    m_tab->toggleMark();
    table().setCurrentPlace(1);
    m_tab->toggleMark();
    QVERIFY(shown().contains(QLatin1String("Since mark")));
    other.table().setColumnLayout(table().columnLayout());
    QVERIFY(other.table().header().isSectionHidden(int(FrameColumn::SinceMark)));
}

void tst_FrameTable::columnsByTheDialog()
{
    m_tab->look().slot_chooseColumns();
    auto *dialog = table().findChild<QDialog *>();
    auto *list = dialog->findChild<QListWidget *>(QStringLiteral("columns"));
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Down);  // Date and time
    QTest::keyClick(list, Qt::Key_Space); // on
    QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("up")), Qt::LeftButton);
    QTest::keyClick(list, Qt::Key_Return);
    QTRY_VERIFY(shown().startsWith(QLatin1String("Date and time|No.|")));
    const auto firstKept = [this] {
        return TableSettings(ViewerSettings(m_folder->path())).columns().columns().front();
    };
    QTRY_COMPARE(firstKept().column, FrameColumn::Absolute);
    QVERIFY(firstKept().isShown);
    QTRY_VERIFY(table().findChild<QDialog *>() == nullptr);
    m_tab->look().slot_chooseColumns();
    dialog = table().findChild<QDialog *>();
    list = dialog->findChild<QListWidget *>(QStringLiteral("columns"));
    QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("down")), Qt::LeftButton);
    QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("standard")), Qt::LeftButton);
    for (int i = 0; i < list->count(); ++i) {
        list->item(i)->setCheckState(Qt::Unchecked);
    }
    QTest::keyClick(list, Qt::Key_Return); // a table without columns is none
    QVERIFY(dialog->isVisible());
    QTest::keyClick(dialog, Qt::Key_Escape);
    QTRY_VERIFY(shown().startsWith(QLatin1String("Date and time|No.|")));
}

void tst_FrameTable::oneColumnStays()
{
    table().setColumnLayout(ColumnLayout({{FrameColumn::Data, 20, true}}));
    bool isEnabled = true;
    QTimer::singleShot(0, this, [&isEnabled] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        isEnabled = menu->actions().at(int(FrameColumn::Data))->isEnabled();
        menu->close();
    });
    emit table().header().customContextMenuRequested({10, 5});
    QVERIFY(!isEnabled);
}

void tst_FrameTable::longDataAreShown()
{
    const int section = int(FrameColumn::Data);
    table().header().resizeSection(section, 60);
    table().setCurrentPlace(40); // frames of 24 bytes are on screen
    table().viewport()->repaint();
    const QFontMetrics metrics(table().viewport()->font());
    const QString text = FrameColumns::groupedData(QString(24 * 3 - 1, QLatin1Char('0')));
    QTRY_VERIFY(table().header().sectionSize(section) >= metrics.horizontalAdvance(text));
    m_tab->resize(600, 700);
    QTRY_VERIFY(table().horizontalScrollBar()->maximum() > 0);
    table().setCurrentColumn(FrameColumn::Number);
    QCOMPARE(table().horizontalScrollBar()->value(), 0);
    table().setCurrentColumn(FrameColumn::Data);
    QVERIFY(table().horizontalScrollBar()->value() > 0);
}

void tst_FrameTable::toolTips()
{
    m_tab->setBookmark(11, QStringLiteral("<here>"));
    const auto toolTip = [this](int place, FrameColumn column) {
        const QPoint center = cellCenter(place, column);
        QHelpEvent event(QEvent::ToolTip, center, table().viewport()->mapToGlobal(center));
        QApplication::sendEvent(table().viewport(), &event);
        return QToolTip::text();
    };
    const QString data = toolTip(11, FrameColumn::Data);
    QVERIFY2(data.contains(QLatin1String("16  00 00 00 00 00 00 00 AA")), qPrintable(data));
    QVERIFY(data.contains(QLatin1String("&lt;here&gt;")));
    QCOMPARE(toolTip(3, FrameColumn::Direction), QStringLiteral("Tx"));
}

void tst_FrameTable::rulesColorRows()
{
    const QColor sent = rowColor(3);
    QCOMPARE(sent, QColor(0xDDEBFF));
    QVERIFY(rowColor(4) != sent);
    table().verticalScrollBar()->setValue(19);
    QCOMPARE(rowColor(19), QColor(0xFFD0D0));
    table().verticalScrollBar()->setValue(0);
    m_settings->setRules({{true, QStringLiteral("number == 5"), std::nullopt, 0x00FF00}});
    QCOMPARE(rowColor(4), QColor(0x00FF00));
    QVERIFY(rowColor(3) != sent);
    m_settings->setRules({{false, QStringLiteral("number == 5"), std::nullopt, 0x00FF00}});
    QVERIFY(rowColor(4) != QColor(0x00FF00));
}

void tst_FrameTable::signalsInRules()
{
    m_settings->setRules({{true, QStringLiteral("Temp > -500"), std::nullopt, 0x00FF00}});
    QVERIFY(rowColor(7) != QColor(0x00FF00));
    m_tab->capture().setSignalSource(std::make_shared<TestSignals>());
    QCOMPARE(rowColor(7), QColor(0x00FF00));
    m_tab->capture().setSignalSource(nullptr);
    QVERIFY(rowColor(7) != QColor(0x00FF00));
}

void tst_FrameTable::namesComeFromTheDatabase()
{
    m_tab->capture().setSignalSource(std::make_shared<TestSignals>());
    table().setCurrentPlace(7);
    table().setCurrentColumn(FrameColumn::Name);
    QCOMPARE(table().cellFilter(), QStringLiteral("name == \"EngineTemp\""));
    QTest::keyClick(&table(), Qt::Key_Return, Qt::ControlModifier);
    QTRY_COMPARE(m_tab->capture().rowCount(), Frames / 20);
    // What was taken goes on with the names of another database.
    filter().take(QStringLiteral("Temp == -40"));
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    const qint64 count = m_tab->capture().rowCount();
    QVERIFY(count > 0);
    class OtherSignals : public TestSignals
    {
        double value(int /*signal*/, const BusFrame & /*frame*/) const override { return 5; }
    };
    m_tab->capture().setSignalSource(std::make_shared<OtherSignals>());
    QTRY_COMPARE(m_tab->capture().rowCount(), 0);
    m_tab->capture().setSignalSource(nullptr);
    QVERIFY(!filter().problem().isEmpty());
}

void tst_FrameTable::bookmarksInTheirPanel()
{
    auto *list = m_tab->findChild<QTreeWidget *>(QStringLiteral("bookmarks"));
    m_tab->setBookmark(500, QStringLiteral("here"));
    m_tab->setBookmark(90000, QStringLiteral("there"));
    m_tab->panels().setCurrentWidget(list->parentWidget());
    QCOMPARE(list->topLevelItemCount(), 2);
    QCOMPARE(list->topLevelItem(1)->text(0), QStringLiteral("90001"));
    QCOMPARE(list->topLevelItem(1)->text(3), QStringLiteral("there"));
    QVERIFY(!list->topLevelItem(1)->text(1).isEmpty());
    list->setFocus();
    list->setCurrentItem(list->topLevelItem(1));
    QTest::keyClick(list, Qt::Key_Return);
    QTRY_COMPARE(table().currentRow(), 90000);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_F2);
    QWidget *editor = list->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor != nullptr);
    QTest::keyClicks(editor, QStringLiteral("elsewhere"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(m_tab->capture().bookmarks().note(90000), QStringLiteral("elsewhere"));
    QTRY_VERIFY(list->currentItem() != nullptr && list->currentItem()->text(0) == QLatin1String("90001"));
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(list->topLevelItemCount(), 1);
    QVERIFY(!m_tab->capture().bookmarks().contains(90000));
    QCOMPARE(Bookmarks::load(m_folder->path(), QStringLiteral("made-up")).notes().size(), 1);
}

void tst_FrameTable::bookmarksByKeys()
{
    const auto *problem = m_tab->findChild<QLabel *>(QStringLiteral("problem"));
    for (const int place : {30, 20}) {
        table().setCurrentPlace(place);
        typeInDialog("note");
        m_tab->editBookmark();
    }
    QCOMPARE(m_tab->capture().bookmarks().notes().size(), 2);
    m_tab->goToBookmark(false);
    QCOMPARE(table().currentRow(), 30);
    QCOMPARE(problem->text(), QStringLiteral("note"));
    m_tab->goToBookmark(false);
    QCOMPARE(table().currentRow(), 30);
    QCOMPARE(problem->text(), QStringLiteral("There is no further bookmark."));
    m_tab->goToBookmark(true);
    QCOMPARE(table().currentRow(), 20);
    typeInDialog("");
    m_tab->editBookmark();
    QVERIFY(!m_tab->capture().bookmarks().contains(20));
}

void tst_FrameTable::goesToNumberAndTime()
{
    const auto goTo = [this](const char *text) {
        typeInDialog(text);
        m_tab->goTo();
        return table().currentRow();
    };
    QCOMPARE(goTo("70007"), qint64(70006));
    QCOMPARE(goTo("12.5s"), qint64(25000));
    QCOMPARE(goTo("500 ms"), qint64(1000));
    QCOMPARE(goTo("nonsense"), qint64(1000));
    QVERIFY(m_tab->findChild<QLabel *>(QStringLiteral("problem"))->text().contains(QLatin1String("nonsense")));
}

/// What hidden columns are like is kept as well, and asking for it changes nothing.
void tst_FrameTable::layoutComesBack()
{
    QSignalSpy changed(&table(), &FrameTableView::sig_columnsChanged);
    const ColumnLayout layout = table().columnLayout();
    QVERIFY(table().columnLayout() == layout);
    table().setColumnLayout(layout);
    QVERIFY(changed.isEmpty());
    const ColumnLayout standard;
    for (const ColumnLayout::Column &column : standard.columns()) {
        QCOMPARE(column.isShown, !table().header().isSectionHidden(int(column.column)));
    }
    for (const ColumnLayout::Column &column : layout.columns()) {
        QVERIFY(column.width >= 4);
    }
}

/// The time since the frame above, whichever that is.
void tst_FrameTable::timesAreOfWhatIsShown()
{
    filter().take(QStringLiteral("dir == tx"));
    QTRY_COMPARE(m_tab->capture().rowCount(), Frames / 20);
    const auto cell = [this](FrameColumn column) {
        table().setColumnLayout(ColumnLayout({{column, 20, true}}));
        table().setCurrentPlace(1);
        QTest::keySequence(&table(), QKeySequence::Copy);
        return QApplication::clipboard()->text().split(QLatin1Char('\n')).at(1);
    };
    QCOMPARE(cell(FrameColumn::SinceStart), QStringLiteral("0.011501800"));
    QCOMPARE(cell(FrameColumn::SinceShown), QStringLiteral("0.009999100"));
    QCOMPARE(cell(FrameColumn::SinceIdentifier), QStringLiteral("0.009999100"));
    QVERIFY(cell(FrameColumn::Absolute).contains(QLatin1String(":00.011501800")));
}

X9_GUI_TEST(tst_FrameTable)
#include "tst_FrameTable.moc"
