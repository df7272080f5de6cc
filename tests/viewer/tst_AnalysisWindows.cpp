#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "viewer/AnalysisPlot.h"
#include "viewer/BusLoadWindow.h"
#include "viewer/ByteDelegate.h"
#include "viewer/CaptureTab.h"
#include "viewer/PeriodWindow.h"
#include "viewer/ViewerWindow.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <qwt_scale_div.h>

namespace {

constexpr qint64 Frames = 50000;

} // namespace

/// Histogram, bus load, and what the overview offers.
class tst_AnalysisWindows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void actionsNeedACapture();
    void overviewMenu();
    void overviewMarksChangedBytes();
    void histogram();
    void histogramClickGoesToFrames();
    void histogramFiles();
    void busLoad();
    void busLoadRatesAreKept();
    void busLoadEditing();
    void busLoadNextAboveTheLimit();
    void busLoadFiles();
    void windowsGoWithTheirCapture();
    static void bitRates_data();
    static void bitRates();
    void damagedMemory();
    static void plotZooms();
    static void plotCursor();
    static void overviewFigures();

private:
    CaptureTab &tab() { return *m_viewer->currentTab(); }
    QTableView &overview() { return *tab().findChild<QTableView *>(QStringLiteral("overview")); }
    QAction *overviewAction(const char *name) { return overview().findChild<QAction *>(QLatin1String(name)); }
    template<typename Window>
    Window *open(const char *action)
    {
        m_viewer->findChild<QAction *>(QLatin1String(action))->trigger();
        return tab().findChild<Window *>();
    }
    /// Selects an identifier by the text of its cell.
    void select(const char *identifier);
    QString filter() { return tab().findChild<FilterEdit *>(QStringLiteral("filter"))->text(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ViewerWindow> m_viewer;
};

void tst_AnalysisWindows::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_viewer = std::make_unique<ViewerWindow>(ViewerSettings(m_folder->path()),
                                              [](const QString & /*path*/) { return syntheticCapture(Frames); });
    m_viewer->show();
    QVERIFY(QTest::qWaitForWindowActive(m_viewer.get()));
    m_viewer->openFiles({QStringLiteral("drive.csv")});
    QTRY_COMPARE(tab().capture().overview().covered(), Frames);
}

void tst_AnalysisWindows::cleanup()
{
    m_viewer.reset();
}

void tst_AnalysisWindows::select(const char *identifier)
{
    const QAbstractItemModel &model = *overview().model();
    QTRY_COMPARE(model.rowCount(), 21);
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.index(row, OverviewModel::Identifier).data().toString() == QLatin1String(identifier)) {
            overview().selectRow(row);
            return;
        }
    }
    QFAIL("no such identifier");
}

void tst_AnalysisWindows::actionsNeedACapture()
{
    const char *names[] = {"compare", "compareAtMark", "periods", "busLoad"};
    for (const char *name : names) {
        QVERIFY(m_viewer->findChild<QAction *>(QLatin1String(name))->isEnabled());
    }
    emit m_viewer->findChild<QTabWidget *>(QStringLiteral("tabs"))->tabCloseRequested(0);
    for (const char *name : names) {
        QVERIFY(!m_viewer->findChild<QAction *>(QLatin1String(name))->isEnabled());
    }
}

void tst_AnalysisWindows::overviewMenu()
{
    QCOMPARE(overview().contextMenuPolicy(), Qt::ActionsContextMenu);
    QVERIFY(!overviewAction("onlyThese")->isEnabled());
    select("18FF1234");
    overviewAction("onlyThese")->trigger();
    QCOMPARE(filter(), QStringLiteral("id == 0x18FF1234 and ext and channel == 1"));
    QTRY_COMPARE(tab().capture().rowCount(), Frames / 20);
    tab().filterBy({});
    overviewAction("notThese")->trigger();
    QTRY_COMPARE(tab().capture().rowCount(), Frames - Frames / 20);
    tab().filterBy({});
    overview().sortByColumn(OverviewModel::Identifier, Qt::AscendingOrder);
    overview().selectRow(0);
    overview().setFocus();
    QTest::keyClick(&overview(), Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(overview().selectionModel()->selectedRows().size(), 2);
    overviewAction("onlyThese")->trigger();
    QTRY_VERIFY(tab().capture().isFiltered() && !tab().capture().isFiltering());
    QTRY_COMPARE(tab().capture().rowCount(), Frames / 10);
    overview().setFocus(); // the frames had it since the filter
    QTest::keySequence(&overview(), QKeySequence::Copy);
    const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines.at(1).contains(QLatin1String("\t100\t")));
    overviewAction("copyCsv")->trigger();
    QVERIFY(QApplication::clipboard()->text().contains(QLatin1String(",100,")));
}

void tst_AnalysisWindows::overviewMarksChangedBytes()
{
    select("100");
    const QModelIndex data = overview().currentIndex().siblingAtColumn(OverviewModel::Data);
    QTRY_VERIFY(data.data().toString().contains(QLatin1Char('[')));
    const QStringList bytes = data.data().toString().split(QLatin1Char(' '));
    const QByteArray marks = data.data(ByteDelegate::MarksRole).toByteArray();
    QCOMPARE(marks.size(), bytes.size());
    QCOMPARE(marks.at(7), char(ByteDelegate::Changed)); // the counter
    QCOMPARE(marks.at(5), char(ByteDelegate::None));
    // At the frame in which the switch moves, that byte is marked instead.
    tab().table().setCurrentPlace(30020);
    tab().findChild<QCheckBox *>(QStringLiteral("atRow"))->click();
    QTRY_VERIFY(data.data().toString().contains(QLatin1String("[01]")));
    QCOMPARE(data.data(ByteDelegate::MarksRole).toByteArray().at(5), char(ByteDelegate::Changed));
}

void tst_AnalysisWindows::histogram()
{
    select("18FF1234");
    overviewAction("histogram")->trigger();
    auto *window = tab().findChild<PeriodWindow *>();
    QVERIFY(window != nullptr && window->isVisible());
    auto *identifier = window->findChild<QComboBox *>(QStringLiteral("identifier"));
    QCOMPARE(identifier->currentText(), QStringLiteral("1: 18FF1234"));
    QCOMPARE(identifier->count(), 21);
    const auto *figures = window->findChild<QLabel *>(QStringLiteral("figures"));
    QTRY_VERIFY(figures->text().startsWith(QLocale().toString(Frames / 20 - 1)));
    QVERIFY(figures->text().contains(QLocale().toString(10.0, 'f', 1)));
    window->findChild<QDoubleSpinBox *>(QStringLiteral("width"))->setValue(0.5);
    QTRY_VERIFY(figures->text().contains(QLocale().toString(0.5, 'f', 6)));
    window->findChild<QCheckBox *>(QStringLiteral("logarithmic"))->click();
    identifier->setCurrentIndex(identifier->findText(QStringLiteral("1: error frames")));
    QTRY_VERIFY(figures->text().startsWith(QStringLiteral("9 ")));
    window->findChild<QComboBox *>(QStringLiteral("range"))->setCurrentIndex(1);
    QTRY_VERIFY(figures->text().startsWith(QStringLiteral("9 ")));
}

void tst_AnalysisWindows::histogramClickGoesToFrames()
{
    tab().table().setCurrentPlace(7); // 18FF1234
    auto *window = open<PeriodWindow>("periods");
    QVERIFY(window != nullptr);
    const auto *figures = window->findChild<QLabel *>(QStringLiteral("figures"));
    QTRY_VERIFY(figures->text().startsWith(QLocale().toString(Frames / 20 - 1)));
    window->findChild<QComboBox *>(QStringLiteral("range"))->setCurrentIndex(1);
    window->findChild<QDoubleSpinBox *>(QStringLiteral("width"))->setValue(1);
    auto *plot = window->findChild<AnalysisPlot *>(QStringLiteral("plot"));
    QTRY_VERIFY(figures->text().contains(QLocale().toString(1.0, 'f', 6)));
    const QPoint bar(qRound(plot->transform(QwtPlot::xBottom, 10.4)), plot->canvas()->height() / 2);
    QTest::mouseClick(plot->canvas(), Qt::LeftButton, {}, bar);
    QTRY_VERIFY(tab().table().currentRow() > 7);
    const qint64 first = tab().table().currentRow();
    QCOMPARE(first % 20, 7);
    QTest::mouseClick(plot->canvas(), Qt::LeftButton, {}, bar);
    QTRY_VERIFY(tab().table().currentRow() > first);
    QCOMPARE(tab().table().currentRow() % 20, 7);
}

void tst_AnalysisWindows::histogramFiles()
{
    auto *window = open<PeriodWindow>("periods");
    const auto *figures = window->findChild<QLabel *>(QStringLiteral("figures"));
    QTRY_VERIFY(figures->text().contains(QLatin1String("periods")));
    const QString csv = m_folder->filePath(QStringLiteral("h.csv"));
    QTRY_VERIFY(window->saveCsv(csv) && QFileInfo(csv).size() > 40);
    QFile file(csv);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readLine(), QByteArray("from [ms],to [ms],count\r\n"));
    QCOMPARE(file.readLine().count(','), 2);
    QVERIFY(!window->saveCsv(m_folder->filePath(QStringLiteral("none/h.csv"))));
    auto *plot = window->findChild<AnalysisPlot *>(QStringLiteral("plot"));
    QVERIFY(plot->savePicture(m_folder->filePath(QStringLiteral("h.png"))));
    QVERIFY(!plot->savePicture(m_folder->filePath(QStringLiteral("none/h.png"))));
    const QImage picture(m_folder->filePath(QStringLiteral("h.png")));
    QVERIFY(picture.width() > 300);
}

void tst_AnalysisWindows::busLoad()
{
    auto *window = open<BusLoadWindow>("busLoad");
    QVERIFY(window != nullptr && window->isVisible());
    auto *table = window->findChild<QTableWidget *>(QStringLiteral("channels"));
    QTRY_VERIFY(window->loads() != nullptr && window->loads()->covered == Frames);
    QTRY_COMPARE(table->rowCount(), 1);
    QCOMPARE(table->item(0, BusLoadWindow::Nominal)->text(), QStringLiteral("500k"));
    QCOMPARE(table->item(0, BusLoadWindow::Lin)->flags() & Qt::ItemIsEditable, Qt::ItemFlags());
    const double mean = window->loads()->channels.front().mean;
    QVERIFY(mean > 40 && mean < 60); // 2000 frames of about 120 bits a second
    QCOMPARE(window->loads()->width, qint64(100000000));
    window->findChild<QComboBox *>(QStringLiteral("width"))->setCurrentText(QStringLiteral("1 s"));
    QTRY_COMPARE(window->loads()->width, qint64(1000000000));
    // Once more it is the same window.
    QCOMPARE(open<BusLoadWindow>("busLoad"), window);
    QCOMPARE(tab().findChildren<BusLoadWindow *>().size(), 1);
    // A click shows the frame at that time.
    auto *plot = window->findChild<AnalysisPlot *>(QStringLiteral("plot"));
    const QPoint place(qRound(plot->transform(QwtPlot::xBottom, 10.0)), plot->canvas()->height() / 2);
    QTest::mouseClick(plot->canvas(), Qt::LeftButton, {}, place);
    QTRY_VERIFY(qAbs(tab().table().currentRow() - 20000) < 200);
}

void tst_AnalysisWindows::busLoadRatesAreKept()
{
    auto *window = open<BusLoadWindow>("busLoad");
    auto *table = window->findChild<QTableWidget *>(QStringLiteral("channels"));
    QTRY_VERIFY(window->loads() != nullptr && window->loads()->covered == Frames && table->rowCount() == 1);
    const double before = window->loads()->channels.front().mean;
    table->item(0, BusLoadWindow::Nominal)->setText(QStringLiteral("fast"));
    QCOMPARE(table->item(0, BusLoadWindow::Nominal)->text(), QStringLiteral("500k"));
    QVERIFY(!window->findChild<QLabel *>(QStringLiteral("state"))->text().isEmpty());
    table->item(0, BusLoadWindow::Nominal)->setText(QStringLiteral("1 Mbit/s"));
    QTRY_VERIFY(window->loads()->covered == Frames && window->loads()->channels.front().mean < before * 0.6);
    QCOMPARE(table->item(0, BusLoadWindow::Nominal)->text(), QStringLiteral("1M"));
    table->item(0, BusLoadWindow::Channel)->setCheckState(Qt::Unchecked);
    window->findChild<QDoubleSpinBox *>(QStringLiteral("limit"))->setValue(12.5);
    delete window;
    window = open<BusLoadWindow>("busLoad");
    table = window->findChild<QTableWidget *>(QStringLiteral("channels"));
    QTRY_COMPARE(table->rowCount(), 1);
    QCOMPARE(table->item(0, BusLoadWindow::Nominal)->text(), QStringLiteral("1M"));
    QCOMPARE(window->findChild<QDoubleSpinBox *>(QStringLiteral("limit"))->value(), 12.5);
    const BusLoadMemory memory(m_folder->filePath(QStringLiteral("busload.ini")));
    QCOMPARE(memory.load(tab().capture().path()).ratesOf(0).bitRate, qint64(1000000));
    QVERIFY(memory.load(QStringLiteral("other.csv")) == BusLoadSettings());
}

/// What is being typed stays when figures come meanwhile.
void tst_AnalysisWindows::busLoadEditing()
{
    auto *window = open<BusLoadWindow>("busLoad");
    auto *table = window->findChild<QTableWidget *>(QStringLiteral("channels"));
    QTRY_VERIFY(window->loads() != nullptr && window->loads()->covered == Frames && table->rowCount() == 1);
    table->setCurrentCell(0, BusLoadWindow::Nominal);
    table->editItem(table->item(0, BusLoadWindow::Nominal));
    auto *editor = table->findChild<QLineEdit *>();
    QVERIFY(editor != nullptr);
    editor->clear();
    QTest::keyClicks(editor, QStringLiteral("250"));
    emit window->findChild<AnalysisPlot *>(QStringLiteral("plot"))->sig_paletteChanged(); // draws all anew
    QCOMPARE(editor->text(), QStringLiteral("250"));
    QTest::keyClicks(editor, QStringLiteral("k"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(table->item(0, BusLoadWindow::Nominal)->text(), QStringLiteral("250k"));
    QTRY_VERIFY(window->loads()->covered == Frames && window->loads()->channels.front().mean > 80);
    QVERIFY(window->loads()->channels.front().stepsAbove > 200);
}

void tst_AnalysisWindows::busLoadNextAboveTheLimit()
{
    auto *window = open<BusLoadWindow>("busLoad");
    QTRY_VERIFY(window->loads() != nullptr && window->loads()->covered == Frames);
    auto *next = window->findChild<QPushButton *>(QStringLiteral("nextAbove"));
    auto *state = window->findChild<QLabel *>(QStringLiteral("state"));
    QTest::mouseClick(next, Qt::LeftButton);
    QVERIFY(!state->text().isEmpty()); // nothing is above 70 %
    QCOMPARE(tab().table().currentRow(), -1);
    window->findChild<QDoubleSpinBox *>(QStringLiteral("limit"))->setValue(1);
    QTRY_VERIFY(window->loads()->covered == Frames && window->loads()->channels.front().stepsAbove > 200);
    QTest::mouseClick(next, Qt::LeftButton);
    QCOMPARE(tab().table().currentRow(), 0);
    QTest::mouseClick(next, Qt::LeftButton);
    QTRY_VERIFY(qAbs(tab().table().currentRow() - 200) < 3); // the next step of 100 ms
}

void tst_AnalysisWindows::busLoadFiles()
{
    auto *window = open<BusLoadWindow>("busLoad");
    QTRY_VERIFY(window->loads() != nullptr && window->loads()->covered == Frames);
    const QString csv = m_folder->filePath(QStringLiteral("load.csv"));
    QVERIFY(window->saveCsv(csv));
    QFile file(csv);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().split('\n').size(), 250 + 2); // 25 s in steps of 100 ms, the titles, the end
    QVERIFY(!window->saveCsv(m_folder->filePath(QStringLiteral("none/load.csv"))));
}

void tst_AnalysisWindows::windowsGoWithTheirCapture()
{
    const QPointer<BusLoadWindow> load = open<BusLoadWindow>("busLoad");
    const QPointer<PeriodWindow> periods = open<PeriodWindow>("periods");
    QVERIFY(load && periods);
    emit m_viewer->findChild<QTabWidget *>(QStringLiteral("tabs"))->tabCloseRequested(0);
    QVERIFY(!load && !periods);
}

void tst_AnalysisWindows::bitRates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("rate"); // -1: none
    QTest::addColumn<QString>("again");
    const auto row = [](const char *text, qint64 rate, const char *again = "") {
        QTest::newRow(text) << QString::fromLatin1(text) << rate << QString::fromLatin1(again);
    };
    row("500000", 500000, "500k");
    row("500k", 500000, "500k");
    row(" 500 kbit/s ", 500000, "500k");
    row("2M", 2000000, "2M");
    row("2 MBit", -1);
    row("2 Mbit", 2000000, "2M");
    row("33.3k", 33300, "33.3k");
    row("33,3k", 33300, "33.3k");
    row("83333", 83333, "83333");
    row("19200", 19200, "19200");
    row("1", 1, "1");
    row("100M", 100000000, "100M");
    row("101M", -1);
    row("0", -1);
    row("-5", -1);
    row("", -1);
    row("fast", -1);
    row("1e5", -1);
    row("99999999999999999999999999", -1);
}

void tst_AnalysisWindows::bitRates()
{
    QFETCH(const QString, text);
    QFETCH(const qint64, rate);
    QFETCH(const QString, again);
    QCOMPARE(parseBitRate(text).value_or(-1), rate);
    if (rate >= 0) {
        QCOMPARE(bitRateText(rate), again);
    }
}

void tst_AnalysisWindows::damagedMemory()
{
    const QString path = m_folder->filePath(QStringLiteral("memory.ini"));
    const BusLoadMemory memory(path);
    BusLoadSettings settings;
    settings.width = 5000000;
    settings.limit = 33;
    settings.rates[3] = {125000, 1000000, 9600};
    memory.save(QStringLiteral("a.csv"), settings);
    QVERIFY(memory.load(QStringLiteral("a.csv")) == settings);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QByteArray good = file.readAll();
    QByteArray bad = good;
    bad.replace("nominal=125000", "nominal=-7").replace("width=5000000", "width=1e99").replace("limit=33", "limit=x");
    QVERIFY(bad != good);
    file.resize(0);
    file.write(bad);
    file.close();
    const BusLoadSettings read = memory.load(QStringLiteral("a.csv"));
    QCOMPARE(read.ratesOf(3).bitRate, qint64(500000));
    QCOMPARE(read.ratesOf(3).dataBitRate, qint64(1000000));
    QCOMPARE(read.width, BusLoadSettings().width);
    QCOMPARE(read.limit, BusLoadSettings().limit);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\x00\xFF[[[\n%&/(=", 12);
    file.close();
    QVERIFY(memory.load(QStringLiteral("a.csv")) == BusLoadSettings());
}

void tst_AnalysisWindows::plotZooms()
{
    AnalysisPlot plot;
    plot.resize(600, 300);
    plot.setExtent(0, 100);
    const auto least = [&plot] {
        return plot.axisScaleDiv(QwtPlot::xBottom).lowerBound();
    };
    const auto greatest = [&plot] {
        return plot.axisScaleDiv(QwtPlot::xBottom).upperBound();
    };
    plot.zoom(0.1, 50);
    QCOMPARE(least(), 45.0);
    QCOMPARE(greatest(), 55.0);
    plot.setExtent(0, 200); // more came: what is shown stays
    QCOMPARE(least(), 45.0);
    QTest::keyClick(&plot, Qt::Key_Right);
    QCOMPARE(least(), 46.0);
    QTest::keyClick(&plot, Qt::Key_Home);
    QCOMPARE(greatest(), 200.0);
    plot.setExtent(0, 300); // all was shown, and still is
    QCOMPARE(greatest(), 300.0);
    plot.zoom(1e-30, 10); // not closer than there are numbers
    QVERIFY(greatest() > least());
    plot.zoom(1e30, 10);
    QCOMPARE(greatest(), 300.0);
    QTest::keyClick(&plot, Qt::Key_Plus);
    QTest::keyClick(&plot, Qt::Key_Minus);
    QTest::keyClick(&plot, Qt::Key_Left);
    QCOMPARE(least(), 0.0);
}

void tst_AnalysisWindows::plotCursor()
{
    AnalysisPlot plot;
    plot.setExtent(0, 100);
    std::vector<double> places;
    connect(&plot, &AnalysisPlot::sig_clicked, &plot, [&places](const QPointF &place) { places.push_back(place.x()); });
    QTest::keyClick(&plot, Qt::Key_Return); // there is no line yet
    QVERIFY(places.empty());
    QTest::keyClick(&plot, Qt::Key_Right, Qt::ControlModifier);
    QTest::keyClick(&plot, Qt::Key_Return);
    QTest::keyClick(&plot, Qt::Key_Right, Qt::ControlModifier);
    QTest::keyClick(&plot, Qt::Key_Return);
    plot.setCursorStep(30);
    QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(&plot, Qt::Key_Return);
    plot.zoom(0.1, 100); // out of sight
    QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(&plot, Qt::Key_Return);
    QCOMPARE(places, (std::vector<double>{50, 51, 21, 0}));
    QCOMPARE(plot.axisScaleDiv(QwtPlot::xBottom).lowerBound(), 0.0); // it was followed
}

void tst_AnalysisWindows::overviewFigures()
{
    OpenCapture capture(QStringLiteral("small"), syntheticCapture(1000), false);
    OverviewModel model(capture);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QTRY_COMPARE(capture.overview().covered(), 1000);
    model.update();
    QCOMPARE(model.rowCount(), 21);
    const std::vector<std::pair<OverviewModel::Column, const char *>> expected{
        {OverviewModel::Channel, "1"},   {OverviewModel::Identifier, "100"},    {OverviewModel::Name, ""},
        {OverviewModel::Count, "50"},    {OverviewModel::Rate, "100.00"},       {OverviewModel::Mean, "10.000"},
        {OverviewModel::Least, "9.999"}, {OverviewModel::Greatest, "10.005"},   {OverviewModel::Deviation, "0.002"},
        {OverviewModel::Length, "8"},    {OverviewModel::First, "0.000000000"}, {OverviewModel::Last, "0.490000000"}};
    for (const auto &[column, text] : expected) {
        QCOMPARE(model.index(0, column).data().toString(), QString::fromLatin1(text));
    }
    const QStringList bytes = model.index(0, OverviewModel::Data).data().toString().split(QLatin1Char(' '));
    QCOMPARE(bytes.at(7), QStringLiteral("[31]")); // the counter, 980 / 20
    QCOMPARE(bytes.at(5), QStringLiteral("00"));
    model.setRow(0);
    QCOMPARE(model.index(0, OverviewModel::Data).data().toString().section(QLatin1Char(' '), 7), QStringLiteral("00"));
    QVERIFY(model.index(1, OverviewModel::Data).data().toString().isEmpty()); // none before that frame
}

X9_GUI_TEST(tst_AnalysisWindows)
#include "tst_AnalysisWindows.moc"
