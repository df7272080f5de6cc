#include "exchange/database/DatabaseFile.h"
#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/BitView.h"
#include "viewer/CaptureSignals.h"
#include "viewer/CaptureTab.h"
#include "viewer/PlotPanel.h"
#include "viewer/ValueTreeModel.h"
#include "viewer/ViewerWindow.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCheckBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtTest>

namespace {

constexpr qint64 Frames = 100000;
enum Panel { Frame = 1, Values, Files };

} // namespace

class tst_CaptureSignals : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void namesAndFilters();
    void decodesTheSelectedFrame();
    void framesWithoutSignals();
    void tableAndBitsSelectEachOther();
    void keysGoOverTheBits();
    void longFramesScroll();
    void valuesAtTheSelectedFrame();
    void valuesFollowTheEnd();
    void searchesAndSees();
    void filtersAndPlots();
    void doubleClickPlots();
    static void treeModel();
    void databasesAreListed();
    void channelsAreTyped();
    void menus();
    void dropsOntoTheWindow();
    void damagedDatabasesAreTold();
    void nothingWithoutACapture();
    void comesBackWithTheCapture();

private:
    void open();
    void addEngine();
    QString path(const char *name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    void write(const char *name, const QByteArray &content) const;
    void show(Panel panel) { m_tab->panels().setCurrentIndex(panel); }
    QTableWidget &table() { return *m_tab->findChild<QTableWidget *>(QStringLiteral("signals")); }
    QTableWidget &files() { return *m_tab->findChild<QTableWidget *>(QStringLiteral("databases")); }
    BitView &bits() { return *m_tab->findChild<BitView *>(QStringLiteral("bits")); }
    QTreeView &tree() { return *m_tab->findChild<QTreeView *>(QStringLiteral("values")); }
    QString head() { return m_tab->findChild<QLabel *>(QStringLiteral("frame"))->text(); }
    QPushButton &button(const char *name) { return *m_tab->findChild<QPushButton *>(QString::fromLatin1(name)); }
    QStringList row(const char *signal);
    QModelIndex valueIndex(const char *message, const char *signal);
    QString value(const char *message, const char *signal, int column = ValueTreeModel::Value);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ViewerWindow> m_window;
    CaptureTab *m_tab = nullptr;
};

void tst_CaptureSignals::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    write("engine.dbc", syntheticDatabase());
    m_window = std::make_unique<ViewerWindow>(ViewerSettings(m_folder->path()),
                                              [](const QString & /*path*/) { return syntheticCapture(Frames); });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    open();
}

void tst_CaptureSignals::cleanup()
{
    m_window.reset();
}

void tst_CaptureSignals::open()
{
    m_window->openFiles({path("drive.csv")});
    m_tab = m_window->currentTab();
    QTRY_COMPARE(m_tab->capture().overview().covered(), Frames);
}

void tst_CaptureSignals::addEngine()
{
    m_tab->captureSignals().add({path("engine.dbc")});
    QTRY_VERIFY(m_tab->capture().signalSource() != nullptr);
}

void tst_CaptureSignals::write(const char *name, const QByteArray &content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

/// The cells of a signal of the selected frame.
QStringList tst_CaptureSignals::row(const char *signal)
{
    const QList<QTableWidgetItem *> found = table().findItems(QString::fromLatin1(signal), Qt::MatchExactly);
    QStringList cells;
    for (int column = 1; !found.isEmpty() && column < table().columnCount(); ++column) {
        cells.append(table().item(found.first()->row(), column)->text());
    }
    return cells;
}

QModelIndex tst_CaptureSignals::valueIndex(const char *message, const char *signal)
{
    const QAbstractItemModel &model = *tree().model();
    for (int i = 0; i < model.rowCount(); ++i) {
        const QModelIndex parent = model.index(i, 0);
        if (!parent.data().toString().startsWith(QLatin1String(message))) {
            continue;
        }
        for (int k = 0; k < model.rowCount(parent); ++k) {
            if (model.index(k, 0, parent).data().toString() == QLatin1String(signal)) {
                return model.index(k, 0, parent);
            }
        }
        return *signal == '\0' ? parent : QModelIndex();
    }
    return {};
}

QString tst_CaptureSignals::value(const char *message, const char *signal, int column)
{
    const QModelIndex index = valueIndex(message, signal);
    return index.sibling(index.row(), column).data().toString();
}

void tst_CaptureSignals::namesAndFilters()
{
    auto *filter = m_tab->findChild<FilterEdit *>(QStringLiteral("filter"));
    QVERIFY(!filter->take(QStringLiteral("OilPressureLow == 1")));
    addEngine();
    QVERIFY(filter->problem().isEmpty()); // what was wrong without the database
    QVERIFY(filter->take(QStringLiteral("OilPressureLow == 1")));
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    QCOMPARE(m_tab->capture().rowAt(0), qint64(30020));
    QVERIFY(filter->take(QStringLiteral("name ~ \"door\"")));
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    QCOMPARE(m_tab->capture().rowCount(), Frames / 20);
    const FrameTableModel model(m_tab->capture());
    auto *overview = m_tab->findChild<QTableView *>(QStringLiteral("overview"));
    QCOMPARE(overview->model()->index(0, OverviewModel::Name).data().toString(), QStringLiteral("Engine"));
}

void tst_CaptureSignals::decodesTheSelectedFrame()
{
    addEngine();
    show(Frame);
    m_tab->table().setCurrentPlace(40);
    QVERIFY(head().contains(QLatin1String("41")) && head().contains(QLatin1String("Engine (100)")));
    QCOMPARE(row("Speed"), (QStringList{QStringLiteral("2011"), QStringLiteral("1005.5"), QStringLiteral("rpm"), {}}));
    QCOMPARE(row("OilPressureLow").last(), QStringLiteral("pressure"));
    QCOMPARE(row("Temperature").at(1), QStringLiteral("-40"));
    QCOMPARE(table().item(0, 0)->toolTip(), QStringLiteral("Crankshaft"));
    m_tab->table().setCurrentPlace(40040);
    QCOMPARE(row("OilPressureLow").last(), QStringLiteral("NO PRESSURE"));
    m_tab->table().setCurrentPlace(21); // Doors, page 1
    QCOMPARE(row("LevelOfPageOne").size(), 4);
    QVERIFY(row("LevelOfPageTwo").isEmpty());
    m_tab->table().setCurrentPlace(41); // page 2
    QVERIFY(row("LevelOfPageOne").isEmpty());
    QVERIFY(!row("LevelOfPageTwo").isEmpty());
}

void tst_CaptureSignals::framesWithoutSignals()
{
    show(Frame);
    m_tab->table().setCurrentPlace(40);
    QVERIFY(head().contains(QLatin1String("41"))); // and says how to come by a database
    QVERIFY(bits().bitRect(63).isValid());
    addEngine();
    QCOMPARE(table().rowCount(), 6);
    m_tab->table().setCurrentPlace(2);
    QCOMPARE(table().rowCount(), 0);
    QVERIFY(bits().bitRect(63).isValid());
    m_tab->captureSignals().databases().remove(0);
    QTRY_VERIFY(m_tab->capture().signalSource() == nullptr);
    m_tab->table().setCurrentPlace(40);
    QCOMPARE(table().rowCount(), 0);
}

void tst_CaptureSignals::tableAndBitsSelectEachOther()
{
    addEngine();
    show(Frame);
    m_tab->table().setCurrentPlace(40);
    const auto click = [this](int bit) {
        QTest::mouseClick(bits().viewport(), Qt::LeftButton, {}, bits().bitRect(bit).center());
    };
    const auto selected = [this] {
        return table().selectedItems().isEmpty() ? QString() : table().selectedItems().first()->text();
    };
    click(25);
    QCOMPARE(selected(), QStringLiteral("Gear"));
    click(24); // no signal has it
    QCOMPARE(selected(), QString());
    QCOMPARE(bits().selected(), -1);
    click(30);
    QCOMPARE(selected(), QStringLiteral("Torque"));
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, table().visualItemRect(table().item(0, 0)).center());
    QCOMPARE(bits().selected(), 0);
    QCOMPARE(bits().currentBit(), 15);  // its most significant
    m_tab->table().setCurrentPlace(60); // the next frame of the message keeps it
    QCOMPARE(selected(), QStringLiteral("Speed"));
    QCOMPARE(bits().selected(), 0);
    QVERIFY(BitView::colour(0, m_tab->palette()) != BitView::colour(1, m_tab->palette()));
}

void tst_CaptureSignals::keysGoOverTheBits()
{
    addEngine();
    show(Frame);
    m_tab->table().setCurrentPlace(40);
    QVERIFY(!bits().accessibleName().isEmpty());
    bits().setFocus();
    QTest::keyClick(&bits(), Qt::Key_Home);
    QCOMPARE(bits().currentBit(), 7);
    QCOMPARE(bits().selected(), 0);
    QTest::keyClick(&bits(), Qt::Key_Right);
    QCOMPARE(bits().currentBit(), 6);
    for (int i = 0; i < 2; ++i) {
        QTest::keyClick(&bits(), Qt::Key_Down);
    }
    QCOMPARE(bits().currentBit(), 22);
    QCOMPARE(table().selectedItems().first()->text(), QStringLiteral("Torque"));
    QVERIFY(bits().accessibleDescription().contains(QLatin1String("Torque")));
    QTest::keyClick(&bits(), Qt::Key_End);
    QCOMPARE(bits().currentBit(), 56);
    QTest::keyClick(&bits(), Qt::Key_Down);
    QCOMPARE(bits().currentBit(), 56);
    QTest::keyClick(&bits(), Qt::Key_Up);
    QTest::keyClick(&bits(), Qt::Key_Left);
    QCOMPARE(bits().currentBit(), 49);
}

void tst_CaptureSignals::longFramesScroll()
{
    addEngine();
    show(Frame);
    m_tab->table().setCurrentPlace(11);
    QCOMPARE(row("Distance").at(2), QStringLiteral("m"));
    QVERIFY(bits().verticalScrollBar()->maximum() > 0);
    QVERIFY(!bits().viewport()->rect().contains(bits().bitRect(184)));
    table().selectRow(1); // Quality, in the last byte
    QVERIFY(bits().viewport()->rect().contains(bits().bitRect(184)));
    QVERIFY(bits().grab().toImage().pixelColor(bits().bitRect(184).center()).isValid());
}

void tst_CaptureSignals::valuesAtTheSelectedFrame()
{
    addEngine();
    show(Values);
    m_tab->table().setCurrentPlace(42);
    QTRY_COMPARE(value("Engine", "Speed"), QStringLiteral("1005.5"));
    QCOMPARE(value("Engine", "Speed", ValueTreeModel::Unit), QStringLiteral("rpm"));
    QVERIFY(value("Engine", "Speed", ValueTreeModel::Time).startsWith(QLatin1String("0.0200")));
    QCOMPARE(value("Engine", "OilPressureLow", ValueTreeModel::Text), QStringLiteral("pressure"));
    QVERIFY(value("Doors", "LevelOfPageOne", ValueTreeModel::Time).startsWith(QLatin1String("0.0105")));
    QVERIFY(value("Doors", "LevelOfPageTwo", ValueTreeModel::Time).startsWith(QLatin1String("0.0205")));
    QCOMPARE(value("Climate", "Fan"), QString());
    QVERIFY(value("Engine", "").startsWith(QLatin1String("DB 07")));
    m_tab->table().setCurrentPlace(40040);
    QTRY_COMPARE(value("Engine", "OilPressureLow", ValueTreeModel::Text), QStringLiteral("NO PRESSURE"));
    m_tab->table().setCurrentPlace(0);
    QTRY_COMPARE(value("Doors", "Page"), QString());
}

void tst_CaptureSignals::valuesFollowTheEnd()
{
    addEngine();
    show(Values);
    const auto *state = m_tab->findChild<QLabel *>(QStringLiteral("valuesAt"));
    QTRY_VERIFY(state->text().contains(QLocale().toString(Frames))); // nothing is selected yet
    m_tab->table().setCurrentPlace(40);
    QTRY_VERIFY(state->text().endsWith(QLatin1String("41")));
    m_tab->table().scrollToEnd();
    QTRY_VERIFY(state->text().contains(QLocale().toString(Frames)));
    QTRY_VERIFY(value("Engine", "Speed", ValueTreeModel::Time).startsWith(QLatin1String("49.99")));
}

void tst_CaptureSignals::searchesAndSees()
{
    addEngine();
    show(Values);
    const QAbstractItemModel &model = *tree().model();
    QCOMPARE(model.rowCount(), 5);
    QTRY_VERIFY(!value("Engine", "Speed").isEmpty());
    m_tab->findChild<QCheckBox *>(QStringLiteral("onlySeen"))->click();
    QCOMPARE(model.rowCount(), 4); // without Climate
    auto *search = m_tab->findChild<QLineEdit *>(QStringLiteral("search"));
    QTest::keyClicks(search, QStringLiteral("oilp"));
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.rowCount(model.index(0, 0)), 1);
    QVERIFY(tree().isExpanded(model.index(0, 0)));
    search->setText(QStringLiteral("doors"));
    QCOMPARE(model.rowCount(model.index(0, 0)), 4);
    search->setText(QStringLiteral("nowhere"));
    QCOMPARE(model.rowCount(), 0);
    search->clear();
    QCOMPARE(model.rowCount(), 4);
}

void tst_CaptureSignals::filtersAndPlots()
{
    addEngine();
    show(Values);
    QVERIFY(!button("plotThis").isEnabled() && !button("onlyThis").isEnabled());
    tree().expandAll();
    tree().setCurrentIndex(valueIndex("Engine", ""));
    QVERIFY(!button("plotThis").isEnabled());
    QTest::mouseClick(&button("onlyThis"), Qt::LeftButton);
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    QCOMPARE(m_tab->capture().rowCount(), Frames / 20);
    m_tab->findChild<FilterEdit *>(QStringLiteral("filter"))->take({});
    tree().setCurrentIndex(valueIndex("Doors", "LevelOfPageTwo"));
    QTest::mouseClick(&button("plotThis"), Qt::LeftButton);
    QCOMPARE(m_tab->panels().currentWidget(), &m_tab->plots());
    QVERIFY(m_tab->plots().curves().indexOf(QStringLiteral("Doors.LevelOfPageTwo")) >= 0);
    show(Values);
    QTest::mouseClick(&button("onlyThis"), Qt::LeftButton);
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    QCOMPARE(m_tab->capture().rowAt(0), qint64(41)); // the first with that page
    emit tree().customContextMenuRequested(tree().visualRect(tree().currentIndex()).center());
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu != nullptr);
    QCOMPARE(menu->actions().size(), 3);
    menu->close();
    show(Frame);
    m_tab->table().setCurrentPlace(0);
    emit table().customContextMenuRequested(table().visualItemRect(table().item(0, 0)).center());
    QVERIFY(QApplication::activePopupWidget() != nullptr);
    qobject_cast<QMenu *>(QApplication::activePopupWidget())->actions().first()->trigger();
    QVERIFY(m_tab->plots().curves().indexOf(QStringLiteral("Doors.Page")) >= 0);
    QApplication::activePopupWidget()->close();
}

void tst_CaptureSignals::doubleClickPlots()
{
    addEngine();
    show(Values);
    tree().expandAll();
    const auto doubleClick = [](QAbstractItemView &view, const QRect &cell) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell.center());
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, cell.center());
    };
    const PlottedCurves &curves = m_tab->plots().curves();
    doubleClick(tree(), tree().visualRect(valueIndex("Engine", "")));
    QCOMPARE(curves.count(), 0); // a message is no number
    tree().expandAll();
    doubleClick(tree(), tree().visualRect(valueIndex("Doors", "LevelOfPageTwo")));
    QCOMPARE(m_tab->panels().currentWidget(), &m_tab->plots());
    QVERIFY(curves.indexOf(QStringLiteral("Doors.LevelOfPageTwo")) >= 0);
    show(Frame);
    m_tab->table().setCurrentPlace(0);
    doubleClick(table(), table().visualItemRect(table().item(0, 0)));
    QCOMPARE(m_tab->panels().currentWidget(), &m_tab->plots());
    QVERIFY(curves.indexOf(QStringLiteral("Engine.Speed")) >= 0);
    show(Frame);
    table().setFocus();
    table().setCurrentCell(1, 0);
    QTest::keyClick(&table(), Qt::Key_Return);
    QCOMPARE(m_tab->panels().currentWidget(), &m_tab->plots());
    QCOMPARE(curves.count(), 3);
}

void tst_CaptureSignals::treeModel()
{
    BusFrameStore store;
    ValueTreeModel model(store);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto source = std::make_shared<const DatabaseSignals>(std::vector<DatabaseSignals::Part>{
        {std::make_shared<const Database>(parseDatabase(syntheticDatabase())), QStringLiteral("engine"), {}}});
    model.setSource(source);
    QCOMPARE(model.rowCount(), 5);
    LastSignals::Rows rows;
    model.setRows(rows); // of no source
    rows.source = source;
    rows.ofMessages.assign(static_cast<std::size_t>(source->messageCount()), -1);
    rows.ofSignals.assign(static_cast<std::size_t>(source->signalCount()), -1);
    model.setRows(rows);
    model.setSource(nullptr);
    QCOMPARE(model.rowCount(), 0);
}

void tst_CaptureSignals::databasesAreListed()
{
    show(Files);
    write("two.dbc", syntheticDatabase() + "BO_ none\n");
    addEngine();
    m_tab->captureSignals().add({path("two.dbc")});
    QTRY_VERIFY(!m_tab->captureSignals().databases().isLoading());
    QCOMPARE(files().rowCount(), 2);
    QCOMPARE(files().item(0, 0)->text(), QStringLiteral("engine.dbc"));
    QCOMPARE(files().item(0, 2)->text(), QStringLiteral("5"));
    QCOMPARE(files().item(0, 3)->text(), QStringLiteral("14"));
    files().setCurrentCell(1, 0);
    const QString found = m_tab->findChild<QPlainTextEdit *>(QStringLiteral("databaseFindings"))->toPlainText();
    QVERIFY(found.contains(QStringLiteral("two.dbc")));
    QVERIFY(found.contains(QLatin1String("Engine")));                              // is the first one's
    QVERIFY(found.contains(QString::number(syntheticDatabase().count('\n') + 1))); // the line
    QTest::mouseClick(&button("removeDatabase"), Qt::LeftButton);
    QTRY_COMPARE(files().rowCount(), 1);
    QTest::mouseClick(&button("reloadDatabases"), Qt::LeftButton);
    QTRY_VERIFY(!m_tab->captureSignals().databases().isLoading());
    QTest::mouseClick(&button("removeDatabase"), Qt::LeftButton);
    QVERIFY(!button("removeDatabase").isEnabled());
}

void tst_CaptureSignals::channelsAreTyped()
{
    show(Files);
    addEngine();
    const auto type = [this](const char *text) {
        files().item(0, 1)->setText(QString::fromLatin1(text));
        QTRY_VERIFY(!m_tab->captureSignals().databases().isLoading());
    };
    type("2");
    QCOMPARE(m_tab->captureSignals().databases().entries().front().choice.channels, QVector<int>{1});
    type("nonsense");
    QTRY_COMPARE(files().item(0, 1)->text(), QStringLiteral("2"));
    type("");
    QVERIFY(m_tab->captureSignals().databases().entries().front().choice.channels.isEmpty());
}

void tst_CaptureSignals::menus()
{
    auto *menu = m_window->findChild<QMenu *>(QStringLiteral("signalMenu"));
    auto *recent = menu->findChild<QMenu *>(QStringLiteral("recentDatabases"));
    auto *remove = menu->findChild<QMenu *>(QStringLiteral("removeMenu"));
    emit menu->aboutToShow();
    QVERIFY(!recent->isEnabled() && !remove->isEnabled());
    addEngine();
    m_window->openFiles({path("other.csv")});
    m_tab = m_window->currentTab();
    emit menu->aboutToShow();
    QCOMPARE(recent->actions().size(), 1); // offered for another capture
    QVERIFY(!remove->isEnabled());
    recent->actions().first()->trigger();
    QTRY_VERIFY(m_tab->capture().signalSource() != nullptr);
    emit menu->aboutToShow();
    QCOMPARE(remove->actions().size(), 1);
    remove->actions().first()->trigger();
    QTRY_VERIFY(m_tab->capture().signalSource() == nullptr);
    menu->actions().last()->trigger();
    QCOMPARE(m_tab->panels().currentIndex(), int(Files));
}

void tst_CaptureSignals::dropsOntoTheWindow()
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path("engine.dbc"))});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(m_window.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &drop);
    QCOMPARE(m_window->findChild<QTabWidget *>(QStringLiteral("tabs"))->count(), 1);
    QTRY_VERIFY(m_tab->capture().signalSource() != nullptr);
}

void tst_CaptureSignals::damagedDatabasesAreTold()
{
    write("noise.ldf", QByteArray("LIN_description_file;\n") + QByteArray(3000, '\xc3'));
    m_tab->captureSignals().add({path("noise.ldf")});
    QTRY_COMPARE(m_tab->panels().currentIndex(), int(Files));
    QVERIFY(m_tab->findChild<QLabel *>(QStringLiteral("problem"))->text().contains(QLatin1String("noise.ldf")));
    QVERIFY(m_tab->findChild<QPlainTextEdit *>(QStringLiteral("databaseFindings"))
                ->toPlainText()
                .contains(QLatin1String("noise.ldf")));
    QVERIFY(m_tab->capture().signalSource() == nullptr);
}

void tst_CaptureSignals::nothingWithoutACapture()
{
    ViewerWindow window(ViewerSettings(path("own")), [](const QString & /*path*/) { return syntheticCapture(10); });
    window.show();
    window.openFiles({path("engine.dbc")});
    QVERIFY(window.currentTab() == nullptr);
    QTRY_VERIFY(QApplication::activeModalWidget() != nullptr);
    QApplication::activeModalWidget()->close();
    auto *menu = window.findChild<QMenu *>(QStringLiteral("signalMenu"));
    emit menu->aboutToShow();
    QVERIFY(!menu->actions().first()->isEnabled());
}

void tst_CaptureSignals::comesBackWithTheCapture()
{
    addEngine();
    m_window = std::make_unique<ViewerWindow>(ViewerSettings(m_folder->path()),
                                              [](const QString & /*path*/) { return syntheticCapture(Frames); });
    m_window->show();
    open();
    QTRY_VERIFY(m_tab->capture().signalSource() != nullptr);
}

X9_GUI_TEST(tst_CaptureSignals)
#include "tst_CaptureSignals.moc"
