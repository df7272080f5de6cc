#include "can/GUI_CanScanBaudrate.h"

#include "device/CANCommunication.h"
#include "tests/support/AdapterFolder.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"
#include "widgets/CNotice.h"

#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableView>
#include <QTimer>
#include <QtTest>

#include <memory>
#include <optional>

namespace {

constexpr int TicksPerStep = 16;
constexpr int StepCount = 54;
const QString Effective = QStringLiteral("Effective baudrate");
const QString Invalid = QStringLiteral("Invalid baudrate");

ChannelParam canParam(quint8 device, quint8 channel)
{
    ChannelParam param;
    param.device = device;
    param.channel = channel;
    param.Timing1 = 0x1C;
    param.AccMask = 0xFFFFFFFFU;
    return param;
}

} // namespace

/// The dialog with the real manager behind it. The tests tick the scan by hand.
class tst_GUI_CanScanBaudrate : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void form();
    void table();
    void idleAtFirst();
    void withoutDevice();
    void runs();
    void scansItsDevice();
    void listsWhatWasTried();
    void tellsTheRatesFound();
    void tellsTheDataRate();
    void findsNothing();
    void findsBoth();
    void endsWithOneFound();
    void staysAtTheBottom();
    void stops();
    void startsAnew();
    static void refused_data();
    void refused();
    void refusedScanKeepsTheResults();
    void interrupted();
    void othersScansAreTheirs();
    void applies();
    void appliesWhileItRuns();
    void namesWhatIsTried();
    void namesWhatWasFound();
    void showsTheRowFound();
    void namesNoRateBeforeTheEnd();
    static void closingStops_data();
    void closingStops();
    void parentClosedStops();
    void destructionStops();
    void reopenedAfterClosing();
    void keyboardAlone();
    void endToEnd();

private:
    void open(std::optional<quint8> device = quint8(0), QWidget *parent = nullptr);
    template<typename Widget>
    Widget *find(const char *name) const
    {
        return m_dialog->findChild<Widget *>(QLatin1String(name));
    }
    void click(const char *name) const { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    void tick(int count) const;
    int rows() const { return find<QTableView>("tableview")->model()->rowCount(); }
    QVariant cell(int row, int column, int role = Qt::DisplayRole) const;
    QStringList row(int number) const;
    int progress() const { return find<QProgressBar>("progressBar")->value(); }
    QString state() const { return find<QLabel>("lbl_state")->text(); }
    /// Text and colour class of the notice on show; empty when there is none.
    QString notice() const;
    bool isRunning() const;
    bool isIdle() const;

    std::unique_ptr<ScriptedAdapter> m_adapter;
    std::unique_ptr<CANCommunication> m_manager;
    std::unique_ptr<GUI_CanScanBaudrate> m_dialog;
};

void tst_GUI_CanScanBaudrate::init()
{
    m_adapter = std::make_unique<ScriptedAdapter>();
    m_manager = std::make_unique<CANCommunication>(m_adapter->table());
}

void tst_GUI_CanScanBaudrate::cleanup()
{
    m_dialog.reset();
    for (const quint8 channel : {quint8(0), quint8(1)}) {
        m_manager->closeChannel(0, channel);
    }
    m_manager->stopScan();
    m_manager.reset();
    m_adapter.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_GUI_CanScanBaudrate::open(std::optional<quint8> device, QWidget *parent)
{
    m_dialog = std::make_unique<GUI_CanScanBaudrate>(*m_manager, device, parent);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
}

void tst_GUI_CanScanBaudrate::tick(int count) const
{
    auto *timer = m_manager->findChild<QTimer *>(QStringLiteral("scanTimer"));
    for (int i = 0; i < count; ++i) {
        QMetaObject::invokeMethod(timer, "timeout");
    }
}

QVariant tst_GUI_CanScanBaudrate::cell(int row, int column, int role) const
{
    const QAbstractItemModel *model = find<QTableView>("tableview")->model();
    return model->index(row, column).data(role);
}

QStringList tst_GUI_CanScanBaudrate::row(int number) const
{
    return {cell(number, 0).toString(), cell(number, 1).toString(), cell(number, 2).toString()};
}

QString tst_GUI_CanScanBaudrate::notice() const
{
    const auto *widget = m_dialog->findChild<CNotice *>();
    if (!widget->isVisible()) {
        return {};
    }
    QString text;
    for (const QLabel *label : widget->findChildren<QLabel *>()) {
        text += label->text();
    }
    return text + (widget->styleSheet().contains(QStringLiteral("#fde7e9")) ? QStringLiteral(" (failure)")
                                                                            : QStringLiteral(" (other)"));
}

bool tst_GUI_CanScanBaudrate::isRunning() const
{
    return m_manager->isScanning() && find<QPushButton>("btn_stop")->isEnabled() &&
           !find<QPushButton>("btn_start")->isEnabled() && find<QPushButton>("btn_apply")->isEnabled();
}

bool tst_GUI_CanScanBaudrate::isIdle() const
{
    return !m_manager->isScanning() && !find<QPushButton>("btn_stop")->isEnabled() &&
           find<QPushButton>("btn_start")->isEnabled() && find<QPushButton>("btn_apply")->isEnabled();
}

void tst_GUI_CanScanBaudrate::form()
{
    open();
    QCOMPARE(m_dialog->windowTitle(), QStringLiteral("Auto scan baudrate"));
    QCOMPARE(m_dialog->size(), QSize(540, 380));
    QCOMPARE(m_dialog->minimumSize(), QSize(540, 380));
    QCOMPARE(m_dialog->maximumSize(), QSize(540, 380));
    QCOMPARE(find<QPushButton>("btn_start")->text(), QStringLiteral("Scan"));
    QCOMPARE(find<QPushButton>("btn_stop")->text(), QStringLiteral("Stop"));
    QCOMPARE(find<QPushButton>("btn_apply")->text(), QStringLiteral("Apply"));
    QCOMPARE(find<QPushButton>("btn_start")->property("nav").toString(), QStringLiteral("tBtnStyle_1"));
    QCOMPARE(find<QPushButton>("btn_stop")->property("nav").toString(), QStringLiteral("tBtnStyle_4"));
    QCOMPARE(find<QPushButton>("btn_apply")->property("nav").toString(), QStringLiteral("tBtnStyle_3"));
    QCOMPARE(find<QProgressBar>("progressBar")->minimum(), 0);
    QCOMPARE(find<QProgressBar>("progressBar")->maximum(), 54);
    QCOMPARE(progress(), 0);
}

void tst_GUI_CanScanBaudrate::table()
{
    open();
    const auto *view = find<QTableView>("tableview");
    const QAbstractItemModel *model = view->model();
    QCOMPARE(model->columnCount(), 3);
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Baudrate"));
    QCOMPARE(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Channel0"));
    QCOMPARE(model->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Channel1"));
    QCOMPARE(view->columnWidth(0), 100);
    QCOMPARE(view->columnWidth(1), 200);
    QCOMPARE(view->columnWidth(2), 200);
    QVERIFY(view->viewport()->width() >= 500); // every column is seen whole
    QCOMPARE(view->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(view->selectionMode(), QAbstractItemView::NoSelection);
    QVERIFY(view->verticalHeader()->isHidden());
}

void tst_GUI_CanScanBaudrate::idleAtFirst()
{
    open();
    QVERIFY(isIdle());
    QCOMPARE(rows(), 0);
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_GUI_CanScanBaudrate::withoutDevice()
{
    open(std::nullopt);
    QCOMPARE(notice(), QString());
    click("btn_start");
    QCOMPARE(notice(), QStringLiteral("No devices (failure)"));
    QVERIFY(isIdle());
    QCOMPARE(m_adapter->takeCalls(), QStringList());
}

void tst_GUI_CanScanBaudrate::runs()
{
    open();
    click("btn_start");
    QVERIFY(isRunning());
    for (int step = 1; step <= StepCount; ++step) {
        QCOMPARE(progress(), step - 1);
        QCOMPARE(rows(), step - 1);
        QVERIFY(isRunning());
        tick(TicksPerStep);
    }
    QCOMPARE(progress(), StepCount);
    QVERIFY(isIdle());
}

void tst_GUI_CanScanBaudrate::scansItsDevice()
{
    open(quint8(5));
    click("btn_start");
    QCOMPARE(m_adapter->takeCalls(), QStringList(QStringLiteral("VCI_OpenDevice 4 5 0")));
}

void tst_GUI_CanScanBaudrate::listsWhatWasTried()
{
    open();
    click("btn_start");
    tick(TicksPerStep);
    m_adapter->announce(false, 1, 1, 0);
    tick(TicksPerStep);
    tick(TicksPerStep);
    QCOMPARE(rows(), 3);
    QCOMPARE(row(0), QStringList({QStringLiteral("1000k bps"), Invalid, Invalid}));
    QCOMPARE(row(1), QStringList({QStringLiteral("800k bps"), Invalid, Effective}));
    QCOMPARE(row(2), QStringList({QStringLiteral("500k bps"), Invalid, QString()}));
    QCOMPARE(cell(1, 2, Qt::ForegroundRole).value<QBrush>().color(), QColor(QStringLiteral("#55b155")));
    QVERIFY(!cell(1, 1, Qt::ForegroundRole).isValid());
    QVERIFY(!cell(1, 0, Qt::ForegroundRole).isValid());
    for (int number = 0; number < 3; ++number) {
        QCOMPARE(find<QTableView>("tableview")->rowHeight(number), 20);
    }
}

void tst_GUI_CanScanBaudrate::tellsTheRatesFound()
{
    open();
    const QSignalSpy found(m_dialog.get(), &GUI_CanScanBaudrate::sig_rateFound);
    click("btn_start");
    tick(2 * TicksPerStep);
    QCOMPARE(found.size(), 0);
    m_adapter->announce(false, 0, 1, 0);
    tick(TicksPerStep);
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.at(0), QVariantList({3, 0}));
    tick(7 * TicksPerStep); // what was found before is not told again
    QCOMPARE(found.size(), 1);
    m_adapter->announce(true, 1, 1, 0);
    tick(1);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(1), QVariantList({2, 1}));
    QVERIFY(isIdle());
}

void tst_GUI_CanScanBaudrate::tellsTheDataRate()
{
    open();
    click("btn_start");
    tick(StepCount * TicksPerStep);
    const QStringList tips{QString(),
                           QStringLiteral("CANFD baudrate: 1M bps"),
                           QStringLiteral("CANFD baudrate: 2M bps"),
                           QStringLiteral("CANFD baudrate: 4M bps"),
                           QStringLiteral("CANFD baudrate: 5M bps"),
                           QStringLiteral("CANFD baudrate: #5")};
    for (int number = 0; number < StepCount; ++number) {
        for (int column = 0; column < 3; ++column) {
            QCOMPARE(cell(number, column, Qt::ToolTipRole).toString(), tips.at(number / 9));
        }
    }
}

void tst_GUI_CanScanBaudrate::findsNothing()
{
    open();
    const QSignalSpy found(m_dialog.get(), &GUI_CanScanBaudrate::sig_rateFound);
    click("btn_start");
    tick(StepCount * TicksPerStep);
    QCOMPARE(rows(), StepCount);
    QCOMPARE(row(StepCount - 1), QStringList({QStringLiteral("10k bps"), Invalid, Invalid}));
    QCOMPARE(found.size(), 0);
    QVERIFY(isIdle());
    QCOMPARE(notice(), QString());
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_GUI_CanScanBaudrate::findsBoth()
{
    open();
    click("btn_start");
    tick(2 * TicksPerStep);
    m_adapter->announce(false, 0, 1, 0);
    m_adapter->announce(false, 1, 1, 0);
    tick(1);
    QCOMPARE(rows(), 3);
    QCOMPARE(row(2), QStringList({QStringLiteral("500k bps"), Effective, Effective}));
    QCOMPARE(progress(), StepCount);
    QVERIFY(isIdle());
    QCOMPARE(notice(), QString());
}

void tst_GUI_CanScanBaudrate::endsWithOneFound()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    m_adapter->announce(false, 0, 1, 0);
    open();
    click("btn_start");
    tick(TicksPerStep * StepCount);
    QCOMPARE(rows(), StepCount);
    QCOMPARE(row(0), QStringList({QStringLiteral("1000k bps"), Effective, Invalid}));
    QCOMPARE(row(1), QStringList({QStringLiteral("800k bps"), QString(), Invalid}));
    QCOMPARE(progress(), StepCount);
    QVERIFY(isIdle());
}

void tst_GUI_CanScanBaudrate::staysAtTheBottom()
{
    open();
    const QScrollBar *bar = find<QTableView>("tableview")->verticalScrollBar();
    click("btn_start");
    int scrolled = 0;
    for (int step = 0; step < StepCount; ++step) {
        tick(TicksPerStep);
        QCOMPARE(bar->value(), bar->maximum());
        scrolled += bar->value() > 0 ? 1 : 0;
    }
    QVERIFY(scrolled > 30);
}

void tst_GUI_CanScanBaudrate::stops()
{
    open();
    click("btn_start");
    m_adapter->announce(false, 0, 1, 0);
    tick(3 * TicksPerStep + 5);
    click("btn_stop");
    QVERIFY(isIdle());
    QVERIFY(!m_manager->isDeviceOpen(0));
    QCOMPARE(rows(), 3);
    QCOMPARE(progress(), 3);
    QCOMPARE(row(0), QStringList({QStringLiteral("1000k bps"), Effective, Invalid}));
    QCOMPARE(notice(), QString());
    tick(40);
    QCOMPARE(rows(), 3);
}

void tst_GUI_CanScanBaudrate::startsAnew()
{
    m_adapter->announce(false, 0, 1, 0);
    open();
    click("btn_start");
    tick(3 * TicksPerStep);
    click("btn_stop");
    m_adapter->announce(false, 0, 0, 0);
    m_adapter->announce(false, 1, 1, 0);
    click("btn_start");
    QVERIFY(isRunning());
    QCOMPARE(rows(), 0);
    QCOMPARE(progress(), 0);
    tick(TicksPerStep);
    QCOMPARE(row(0), QStringList({QStringLiteral("1000k bps"), Invalid, Effective}));
    // What the first scan found does not count.
    click("btn_stop");
    QCOMPARE(progress(), 1);
}

void tst_GUI_CanScanBaudrate::refused_data()
{
    QTest::addColumn<QString>("reason");
    QTest::newRow("in use") << QStringLiteral("Both CAN channels are in use");
    QTest::newRow("open failed") << QStringLiteral("Device open failed");
    QTest::newRow("another scan") << QStringLiteral("Another scan is running");
}

void tst_GUI_CanScanBaudrate::refused()
{
    QFETCH(QString, reason);
    const QString tag = QString::fromLatin1(QTest::currentDataTag());
    if (tag == QLatin1String("in use")) {
        QCOMPARE(m_manager->openChannel(canParam(0, 0)), CAN_OK);
        QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    } else if (tag == QLatin1String("open failed")) {
        m_adapter->answer("VCI_OpenDevice", 0);
    } else {
        QCOMPARE(m_manager->slot_scanCANBaudrate(1, 0), CAN_OK);
    }
    open();
    click("btn_start");
    QCOMPARE(notice(), reason + QStringLiteral(" (failure)"));
    QVERIFY(find<QPushButton>("btn_start")->isEnabled());
    QVERIFY(find<QPushButton>("btn_apply")->isEnabled());
    QVERIFY(!find<QPushButton>("btn_stop")->isEnabled());
    tick(TicksPerStep);
    QCOMPARE(rows(), 0);
    QCOMPARE(progress(), 0);
}

void tst_GUI_CanScanBaudrate::refusedScanKeepsTheResults()
{
    open();
    click("btn_start");
    tick(2 * TicksPerStep);
    click("btn_stop");
    m_adapter->answer("VCI_OpenDevice", 0);
    click("btn_start");
    QCOMPARE(rows(), 2);
    QCOMPARE(progress(), 2);
}

void tst_GUI_CanScanBaudrate::interrupted()
{
    open();
    click("btn_start");
    tick(2 * TicksPerStep);
    QCOMPARE(m_manager->closeDevice(0), CAN_OK);
    QVERIFY(isIdle());
    QCOMPARE(rows(), 2);
    QCOMPARE(progress(), 2);
    QCOMPARE(notice(), QStringLiteral("The scan was interrupted (other)"));
}

void tst_GUI_CanScanBaudrate::othersScansAreTheirs()
{
    open();
    const QSignalSpy found(m_dialog.get(), &GUI_CanScanBaudrate::sig_rateFound);
    m_adapter->announce(false, 0, 1, 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    tick(2 * TicksPerStep);
    QCOMPARE(rows(), 0);
    QCOMPARE(found.size(), 0);
    QVERIFY(!find<QPushButton>("btn_stop")->isEnabled());
    m_dialog->hide(); // nor is it this dialog's to stop
    QVERIFY(m_manager->isScanning());
    m_dialog->show();
    m_manager->stopScan();
    QCOMPARE(notice(), QString());
    QCOMPARE(progress(), 0);
    QCOMPARE(m_manager->slot_scanCANBaudrate(0, 0), CAN_OK);
    m_dialog.reset();
    QVERIFY(m_manager->isScanning());
}

void tst_GUI_CanScanBaudrate::applies()
{
    m_adapter->announce(false, 0, 1, 0);
    m_adapter->announce(false, 1, 1, 0);
    open();
    const QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
    click("btn_start");
    tick(1);
    QVERIFY(isIdle());
    click("btn_apply");
    QCOMPARE(accepted.size(), 1);
    QVERIFY(!m_dialog->isVisible());
}

void tst_GUI_CanScanBaudrate::appliesWhileItRuns()
{
    m_adapter->announce(false, 0, 1, 0);
    open();
    const QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
    const QSignalSpy found(m_dialog.get(), &GUI_CanScanBaudrate::sig_rateFound);
    click("btn_start");
    tick(TicksPerStep);
    QVERIFY(isRunning());
    click("btn_apply");
    QCOMPARE(accepted.size(), 1);
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(isIdle());
    QVERIFY(!m_manager->isDeviceOpen(0));
    QCOMPARE(found.size(), 1);
    QCOMPARE(notice(), QString());
}

void tst_GUI_CanScanBaudrate::namesWhatIsTried()
{
    open();
    QCOMPARE(state(), QString());
    click("btn_start");
    QCOMPARE(state(), QStringLiteral("Trying 1000k bps"));
    tick(TicksPerStep - 1);
    QCOMPARE(state(), QStringLiteral("Trying 1000k bps"));
    tick(1);
    QCOMPARE(state(), QStringLiteral("Trying 800k bps"));
    tick(7 * TicksPerStep);
    QCOMPARE(state(), QStringLiteral("Trying 10k bps"));
    tick(TicksPerStep);
    QCOMPARE(state(), QStringLiteral("Trying 1000k bps, CANFD 1M bps"));
    tick(44 * TicksPerStep);
    QCOMPARE(state(), QStringLiteral("Trying 10k bps, CANFD #5"));
    tick(TicksPerStep);
    QCOMPARE(state(), QStringLiteral("No baudrate found"));
}

void tst_GUI_CanScanBaudrate::namesWhatWasFound()
{
    open();
    click("btn_start");
    m_adapter->announce(false, 1, 1, 0);
    tick(TicksPerStep);
    QCOMPARE(state(), QStringLiteral("Trying 800k bps"));
    tick(10 * TicksPerStep);
    m_adapter->announce(true, 0, 1, 0);
    tick(1);
    QVERIFY(isIdle());
    QCOMPARE(state(), QStringLiteral("Found: Channel0 500k bps, CANFD 1M bps; Channel1 1000k bps"));
}

/// A channel in use is not scanned, so nothing is said of it.
void tst_GUI_CanScanBaudrate::showsTheRowFound()
{
    QCOMPARE(m_manager->openChannel(canParam(0, 1)), CAN_OK);
    open();
    const auto *view = find<QTableView>("tableview");
    click("btn_start");
    tick(4 * TicksPerStep);
    m_adapter->announce(false, 0, 1, 0);
    tick((StepCount - 4) * TicksPerStep - 1);
    QCOMPARE(row(4), QStringList({QStringLiteral("125k bps"), Effective, Invalid}));
    const auto isInView = [view] {
        return view->viewport()->rect().contains(view->visualRect(view->model()->index(4, 0)));
    };
    QVERIFY(!isInView()); // while it runs, the newest row is
    tick(1);
    QVERIFY(isIdle());
    QVERIFY(isInView());
    QCOMPARE(state(), QStringLiteral("Found: Channel0 125k bps"));
}

void tst_GUI_CanScanBaudrate::namesNoRateBeforeTheEnd()
{
    open();
    click("btn_start");
    tick(TicksPerStep);
    click("btn_stop");
    QCOMPARE(state(), QStringLiteral("Not all baudrates tried, none found"));
    m_adapter->announce(false, 0, 1, 0);
    click("btn_start");
    QCOMPARE(state(), QStringLiteral("Trying 1000k bps"));
    tick(TicksPerStep);
    click("btn_stop");
    QCOMPARE(state(), QStringLiteral("Found: Channel0 1000k bps"));
}

void tst_GUI_CanScanBaudrate::closingStops_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("Esc") << QStringLiteral("Esc");
    QTest::newRow("title bar") << QStringLiteral("close");
    QTest::newRow("hidden") << QStringLiteral("hide");
}

void tst_GUI_CanScanBaudrate::closingStops()
{
    QFETCH(QString, way);
    open();
    click("btn_start");
    tick(TicksPerStep);
    if (way == QLatin1String("Esc")) {
        QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    } else if (way == QLatin1String("close")) {
        m_dialog->close();
    } else {
        m_dialog->hide();
    }
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(isIdle());
    QVERIFY(!m_manager->isDeviceOpen(0));
}

void tst_GUI_CanScanBaudrate::parentClosedStops()
{
    auto window = std::make_unique<QWidget>();
    auto *page = new QWidget(window.get());
    window->show();
    open(quint8(0), page);
    click("btn_start");
    tick(TicksPerStep);
    QVERIFY(isRunning());
    window->close();
    const bool isStopped = isIdle();
    const bool isVisible = m_dialog->isVisible();
    m_dialog.reset(); // before the window deletes it
    QVERIFY(isStopped);
    QVERIFY(!isVisible);
}

void tst_GUI_CanScanBaudrate::destructionStops()
{
    QSignalSpy finished(m_manager.get(), &CANCommunication::sig_scanFinish);
    open();
    click("btn_start");
    m_dialog.reset();
    QVERIFY(!m_manager->isScanning());
    QVERIFY(!m_manager->isDeviceOpen(0));
    QCOMPARE(finished.size(), 1);

    auto parent = std::make_unique<QWidget>();
    auto *child = new GUI_CanScanBaudrate(*m_manager, quint8(0), parent.get());
    child->show();
    QTest::mouseClick(child->findChild<QPushButton *>(QStringLiteral("btn_start")), Qt::LeftButton);
    QVERIFY(m_manager->isScanning());
    parent.reset();
    QVERIFY(!m_manager->isScanning());
}

void tst_GUI_CanScanBaudrate::reopenedAfterClosing()
{
    open();
    click("btn_start");
    tick(TicksPerStep);
    m_dialog->reject();
    m_dialog->show();
    QVERIFY(isIdle());
    click("btn_start");
    QVERIFY(isRunning());
    tick(TicksPerStep);
    QCOMPARE(rows(), 1);
}

void tst_GUI_CanScanBaudrate::keyboardAlone()
{
    open();
    QCOMPARE(m_dialog->focusWidget(), find<QWidget>("btn_start"));
    QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Return);
    QVERIFY(isRunning());
    QCOMPARE(m_dialog->focusWidget(), find<QWidget>("btn_stop"));
    QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Space);
    QVERIFY(isIdle());
    QCOMPARE(m_dialog->focusWidget(), find<QWidget>("btn_start"));
    QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Space);
    m_adapter->announce(false, 0, 1, 0);
    m_adapter->announce(false, 1, 1, 0);
    tick(1);
    QCOMPARE(m_dialog->focusWidget(), find<QWidget>("btn_apply"));
    QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Return);
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
}

void tst_GUI_CanScanBaudrate::endToEnd()
{
    m_manager.reset();
    const AdapterFolder folder(R"({
      "buses": [{"name": "fd", "bitrate": "800k", "data_rate": 1, "nodes": [
                   {"id": 1, "period_us": 3000, "format": "fd-brs", "length": 64}]},
                {"name": "classic", "bitrate": "500k", "nodes": [{"id": 2, "period_us": 3000}]}],
      "devices": [{"model": "X9FC", "can": [{"bus": "classic"}, {"bus": "fd"}]}]
    })");
    m_manager = std::make_unique<CANCommunication>(std::make_unique<CANAPI>(QStringLiteral(X9_VIRTUAL_ADAPTER)));
    open();
    const QSignalSpy found(m_dialog.get(), &GUI_CanScanBaudrate::sig_rateFound);
    click("btn_start");
    QVERIFY(isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), 30000);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0), QVariantList({3, 0}));
    QCOMPARE(found.at(1), QVariantList({2, 1}));
    QCOMPARE(rows(), 11);
    QCOMPARE(row(2), QStringList({QStringLiteral("500k bps"), Effective, Invalid}));
    QCOMPARE(row(10), QStringList({QStringLiteral("800k bps"), QString(), Effective}));
    QCOMPARE(progress(), StepCount);
    QVERIFY(!m_manager->isDeviceOpen(0));
    m_dialog.reset();
    m_manager.reset(); // before the folder goes
    m_manager = std::make_unique<CANCommunication>(m_adapter->table());
}

X9_GUI_TEST(tst_GUI_CanScanBaudrate)
#include "tst_GUI_CanScanBaudrate.moc"
