#include "tests/support/TestProgram.h"
#include "tests/viewer/SyntheticCapture.h"
#include "tests/viewer/TestSignals.h"
#include "viewer/CaptureTab.h"
#include "viewer/PlotArea.h"
#include "viewer/PlotCurveList.h"
#include "viewer/PlotPane.h"
#include "viewer/PlotPanel.h"
#include "viewer/PlotTools.h"
#include "viewer/ValueEdit.h"

#include <QLabel>
#include <QMenu>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

namespace {

constexpr qint64 Frames = 100000;
constexpr qint64 Millisecond = 1000000;

/// A capture of frames that are handed over as a test goes on, a millisecond apart; the data's first byte counts.
class GrowingStream : public CaptureStream, private FrameReader
{
public:
    explicit GrowingStream(std::shared_ptr<std::atomic<int>> frames)
        : m_frames(std::move(frames))
    {
    }

    FrameReader &reader() override { return *this; }
    qint64 position() const override { return m_next; }
    qint64 size() const override { return *m_frames; }
    void setGrowing(bool /*growing*/) override {}
    bool isBroken() const override { return false; }

private:
    int read(BusFrame *frames, int room) override
    {
        const int count = std::min(room, *m_frames - m_next);
        for (int i = 0; i < count; ++i, ++m_next) {
            frames[i] = BusFrame();
            frames[i].time = m_next * Millisecond;
            frames[i].length = 1;
            frames[i].data[0] = static_cast<uchar>(m_next);
        }
        return count;
    }

    std::shared_ptr<std::atomic<int>> m_frames;
    int m_next = 0;
};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_PlotPanel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theLineAddsCurves();
    void wrongValuesAreTold();
    void bytesOfTheSelectedFrame();
    void wheelZoomsTime();
    void draggingMoves();
    void valuesZoom();
    void keys();
    void shiftChoosesASection();
    void clickSelectsTheFrame();
    void cursorFollowsTheSelection();
    void cursorStepsThroughFrames();
    void filteredTableAndCursor();
    void secondCursorTellsDifferences();
    void listMovesHidesAndRemoves();
    void picturesAndTables();
    void wrongPathIsTold();
    void aWindowOfItsOwn();
    void curvesAreKept();
    void databaseGoesAndComesBack();
    void statesAreSteps();
    void seriesOfOthers();
    void timesAreInLine();
    void clockTimes();
    void darkAndLight();
    void followsAGrowingCapture();

private:
    void open(const StoreLoader::Open &capture, qint64 frames);
    void add(const char *text);
    PlotPanel &panel() { return m_tab->plots(); }
    PlotArea &area() { return panel().area(); }
    PlotPane &pane(int index = 0) { return area().pane(index); }
    PlotCurveList &list() { return *panel().findChild<PlotCurveList *>(QStringLiteral("curves")); }
    ValueEdit &line() { return *panel().findChild<ValueEdit *>(QStringLiteral("value")); }
    TimeSection section() { return area().views().section(); }
    qint64 timeOfRow(qint64 row) { return m_tab->capture().store().time(row) - m_tab->capture().store().start(); }
    QPoint middle(int index = 0) { return pane(index).canvas()->rect().center(); }
    /// Less than two pixels away.
    bool isNear(qint64 a, qint64 b) { return static_cast<double>(std::abs(a - b)) < 2 * area().perPixel(); }
    void wheel(const QPoint &place, int angle, Qt::KeyboardModifiers modifiers = {});
    void drag(const QPoint &from, const QPoint &to, Qt::KeyboardModifiers modifiers = {});

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<CaptureTab> m_tab;
};

void tst_PlotPanel::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    open(syntheticCapture(Frames), Frames);
}

void tst_PlotPanel::cleanup()
{
    m_tab.reset();
}

void tst_PlotPanel::open(const StoreLoader::Open &capture, qint64 frames)
{
    m_tab = std::make_unique<CaptureTab>(QStringLiteral("made-up"), capture, m_folder->path());
    m_tab->resize(1200, 900);
    m_tab->panels().setCurrentWidget(&panel());
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
    QTRY_COMPARE(m_tab->capture().rowCount(), frames);
    QTRY_VERIFY(area().views().whole().width() > 1000);
}

void tst_PlotPanel::add(const char *text)
{
    const int before = panel().curves().count();
    panel().addExpression(QString::fromLatin1(text));
    QCOMPARE(panel().curves().count(), before + 1);
    QTRY_VERIFY(!panel().curves().isFilling());
    area().draw();
}

void tst_PlotPanel::wheel(const QPoint &place, int angle, Qt::KeyboardModifiers modifiers)
{
    QWidget *canvas = pane().canvas();
    QWheelEvent event(place, canvas->mapToGlobal(place), {}, {0, angle}, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                      false);
    QSpontaneKeyEvent::setSpontaneous(&event); // others are not handed on to the pane
    QCoreApplication::instance()->notify(canvas, &event);
    area().draw();
}

void tst_PlotPanel::drag(const QPoint &from, const QPoint &to, Qt::KeyboardModifiers modifiers)
{
    QWidget *canvas = pane().canvas();
    QTest::mousePress(canvas, Qt::LeftButton, modifiers, from);
    for (const QPoint &place : {(from + to) / 2, to}) {
        QMouseEvent move(QEvent::MouseMove, place, canvas->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, modifiers);
        QApplication::sendEvent(canvas, &move);
    }
    QTest::mouseRelease(canvas, Qt::LeftButton, modifiers, to);
    area().draw();
}

void tst_PlotPanel::theLineAddsCurves()
{
    line().setFocus();
    QTest::keyClicks(&line(), QStringLiteral("data[5] of id == 0x100"));
    QTest::keyClick(&line(), Qt::Key_Return);
    QCOMPARE(panel().curves().count(), 1);
    QCOMPARE(line().text(), QString());
    QCOMPARE(list().topLevelItemCount(), 1);
    QTRY_VERIFY(!panel().curves().isFilling());
    const Series &series = *panel().curves().at(0).curve.series();
    QCOMPARE(series.size(), std::size_t(Frames / 20 - 0));
    QCOMPARE(series.least(), 0.0);
    QCOMPARE(series.greatest(), 1.0);
    panel().addExpression(QStringLiteral(" data[5] of id == 0x100"));
    QCOMPARE(panel().curves().count(), 1);    // it is there
    QTest::keyClick(&line(), Qt::Key_Return); // an empty line adds nothing
    QCOMPARE(panel().curves().count(), 1);
}

void tst_PlotPanel::wrongValuesAreTold()
{
    auto *message = panel().findChild<QLabel *>(QStringLiteral("message"));
    line().setText(QStringLiteral("data[0] of foo"));
    QVERIFY(!message->text().isEmpty());
    QTest::keyClick(&line(), Qt::Key_Return);
    QCOMPARE(panel().curves().count(), 0);
    QCOMPARE(line().text(), QStringLiteral("data[0] of foo"));
    line().clear();
    QCOMPARE(message->text(), QString());
    panel().addExpression(QStringLiteral("Foo"));
    QCOMPARE(panel().curves().count(), 0);
    QVERIFY(message->text().startsWith(QStringLiteral("Foo: ")));
    line().setText(QStringLiteral("ra"));
    QTest::keyClick(&line(), Qt::Key_Space, Qt::ControlModifier);
    QTest::keyClick(&line(), Qt::Key_Escape);
    QCOMPARE(line().text(), QStringLiteral("ra"));
}

void tst_PlotPanel::bytesOfTheSelectedFrame()
{
    QMenu menu;
    emit m_tab->table().sig_menuWanted(&menu, 11); // a frame of 24 bytes
    const QList<QAction *> actions = menu.actions().last()->menu()->actions();
    QCOMPARE(actions.size(), 25);
    actions.last()->trigger();
    QCOMPARE(panel().curves().count(), 1);
    QTRY_VERIFY(!panel().curves().isFilling());
    QCOMPARE(panel().curves().at(0).curve.series()->least(), 170.0);
    actions.first()->trigger();
    QVERIFY(panel().curves().at(1).entry.text.startsWith(QStringLiteral("rate of id == ")));
    QMenu none;
    panel().addActions(&none, -1);
    panel().addActions(&none, Frames);
    QVERIFY(none.isEmpty());
}

void tst_PlotPanel::wheelZoomsTime()
{
    add("data[0]");
    QVERIFY(area().views().isWhole());
    const TimeSection whole = section();
    const QPoint place(pane().canvas()->width() / 4, 20);
    const qint64 time = pane().timeAt(place.x());
    wheel(place, 120);
    QCOMPARE(section().width(), qRound64(static_cast<double>(whole.width()) * 0.8));
    QVERIFY(isNear(pane().timeAt(place.x()), time));
    wheel(place, -120);
    QVERIFY(std::abs(section().width() - whole.width()) < 10);
    for (int i = 0; i < 200; ++i) {
        wheel(place, 120);
    }
    QCOMPARE(section().width(), TimeViews::LeastWidth);
    QVERIFY(std::abs(section().begin - time) <= whole.width() / 1000);
    wheel(place, -120, Qt::ShiftModifier);
    QCOMPARE(section().width(), TimeViews::LeastWidth);
    area().showWhole();
    QVERIFY(area().views().isWhole());
}

void tst_PlotPanel::draggingMoves()
{
    add("data[0]");
    area().zoom(0.1);
    area().draw();
    const TimeSection before = section();
    const QPoint to = middle() - QPoint(100, 0);
    const qint64 time = pane().timeAt(middle().x());
    drag(middle(), to);
    QVERIFY(section().begin > before.begin);
    QCOMPARE(section().width(), before.width());
    QVERIFY(isNear(pane().timeAt(to.x()), time)); // what was taken is where the mouse is
    QVERIFY(!area().cursor());
    area().goBack();
    QCOMPARE(section(), before);
    area().goForward();
    QVERIFY(section() != before);
}

void tst_PlotPanel::valuesZoom()
{
    add("data[7] of id == 0x100");
    const auto width = [this] {
        return pane().axisInterval(QwtPlot::yLeft).width();
    };
    const double automatic = width();
    QVERIFY(automatic > 255 && automatic < 300);
    wheel(middle(), 120, Qt::ControlModifier);
    QVERIFY(!pane().isAutomatic());
    QVERIFY(std::abs(width() - automatic * 0.8) < 0.01);
    QVERIFY(area().views().isWhole());
    const double low = pane().axisInterval(QwtPlot::yLeft).minValue();
    drag(middle(), middle() + QPoint(0, 30));
    QVERIFY(pane().axisInterval(QwtPlot::yLeft).minValue() > low);
    const auto *scale = pane().findChild<QWidget *>(QStringLiteral("QwtPlotAxisYLeft"));
    QVERIFY(scale != nullptr);
    area().setValuesAutomatic();
    area().draw();
    QVERIFY(std::abs(width() - automatic) < 0.01);
    for (int i = 0; i < 400; ++i) {
        wheel(middle(), 120, Qt::ControlModifier);
    }
    QVERIFY(width() > 0);
}

void tst_PlotPanel::keys()
{
    add("data[0]");
    pane().setFocus();
    const TimeSection whole = section();
    const auto press = [this](int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&pane(), static_cast<Qt::Key>(key), modifiers);
        area().draw();
    };
    press(Qt::Key_Plus);
    press(Qt::Key_Plus);
    const TimeSection zoomed = section();
    QVERIFY(zoomed.width() < whole.width() / 2 + 2);
    press(Qt::Key_Right);
    QCOMPARE(section().begin, zoomed.begin + zoomed.width() / 10);
    press(Qt::Key_Left);
    QCOMPARE(section(), zoomed);
    press(Qt::Key_End);
    QCOMPARE(section().end, whole.end);
    press(Qt::Key_Home);
    QCOMPARE(section().begin, whole.begin);
    press(Qt::Key_Minus);
    QVERIFY(section().width() > zoomed.width());
    press(Qt::Key_W);
    QCOMPARE(section(), whole);
    press(Qt::Key_Left, Qt::AltModifier);
    QVERIFY(section() != whole);
    press(Qt::Key_Right, Qt::AltModifier);
    QCOMPARE(section(), whole);
    press(Qt::Key_Backspace);
    QVERIFY(section() != whole);
    press(Qt::Key_Plus, Qt::ControlModifier);
    QVERIFY(!pane().isAutomatic());
    const double low = pane().axisInterval(QwtPlot::yLeft).minValue();
    press(Qt::Key_Up);
    QVERIFY(pane().axisInterval(QwtPlot::yLeft).minValue() > low);
    press(Qt::Key_A);
    QVERIFY(pane().isAutomatic());
}

void tst_PlotPanel::shiftChoosesASection()
{
    add("data[0]");
    const qint64 begin = pane().timeAt(100);
    const qint64 end = pane().timeAt(200);
    drag({200, 30}, {100, 40}, Qt::ShiftModifier);
    QVERIFY(std::abs(section().begin - begin) < 10 && std::abs(section().end - end) < 10);
    area().goBack();
    QVERIFY(area().views().isWhole());
}

void tst_PlotPanel::clickSelectsTheFrame()
{
    add("data[0]");
    QTest::mouseClick(pane().canvas(), Qt::LeftButton, {}, middle());
    const qint64 row = m_tab->table().currentRow();
    QVERIFY(area().cursor());
    QVERIFY(std::abs(timeOfRow(row) - *area().cursor()) <= Millisecond / 2);
    QVERIFY(std::abs(row - Frames / 2) < 200);
    QVERIFY(pane().hasFocus()); // keys go on here
    QVERIFY(panel().findChild<QLabel *>(QStringLiteral("cursorText"))->text().contains(QStringLiteral("s")));
    QVERIFY(!list().topLevelItem(0)->text(1).isEmpty());
}

void tst_PlotPanel::cursorFollowsTheSelection()
{
    add("number");
    area().zoom(0.01);
    m_tab->table().setCurrentPlace(90000);
    QCOMPARE(area().cursor().value_or(0), timeOfRow(90000));
    QVERIFY(section().begin <= timeOfRow(90000) && section().end >= timeOfRow(90000)); // it is brought into view
    QCOMPARE(list().topLevelItem(0)->text(1), QStringLiteral("90001"));
    const TimeSection before = section();
    m_tab->table().setCurrentPlace(90001);
    QCOMPARE(section(), before);
    QCOMPARE(list().topLevelItem(0)->text(1), QStringLiteral("90002"));
}

void tst_PlotPanel::cursorStepsThroughFrames()
{
    add("number");
    m_tab->table().setCurrentPlace(500);
    area().zoom(1e-6); // some pixels for each frame
    area().draw();
    pane().setFocus();
    for (int row = 499; row > 490; --row) {
        QTest::keyClick(&pane(), Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(m_tab->table().currentRow(), row);
        QCOMPARE(area().cursor().value_or(0), timeOfRow(row));
    }
    QTest::keyClick(&pane(), Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(m_tab->table().currentRow(), 492);
    QVERIFY(pane().hasFocus());
}

void tst_PlotPanel::filteredTableAndCursor()
{
    add("number");
    auto *filter = m_tab->findChild<FilterEdit *>(QStringLiteral("filter"));
    QVERIFY(filter->take(QStringLiteral("error")));
    QTRY_VERIFY(!m_tab->capture().isFiltering());
    QTest::mouseClick(pane().canvas(), Qt::LeftButton, {}, middle());
    QCOMPARE(m_tab->table().currentRow() % 5000, 19);
    QVERIFY(isNear(*area().cursor(), pane().timeAt(middle().x()))); // not the table's row
}

void tst_PlotPanel::secondCursorTellsDifferences()
{
    add("number");
    QVERIFY(list().isColumnHidden(2));
    m_tab->table().setCurrentPlace(1000);
    QTest::mouseClick(pane().canvas(), Qt::LeftButton, Qt::ShiftModifier, middle());
    QVERIFY(area().secondCursor());
    QCOMPARE(m_tab->table().currentRow(), 1000);
    QVERIFY(!list().isColumnHidden(2));
    const QString difference = list().topLevelItem(0)->text(3);
    QVERIFY2(std::abs(difference.toInt() - (Frames / 2 - 1000)) < 200, qPrintable(difference));
    QVERIFY(panel().findChild<QLabel *>(QStringLiteral("cursorText"))->text().contains(QStringLiteral("24.")));
    pane().setFocus();
    QTest::keyClick(&pane(), Qt::Key_S);
    QVERIFY(!area().secondCursor());
    QTest::keyClick(&pane(), Qt::Key_S);
    QCOMPARE(area().secondCursor(), area().cursor());
}

void tst_PlotPanel::listMovesHidesAndRemoves()
{
    for (const char *text : {"data[0]", "data[1]", "data[2]"}) {
        add(text);
    }
    QCOMPARE(area().paneCount(), 3);
    list().setFocus();
    list().setCurrentItem(list().topLevelItem(1));
    QTest::keyClick(&list(), Qt::Key_Up, Qt::ControlModifier);
    QCOMPARE(area().paneCount(), 2);
    QCOMPARE(pane(0).items().size(), std::size_t(2));
    QTest::keyClick(&list(), Qt::Key_Down, Qt::ControlModifier);
    QCOMPARE(pane(1).items().size(), std::size_t(2));
    QTest::keyClick(&list(), Qt::Key_Down, Qt::ControlModifier);
    QCOMPARE(area().paneCount(), 3);
    QCOMPARE(panel().curves().at(1).entry.pane, 2);
    QTest::keyClick(&list(), Qt::Key_Down, Qt::ControlModifier);
    QCOMPARE(area().paneCount(), 3);
    QVERIFY(panel().curves().at(1).item.isVisible());
    QTest::keyClick(&list(), Qt::Key_Space);
    QVERIFY(!panel().curves().at(1).item.isVisible());
    QTest::keyClick(&list(), Qt::Key_Space);
    QVERIFY(panel().curves().at(1).item.isVisible());
    panel().setColor(1, Qt::magenta);
    QCOMPARE(panel().curves().at(1).item.color(), QColor(Qt::magenta));
    QTest::keyClick(&list(), Qt::Key_Delete);
    QCOMPARE(panel().curves().count(), 2);
    QCOMPARE(area().paneCount(), 2);
    QCOMPARE(panel().curves().at(1).entry.text, QStringLiteral("data[2]"));
    QTest::keyClick(&list(), Qt::Key_Delete);
    QTest::keyClick(&list(), Qt::Key_Delete);
    QTest::keyClick(&list(), Qt::Key_Delete);
    QCOMPARE(panel().curves().count(), 0);
    QCOMPARE(area().paneCount(), 1);
}

void tst_PlotPanel::picturesAndTables()
{
    add("data[7] of id == 0x100");
    panel().setColor(0, Qt::magenta);
    add("rate of id == 0x18FF1234");
    const QString png = m_folder->filePath(QStringLiteral("a.png"));
    QSignalSpy spy(&panel(), &PlotPanel::sig_exported);
    const QSize size = area().size() * 2;
    panel().exportTo(png, false);
    QTRY_COMPARE(spy.size(), 1);
    QCOMPARE(spy.takeFirst().at(1).toString(), QString());
    const QImage image(png);
    QCOMPARE(image.size(), size);
    const auto count = [&image](QRgb color) {
        int found = 0;
        for (int y = 0; y < image.height(); ++y) {
            const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
            found += static_cast<int>(std::count(row, row + image.width(), color));
        }
        return found;
    };
    QVERIFY(count(QColor(Qt::magenta).rgb()) > 1000);
    QVERIFY(count(panel().curves().at(1).item.color().rgb()) > 500);
    const QString pdf = m_folder->filePath(QStringLiteral("a.pdf"));
    panel().exportTo(pdf, true);
    QTRY_COMPARE(spy.size(), 1);
    QVERIFY(contentOf(pdf).startsWith("%PDF-") && contentOf(pdf).trimmed().endsWith("%%EOF"));
    const QString csv = m_folder->filePath(QStringLiteral("a.csv"));
    panel().setShown(1, false);
    panel().exportTo(csv, true);
    QTRY_COMPARE(spy.size(), 2);
    const QList<QByteArray> lines = contentOf(csv).split('\n');
    QCOMPARE(lines.size(), int(Frames) / 20 + 2);
    QCOMPARE(lines.first(), QByteArray("\"time\",\"data[7] of id == 0x100\"\r"));
    QCOMPARE(lines.at(2), QByteArray("0.010005400,1\r"));
    area().zoom(0.1);
    panel().exportTo(csv, false);
    QTRY_COMPARE(spy.size(), 3);
    QVERIFY(std::abs(contentOf(csv).count('\n') - Frames / 200) < 5);
    QVERIFY(!panel().curves().isFilling());
}

void tst_PlotPanel::wrongPathIsTold()
{
    add("data[0]");
    QSignalSpy spy(&panel(), &PlotPanel::sig_exported);
    for (const char *name : {"missing/a.png", "missing/a.pdf", "missing/a.csv"}) {
        panel().exportTo(m_folder->filePath(QString::fromLatin1(name)), false);
        QTRY_COMPARE(spy.size(), 1);
        const QString error = spy.takeFirst().at(1).toString();
        QVERIFY(!error.isEmpty());
        QVERIFY(panel().findChild<QLabel *>(QStringLiteral("message"))->text().contains(error));
    }
    add("data[1]"); // it goes on
}

void tst_PlotPanel::aWindowOfItsOwn()
{
    add("data[0]");
    panel().setDetached(true);
    QVERIFY(panel().isDetached());
    QWidget *window = area().window();
    QVERIFY(window != m_tab.get() && window->isVisible());
    QTest::mouseClick(pane().canvas(), Qt::LeftButton, {}, middle());
    QVERIFY(m_tab->table().currentRow() > 0);
    window->close();
    QVERIFY(!panel().isDetached());
    QCOMPARE(area().window(), m_tab->window());
    QVERIFY(area().isVisible());
    panel().setDetached(true);
    m_tab.reset(); // with its window
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QWidget *other : QApplication::topLevelWidgets()) {
        QVERIFY(other->objectName() != QStringLiteral("plotWindow"));
    }
}

void tst_PlotPanel::curvesAreKept()
{
    add("data[0]");
    add("rate 10ms");
    panel().moveCurve(1, -1);
    panel().setColor(0, QColor(1, 2, 3));
    panel().setShown(1, false);
    m_tab.reset();
    open(syntheticCapture(Frames), Frames);
    QCOMPARE(panel().curves().count(), 2);
    QCOMPARE(panel().curves().at(0).item.color(), QColor(1, 2, 3));
    QVERIFY(!panel().curves().at(1).item.isVisible());
    QCOMPARE(area().paneCount(), 1);
    QTRY_VERIFY(!panel().curves().isFilling() && panel().curves().at(0).curve.series()->size() > 50000);
    panel().removeCurve(0);
    panel().removeCurve(0);
    m_tab.reset();
    open(syntheticCapture(Frames), Frames);
    QCOMPARE(panel().curves().count(), 0);
}

void tst_PlotPanel::databaseGoesAndComesBack()
{
    m_tab->capture().setSignalSource(std::make_shared<TestSignals>());
    add("Speed");
    const auto isMarked = [this] {
        return list().topLevelItem(0)->toolTip(0).contains(QLatin1Char('\n'));
    };
    QVERIFY(!isMarked());
    QCOMPARE(panel().curves().at(0).curve.series()->size(), std::size_t(Frames / 20));
    m_tab->capture().setSignalSource(nullptr);
    QCOMPARE(panel().curves().count(), 1);
    QVERIFY(isMarked());
    QVERIFY(panel().curves().at(0).curve.series()->isEmpty());
    area().draw();
    m_tab.reset(); // kept without its database
    open(syntheticCapture(Frames), Frames);
    QCOMPARE(panel().curves().count(), 1);
    QVERIFY(isMarked());
    m_tab->capture().setSignalSource(std::make_shared<TestSignals>());
    QVERIFY(!isMarked());
    QTRY_COMPARE(panel().curves().at(0).curve.series()->size(), std::size_t(Frames / 20));
    QCOMPARE(line().problem(), QString());
    line().setText(QStringLiteral("Speed"));
    QCOMPARE(line().problem(), QString());
}

void tst_PlotPanel::statesAreSteps()
{
    /// The switch of the made-up engine.
    class Switch : public TestSignals
    {
    public:
        double value(int /*signal*/, const BusFrame &frame) const override { return frame.data[5]; }
        QString valueText(int /*signal*/, double value) const override
        {
            return value == 0 ? QStringLiteral("Off") : QStringLiteral("On");
        }
    };
    m_tab->capture().setSignalSource(std::make_shared<Switch>());
    add("State");
    QVERIFY(panel().curves().at(0).curve.isState());
    m_tab->table().setCurrentPlace(20000);
    QCOMPARE(list().topLevelItem(0)->text(1), QStringLiteral("Off"));
    m_tab->table().setCurrentPlace(40000);
    QCOMPARE(list().topLevelItem(0)->text(1), QStringLiteral("On"));
    // The line changes from one level to the other at once, and there is a text beside it.
    const QImage picture = pane().canvas()->grab().toImage();
    const QRgb color = panel().curves().at(0).item.color().rgb();
    const int change = pane().xOf(timeOfRow(30020));
    int high = 0;
    for (int x = change - 2; x <= change + 2; ++x) {
        int inColumn = 0;
        for (int y = 0; y < picture.height(); ++y) {
            inColumn += picture.pixel(x, y) == color ? 1 : 0;
        }
        high = std::max(high, inColumn);
    }
    QVERIFY(high > picture.height() / 2);
}

void tst_PlotPanel::seriesOfOthers()
{
    Series series;
    series.append(m_tab->capture().store().start(), 0.5);
    series.append(m_tab->capture().store().start() + 200000 * Millisecond, 0.75);
    panel().addSeries(QStringLiteral("Bus load of channel 1"), QStringLiteral("%"), std::move(series));
    QCOMPARE(panel().curves().count(), 1);
    QCOMPARE(area().views().whole().end, 200000 * Millisecond); // it is longer than the capture
    QCOMPARE(pane().axisTitle(QwtPlot::yLeft).text(), QStringLiteral("%"));
    panel().addSeries(QStringLiteral("Bus load of channel 1"), QStringLiteral("%"), Series());
    QCOMPARE(panel().curves().count(), 1);
    QVERIFY(panel().curves().at(0).curve.series()->isEmpty());
    QVERIFY(panel().curves().entries().empty()); // not kept
    m_tab->capture().setSignalSource(std::make_shared<TestSignals>());
    QCOMPARE(panel().curves().at(0).curve.problem(), QString());
}

/// Also of panes with a unit beside their scale and without one.
void tst_PlotPanel::timesAreInLine()
{
    add("data[0]");
    add("rate");
    const auto left = [this](int index) {
        return area().pane(index).canvas()->mapTo(&area(), QPoint()).x();
    };
    QCOMPARE(area().paneCount(), 2);
    QTRY_VERIFY(left(1) > area().fontMetrics().height()); // the unit has come
    QTRY_COMPARE(left(0), left(1));
}

void tst_PlotPanel::clockTimes()
{
    add("data[0]");
    QVERIFY(!area().clock());
    auto *tools = panel().findChild<PlotTools *>();
    QVERIFY(tools->clock().isEnabled());
    tools->clock().trigger();
    QCOMPARE(area().clock().value_or(0), m_tab->capture().store().start());
    m_tab->table().setCurrentPlace(0);
    const QString clock = QDateTime::fromMSecsSinceEpoch(1715934600000).toString(QStringLiteral("HH:mm:ss"));
    QVERIFY(panel().findChild<QLabel *>(QStringLiteral("cursorText"))->text().contains(clock));
}

void tst_PlotPanel::darkAndLight()
{
    add("data[7] of id == 0x100");
    const QPalette light = QApplication::palette();
    const QColor onLight = panel().curves().at(0).item.color();
    QApplication::setPalette(QPalette(QColor(53, 53, 53), QColor(35, 35, 35)));
    QTRY_VERIFY(panel().curves().at(0).item.color() != onLight);
    area().draw();
    const QColor base = panel().palette().color(QPalette::Base);
    QVERIFY(base.lightness() < 128);
    QCOMPARE(pane().canvas()->grab().toImage().pixelColor(1, 1), base);
    QApplication::setPalette(light);
    QTRY_COMPARE(panel().curves().at(0).item.color(), onLight);
}

void tst_PlotPanel::followsAGrowingCapture()
{
    auto frames = std::make_shared<std::atomic<int>>(1000);
    open([frames](Findings & /*findings*/, QString & /*error*/) { return std::make_unique<GrowingStream>(frames); },
         1000);
    add("data[0]");
    QVERIFY(area().views().isWhole());
    *frames = 5000;
    QTRY_COMPARE(panel().curves().at(0).curve.series()->size(), std::size_t(5000));
    QTRY_COMPARE(section().end, 4999 * Millisecond);
    QVERIFY(area().views().isWhole());
    area().zoom(0.5);
    const TimeSection before = section();
    *frames = 6000;
    QTRY_COMPARE(panel().curves().at(0).curve.series()->size(), std::size_t(6000));
    QCOMPARE(section(), before); // one that looks at something stays there
    pane().setFocus();
    QTest::keyClick(&pane(), Qt::Key_End);
    *frames = 7000;
    QTRY_COMPARE(section().end, 6999 * Millisecond); // one that is at the end, at the end
    QCOMPARE(section().width(), before.width());
}

X9_GUI_TEST(tst_PlotPanel)
#include "tst_PlotPanel.moc"
