#include "capture/DataModel.h"
#include "capture/GUI_CanAdvancedOpearation.h"
#include "capture/WidgetDelegateCAN.h"
#include "device/CANAPI.h"
#include "device/CANCommunication.h"
#include "resources/Resources.h"
#include "tests/support/ScriptedAdapter.h"
#include "tests/support/TestProgram.h"
#include "tests/support/Ticks.h"
#include "widgets/CNotice.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableWidget>
#include <QTime>
#include <QTimer>
#include <QtTest>
#include <QWindow>

#include <array>

namespace {
using Column = WidgetDelegateCAN::Column;

constexpr quint8 Device = 2;
constexpr quint8 Channel = 1;
constexpr int Long = 60000; ///< ms, a wait that does not end during a test

/// The twelve controls that the tab switches.
const std::array<const char *, 12> Controls{"btnAllSelect", "btnInvert", "btnAdd",    "btnRemove",
                                            "btnImport",    "btnExport", "checkBox",  "btnListSend",
                                            "m_btnStop",    "cbxMode",   "cbxRepeat", "lbxInterval"};

ChannelParam channelParam(bool isCANFD)
{
    ChannelParam param;
    param.device = Device;
    param.channel = Channel;
    param.isCANFD = isCANFD;
    param.dataRateCANFD = isCANFD ? 2 : 0;
    return param;
}

template<typename Record>
QVector<quint32> idsOf(const std::vector<Record> &frames)
{
    QVector<quint32> ids;
    for (const Record &frame : frames) {
        ids.append(frame.ID);
    }
    return ids;
}

template<typename Record>
QByteArray payloadOf(const Record &frame)
{
    return QByteArray(reinterpret_cast<const char *>(frame.Data), sizeof frame.Data).toHex();
}

/// The dialog on an opened channel of a recording adapter, its widgets by name.
class Lister
{
public:
    explicit Lister(bool isCANFD = false, QWidget *parent = nullptr)
        : manager(adapter.table())
        , dialog(std::make_unique<GUI_CanAdvancedOpearation>(channelParam(isCANFD), manager, parent))
        , states(dialog.get(), &GUI_CanAdvancedOpearation::sig_sendStateChanged)
    {
        QObject::connect(dialog.get(), &GUI_CanAdvancedOpearation::sig_addTableItems,
                         [this](const QVector<CTableViewCAN::DataObject> &objs) { batches.append(objs); });
        isOpen = manager.openChannel(channelParam(isCANFD)) == CAN_OK;
        adapter.takeCalls();
        dialog->show();
        isActive = QTest::qWaitForWindowActive(dialog.get());
    }
    ~Lister()
    {
        if (isOpen) {
            manager.closeChannel(Device, Channel);
        }
    }
    Lister(const Lister &) = delete;
    Lister &operator=(const Lister &) = delete;

    template<typename Widget>
    Widget *find(const char *name) const
    {
        return dialog->findChild<Widget *>(QLatin1String(name));
    }
    QTableWidget *table() const { return find<QTableWidget>("tableWidget"); }
    void click(const char *name) const { QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton); }
    /// Many presses without a picture of the window after each.
    void press(const char *name, int count = 1) const
    {
        auto *button = find<QPushButton>(name);
        for (int i = 0; i < count && button->isVisible(); ++i) {
            button->click();
        }
    }
    void addRows(int count) const
    {
        press("btnAdd", count - 1);
        click("btnAdd");
    }
    /// Puts a value where an editor would.
    void set(int row, Column column, int value, int base = 10) const
    {
        QAbstractItemModel *model = table()->model();
        model->setItemData(model->index(row, column),
                           {{Qt::DisplayRole, QString::number(value, base)}, {Qt::UserRole, value}});
    }
    /// A row with the identifier as its name, ticked.
    void addFrame(int id, int sendCount, int interval = 1, int frameCount = 1) const
    {
        click("btnAdd");
        const int row = table()->rowCount() - 1;
        set(row, Column::Id, id, 16);
        set(row, Column::FrameCount, frameCount);
        set(row, Column::SendCount, sendCount);
        set(row, Column::Interval, interval);
        table()->item(row, Column::Tick)->setCheckState(Qt::Checked);
    }
    void chooseOrder(int repeat, int interval = 1) const
    {
        find<QComboBox>("cbxMode")->setCurrentIndex(1);
        find<QSpinBox>("cbxRepeat")->setValue(repeat);
        find<QSpinBox>("lbxInterval")->setValue(interval);
    }

    QString text(int row, Column column) const { return table()->item(row, column)->text(); }
    bool isTicked(int row) const { return table()->item(row, Column::Tick)->checkState() == Qt::Checked; }
    DataModel model(int row) const { return table()->item(row, Column::Tick)->data(Qt::UserRole).value<DataModel>(); }
    QStringList texts(int row) const
    {
        QStringList result;
        for (int column = Column::Number; column < WidgetDelegateCAN::ColumnCount; ++column) {
            result.append(text(row, static_cast<Column>(column)));
        }
        return result;
    }

    void setCurrent(int row, Column column) const
    {
        table()->setFocus();
        table()->setCurrentCell(row, column);
    }
    /// Opens the current cell's editor with F2; null when there is none.
    QWidget *editCurrent() const
    {
        QTest::keyClick(table(), Qt::Key_F2);
        return editor();
    }
    /// The editor that has the focus.
    QWidget *editor() const
    {
        QWidget *focus = QApplication::focusWidget();
        return focus != nullptr && table()->viewport()->isAncestorOf(focus) ? focus : nullptr;
    }
    /// Edits a cell by keyboard, from F2, which selects what is there, to Enter.
    bool type(int row, Column column, const QString &keys) const
    {
        setCurrent(row, column);
        QPointer<QWidget> cell = editCurrent();
        if (cell.isNull()) {
            return false;
        }
        QTest::keyClicks(cell, keys);
        QTest::keyClick(cell, Qt::Key_Return);
        return QTest::qWaitFor([&cell] { return cell.isNull(); });
    }

    bool isIdle() const
    {
        return find<QPushButton>("btnListSend")->isEnabled() && !find<QPushButton>("m_btnStop")->isEnabled();
    }
    bool isSending() const
    {
        return !find<QPushButton>("btnListSend")->isEnabled() && find<QPushButton>("m_btnStop")->isEnabled();
    }
    /// Sends on and says whether so many more frames have gone out.
    bool hasSent(int frames)
    {
        const auto more = adapter.takeFrames();
        sent.insert(sent.end(), more.cbegin(), more.cend());
        return static_cast<int>(sent.size()) >= frames;
    }
    /// Text and type of the notice on the dialog; empty when it has none.
    QString notice() const
    {
        const auto *notice = dialog->findChild<CNotice *>();
        if (notice->isHidden()) {
            return {};
        }
        const bool isWarning = notice->styleSheet().contains(QStringLiteral("#fff4ce"));
        return notice->accessibleName() + (isWarning ? QStringLiteral(" (warning)") : QString());
    }
    QVector<bool> stateChanges() const
    {
        QVector<bool> changes;
        for (const QList<QVariant> &arguments : states) {
            changes.append(arguments.first().toBool());
        }
        return changes;
    }

    ScriptedAdapter adapter;
    CANCommunication manager;
    std::unique_ptr<GUI_CanAdvancedOpearation> dialog;
    QSignalSpy states;
    QVector<QVector<CTableViewCAN::DataObject>> batches;
    std::vector<VCI_CAN_OBJ> sent; ///< what hasSent() has taken
    bool isOpen = false;
    bool isActive = false;
};

/// A tab as far as the list is concerned: state of its own that is gone before its children are.
class Tab : public QWidget
{
public:
    void setState(bool state) { m_states->append(state); }

private:
    std::unique_ptr<QVector<bool>> m_states = std::make_unique<QVector<bool>>();
};

/// How a window can go away.
using Closing = void (*)(GUI_CanAdvancedOpearation &);
} // namespace

Q_DECLARE_METATYPE(Closing)
Q_DECLARE_METATYPE(WidgetDelegateCAN::Column)

class tst_GUI_CanAdvancedOpearation : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase();

    static void widgets();
    static void columns();
    static void window();
    static void givesWayToModalDialogs();

    static void newRow();
    static void atMost1000Rows();
    static void removesTheCurrentRow();
    static void removesWithoutCurrentRow();
    static void thousandRowsOneByOne();
    static void ticks();
    static void importAndExportDoNothing();

    static void cellsMakeTheFrame();
    static void standardCutsTheIdentifier();
    static void lengthDecidesWhatIsSent_data();
    static void lengthDecidesWhatIsSent();
    static void dataComesBackWithTheLength();
    static void editsByKeyboardAlone();
    static void tabGoesThroughTheEditableCells();
    static void tabLeavesTheTable();
    static void escapeKeepsTheCell();
    static void losingTheFocusAccepts();
    static void spaceTicksTheRow();
    static void enterPressesNoButton();
    static void enterPressesTheButtonWithTheFocus();

    static void emptyList();
    static void nothingTicked();
    static void parallel();
    static void order();
    static void tickedRowsOnly();
    static void sendsToItsChannel();
    static void waits_data();
    static void waits();
    static void waitsFromTheAdaptersReturn();
    static void framesAsInTheRow();
    static void fdChannel();
    static void mostCopies();
    static void printsToTheTable();
    static void printsFailures();
    static void printsOnlyWhenTicked();
    static void aVanishedDeviceDoesNotStopIt();

    static void tellsItsState();
    static void controlsWhileSending();
    static void switchedByTheTab();
    static void switchedByTheTabWhileSending();
    static void modeSwitchesRepetition();
    static void worksOnCopies();
    static void takesTheRowsAnew();
    static void tableIsNotChangedBySending();
    static void stops();
    static void stoppedByAListener();
    static void stoppedAtTheStart();
    static void slotsWhileIdle();
    static void closingStops_data();
    static void closingStops();
    static void minimisingDoesNotStop();
    static void deletedWhileSending();
    static void deletedWithItsTab();
};

void tst_GUI_CanAdvancedOpearation::initTestCase()
{
    initResources(); // the size on screen is that with the program's look
    qApp->setFont(QFont(qApp->font().family(), 9));
    qApp->setStyleSheet(QStringLiteral("file:///:/Skins/White/White.css"));
}

void tst_GUI_CanAdvancedOpearation::widgets()
{
    const Lister lister;
    QVERIFY(lister.isOpen);
    const auto caption = [&lister](const char *name) {
        const auto *button = lister.find<QAbstractButton>(name);
        return button != nullptr ? button->text() : QString();
    };
    QCOMPARE(caption("btnAllSelect"), QStringLiteral("All"));
    QCOMPARE(caption("btnInvert"), QStringLiteral("Invert"));
    QCOMPARE(caption("btnAdd"), QStringLiteral("Add"));
    QCOMPARE(caption("btnRemove"), QStringLiteral("Remove"));
    QCOMPARE(caption("btnImport"), QStringLiteral("Import"));
    QCOMPARE(caption("btnExport"), QStringLiteral("Export"));
    QCOMPARE(caption("checkBox"), QStringLiteral("Print to table"));
    QCOMPARE(caption("btnListSend"), QStringLiteral("List send"));
    QCOMPARE(caption("m_btnStop"), QStringLiteral("Stop"));
    QCOMPARE(lister.find<QLabel>("lblRepeat")->text(), QStringLiteral("Repeat:"));
    QCOMPARE(lister.find<QLabel>("lblInterval")->text(), QStringLiteral("Interval(ms):"));
    const auto *mode = lister.find<QComboBox>("cbxMode");
    QCOMPARE(mode->count(), 2);
    QCOMPARE(mode->currentIndex(), 0);
    QCOMPARE(mode->itemText(0), QStringLiteral("Parallel send mode"));
    QCOMPARE(mode->itemText(1), QStringLiteral("Order send mode"));
    for (const char *name : {"cbxRepeat", "lbxInterval"}) {
        const auto *box = lister.find<QSpinBox>(name);
        QCOMPARE(box->minimum(), 1);
        QCOMPARE(box->maximum(), 65535);
        QCOMPARE(box->value(), 1);
    }
    QVERIFY(lister.find<QSpinBox>("cbxRepeat")->wrapping());
    QVERIFY(lister.isIdle());
    QVERIFY(!lister.find<QCheckBox>("checkBox")->isChecked());
    for (const char *name : {"tableWidget", "cbxMode"}) {
        QVERIFY2(!lister.find<QWidget>(name)->accessibleName().isEmpty(), name);
    }
}

void tst_GUI_CanAdvancedOpearation::columns()
{
    const Lister lister;
    lister.addRows(30); // with a scroll bar
    const QTableWidget *table = lister.table();
    QStringList titles;
    for (int column = 0; column < table->columnCount(); ++column) {
        titles.append(table->horizontalHeaderItem(column)->text());
    }
    QCOMPARE(titles, (QStringList{QString(), QStringLiteral("No."), QStringLiteral("ID"), QStringLiteral("Type"),
                                  QStringLiteral("Length"), QStringLiteral("Data"), QStringLiteral("Frame count"),
                                  QStringLiteral("Send count"), QStringLiteral("Interval(ms)")}));
    const std::array<int, 7> widths{70, 80, 70, 70, 160, 120, 120};
    for (int i = 0; i < 7; ++i) {
        QCOMPARE(table->columnWidth(i + 1), widths.at(static_cast<std::size_t>(i)));
    }
    QVERIFY(table->verticalHeader()->isHidden());
    QVERIFY(table->horizontalHeader()->stretchLastSection());
    QCOMPARE(table->horizontalHeader()->length(), table->viewport()->width()); // all of it is seen
}

void tst_GUI_CanAdvancedOpearation::window()
{
    const Lister lister;
    QCOMPARE(lister.dialog->size(), QSize(835, 400));
    QVERIFY(lister.dialog->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(lister.dialog->windowFlags().testFlag(Qt::WindowCloseButtonHint));
    QVERIFY(!lister.dialog->isModal());
}

void tst_GUI_CanAdvancedOpearation::givesWayToModalDialogs()
{
    const Lister lister;
    const auto isOnTop = [&lister] {
        return lister.dialog->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint);
    };
    QVERIFY(isOnTop());
    QDialog message;
    message.setModal(true);
    message.show();
    QTRY_VERIFY(!isOnTop());
    QVERIFY(lister.dialog->isVisible());
    message.close();
    QTRY_VERIFY(isOnTop());
}

void tst_GUI_CanAdvancedOpearation::newRow()
{
    const Lister lister;
    lister.addRows(2);
    QCOMPARE(lister.table()->rowCount(), 2);
    QCOMPARE(lister.texts(1),
             (QStringList{QStringLiteral("2"), QStringLiteral("0"), QStringLiteral("Standard"), QStringLiteral("0"),
                          QString(), QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("1")}));
    QVERIFY(!lister.isTicked(1));
    QCOMPARE(lister.table()->item(1, Column::Tick)->text(), QString());
    const std::array<int, 9> values{-1, -1, 0, 0, 0, -1, 1, 1, 1};
    for (int column = 0; column < 9; ++column) {
        const int value = values.at(static_cast<std::size_t>(column));
        if (value >= 0) {
            QCOMPARE(lister.table()->item(1, column)->data(Qt::UserRole).toInt(), value);
        }
    }
    const DataModel model = lister.model(1);
    QCOMPARE(quint32(model.frame.ID), 0U);
    QCOMPARE(int(model.frame.DataLen), 0);
    QCOMPARE(int(model.frameCount), 1);
    QCOMPARE(int(model.sendCount), 1);
    QCOMPARE(int(model.interval), 1);
    const QVariant data = lister.table()->item(1, Column::Tick)->data(Qt::UserRole);
    QCOMPARE(QByteArray(data.typeName()), QByteArray("DataModel"));
    QVERIFY(QMetaType::type("DataModel") != QMetaType::UnknownType);
}

void tst_GUI_CanAdvancedOpearation::atMost1000Rows()
{
    const Lister lister;
    lister.addRows(1000);
    QCOMPARE(lister.table()->rowCount(), 1000);
    QCOMPARE(lister.text(999, Column::Number), QStringLiteral("1000"));
    lister.addRows(1);
    QCOMPARE(lister.table()->rowCount(), 1000);
    QCOMPARE(lister.notice(), QString());
}

void tst_GUI_CanAdvancedOpearation::removesTheCurrentRow()
{
    const Lister lister;
    for (int id = 1; id <= 4; ++id) {
        lister.addFrame(id, id);
    }
    lister.setCurrent(1, Column::Data);
    lister.click("btnRemove");
    QCOMPARE(lister.table()->rowCount(), 3);
    QStringList cells;
    for (int row = 0; row < 3; ++row) {
        cells.append(lister.text(row, Column::Number) + QLatin1Char(':') + lister.text(row, Column::Id));
        QCOMPARE(int(lister.model(row).frame.ID), lister.text(row, Column::Id).toInt());
    }
    QCOMPARE(cells, (QStringList{QStringLiteral("1:1"), QStringLiteral("2:3"), QStringLiteral("3:4")}));
    QCOMPARE(lister.notice(), QString());
}

void tst_GUI_CanAdvancedOpearation::removesWithoutCurrentRow()
{
    const Lister lister;
    lister.click("btnRemove");
    QCOMPARE(lister.notice(), QStringLiteral("Please select the delete item first (warning)"));
    lister.addRows(1);
    lister.click("btnRemove");
    QCOMPARE(lister.table()->rowCount(), 1);
}

void tst_GUI_CanAdvancedOpearation::thousandRowsOneByOne()
{
    const Lister lister;
    lister.addRows(1000);
    lister.click("btnAllSelect");
    lister.setCurrent(0, Column::Id);
    for (int left = 999; left >= 0; --left) {
        lister.press("btnRemove");
        QCOMPARE(lister.table()->rowCount(), left);
        if (left > 0) {
            QCOMPARE(lister.text(0, Column::Number), QStringLiteral("1"));
            QCOMPARE(lister.text(left - 1, Column::Number), QString::number(left));
        }
    }
    lister.click("btnRemove");
    QCOMPARE(lister.notice(), QStringLiteral("Please select the delete item first (warning)"));
    lister.addRows(1);
    QCOMPARE(lister.text(0, Column::Number), QStringLiteral("1"));
}

void tst_GUI_CanAdvancedOpearation::ticks()
{
    const Lister lister;
    lister.addRows(5);
    const auto ticked = [&lister] {
        QString rows;
        for (int row = 0; row < 5; ++row) {
            rows += QLatin1Char(lister.isTicked(row) ? 'x' : '.');
        }
        return rows;
    };
    const auto clickBox = [&lister](int row) {
        const QRect cell = lister.table()->visualItemRect(lister.table()->item(row, Column::Tick));
        QTest::mouseClick(lister.table()->viewport(), Qt::LeftButton, {}, cell.center());
    };
    QCOMPARE(ticked(), QStringLiteral("....."));
    clickBox(1);
    clickBox(3);
    QCOMPARE(ticked(), QStringLiteral(".x.x."));
    clickBox(3);
    QCOMPARE(ticked(), QStringLiteral(".x..."));
    lister.click("btnInvert"); // unticks, and ticks nothing
    QCOMPARE(ticked(), QStringLiteral("....."));
    clickBox(0);
    lister.click("btnAllSelect");
    QCOMPARE(ticked(), QStringLiteral("xxxxx"));
    lister.click("btnInvert");
    QCOMPARE(ticked(), QStringLiteral("....."));
}

void tst_GUI_CanAdvancedOpearation::importAndExportDoNothing()
{
    const Lister lister;
    lister.addFrame(1, 1);
    const QStringList before = lister.texts(0);
    lister.click("btnImport");
    lister.click("btnExport");
    QVERIFY(lister.find<QPushButton>("btnImport")->isVisible());
    QVERIFY(lister.find<QPushButton>("btnExport")->isVisible());
    QCOMPARE(lister.table()->rowCount(), 1);
    QCOMPARE(lister.texts(0), before);
    QVERIFY(lister.isIdle());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    QCOMPARE(lister.notice(), QString());
    for (const char *name : {"btnImport", "btnExport"}) {
        QCOMPARE(lister.find<QPushButton>(name)->toolTip(), QStringLiteral("Not available in this version"));
    }
}

void tst_GUI_CanAdvancedOpearation::cellsMakeTheFrame()
{
    const Lister lister;
    lister.addRows(2);
    QVERIFY(lister.type(1, Column::Type, QStringLiteral("E")));
    QVERIFY(lister.type(1, Column::Id, QStringLiteral("1ABcdEF")));
    QVERIFY(lister.type(1, Column::Length, QStringLiteral("3")));
    QVERIFY(lister.type(1, Column::Data, QStringLiteral("01a2 ff")));
    QVERIFY(lister.type(1, Column::FrameCount, QStringLiteral("65535")));
    QVERIFY(lister.type(1, Column::SendCount, QStringLiteral("300")));
    QVERIFY(lister.type(1, Column::Interval, QStringLiteral("1000")));
    QCOMPARE(lister.texts(1), (QStringList{QStringLiteral("2"), QStringLiteral("1abcdef"), QStringLiteral("Extend"),
                                           QStringLiteral("3"), QStringLiteral("01 A2 FF"), QStringLiteral("65535"),
                                           QStringLiteral("300"), QStringLiteral("1000")}));
    const DataModel model = lister.model(1);
    QCOMPARE(quint32(model.frame.ID), 0x1ABCDEFU);
    QCOMPARE(int(model.frame.ExternFlag), 1);
    QCOMPARE(int(model.frame.RemoteFlag), 0);
    QCOMPARE(int(model.frame.DataLen), 3);
    QCOMPARE(payloadOf(model.frame), QByteArray("01a2ff0000000000"));
    QCOMPARE(int(model.frameCount), 65535);
    QCOMPARE(int(model.sendCount), 300);
    QCOMPARE(int(model.interval), 1000);
    QCOMPARE(lister.texts(0).at(1), QStringLiteral("0")); // the other row is as it was
}

void tst_GUI_CanAdvancedOpearation::standardCutsTheIdentifier()
{
    const Lister lister;
    lister.addRows(1);
    QVERIFY(lister.type(0, Column::Type, QStringLiteral("E")));
    QVERIFY(lister.type(0, Column::Id, QStringLiteral("123456")));
    QVERIFY(lister.type(0, Column::Type, QStringLiteral("S")));
    QCOMPARE(quint32(lister.model(0).frame.ID), 0x7FFU);
    QCOMPARE(int(lister.model(0).frame.ExternFlag), 0);
    QCOMPARE(lister.text(0, Column::Id), QStringLiteral("7FF"));
    QCOMPARE(lister.table()->item(0, Column::Id)->data(Qt::UserRole).toInt(), 0x7FF);
    // In range, it stays.
    QVERIFY(lister.type(0, Column::Id, QStringLiteral("7ab")));
    QVERIFY(lister.type(0, Column::Type, QStringLiteral("E")));
    QVERIFY(lister.type(0, Column::Type, QStringLiteral("S")));
    QCOMPARE(lister.text(0, Column::Id), QStringLiteral("7ab"));
}

void tst_GUI_CanAdvancedOpearation::lengthDecidesWhatIsSent_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("none") << 0 << QByteArray("0000000000000000");
    QTest::newRow("less than the data") << 2 << QByteArray("0102000000000000");
    QTest::newRow("the data") << 3 << QByteArray("0102030000000000");
    QTest::newRow("more than the data") << 5 << QByteArray("0102030000000000");
}

void tst_GUI_CanAdvancedOpearation::lengthDecidesWhatIsSent()
{
    QFETCH(int, length);
    Lister lister;
    lister.addRows(1);
    QVERIFY(lister.type(0, Column::Length, QString::number(length)));
    QVERIFY(lister.type(0, Column::Data, QStringLiteral("010203")));
    QCOMPARE(lister.text(0, Column::Length), QString::number(length));
    QCOMPARE(lister.text(0, Column::Data), QStringLiteral("01 02 03"));
    lister.click("btnAllSelect");
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(1) && lister.isIdle());
    QCOMPARE(int(lister.sent.front().DataLen), length);
    QTEST(payloadOf(lister.sent.front()), "payload");
}

void tst_GUI_CanAdvancedOpearation::dataComesBackWithTheLength()
{
    const Lister lister;
    lister.addRows(1);
    QVERIFY(lister.type(0, Column::Data, QStringLiteral("0102030405060708")));
    QVERIFY(lister.type(0, Column::Length, QStringLiteral("2")));
    QCOMPARE(payloadOf(lister.model(0).frame), QByteArray("0102000000000000"));
    QVERIFY(lister.type(0, Column::Length, QStringLiteral("8")));
    QCOMPARE(payloadOf(lister.model(0).frame), QByteArray("0102030405060708"));
}

/// F2 once, then Tab from editor to editor into the next row, and Shift+Tab back.
void tst_GUI_CanAdvancedOpearation::editsByKeyboardAlone()
{
    const Lister lister;
    QVERIFY(lister.isActive);
    lister.addRows(2);
    lister.setCurrent(0, Column::Id);
    QVERIFY(lister.editCurrent() != nullptr);
    const std::array<const char *, 7> keys{"7f", "E", "2", "abcd", "5", "6", "7"};
    for (const char *text : keys) {
        QWidget *editor = lister.editor();
        QVERIFY2(editor != nullptr, text);
        QTest::keyClicks(editor, QString::fromLatin1(text));
        QTest::keyClick(editor, Qt::Key_Tab);
    }
    QCOMPARE(lister.texts(0),
             (QStringList{QStringLiteral("1"), QStringLiteral("7f"), QStringLiteral("Extend"), QStringLiteral("2"),
                          QStringLiteral("AB CD"), QStringLiteral("5"), QStringLiteral("6"), QStringLiteral("7")}));
    QCOMPARE(lister.table()->currentRow(), 1);
    QCOMPARE(lister.table()->currentColumn(), int(Column::Id));
    QVERIFY(lister.editor() != nullptr);
    QTest::keyClick(lister.editor(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(lister.table()->currentRow(), 0);
    QCOMPARE(lister.table()->currentColumn(), int(Column::Interval));
    QVERIFY(lister.editor() != nullptr);
    QVERIFY(lister.dialog->isVisible());
}

void tst_GUI_CanAdvancedOpearation::tabGoesThroughTheEditableCells()
{
    const Lister lister;
    lister.addRows(2);
    lister.setCurrent(0, Column::Tick);
    QStringList cells;
    for (int i = 0; i < 8; ++i) {
        QTest::keyClick(lister.table(), Qt::Key_Tab);
        cells.append(QStringLiteral("%1%2").arg(lister.table()->currentRow()).arg(lister.table()->currentColumn()));
        QVERIFY(lister.editor() == nullptr);
    }
    QCOMPARE(cells.join(QLatin1Char(' ')), QStringLiteral("02 03 04 05 06 07 08 12"));
    lister.setCurrent(1, Column::Number);
    QTest::keyClick(lister.table(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(lister.table()->currentRow(), 0);
    QCOMPARE(lister.table()->currentColumn(), int(Column::Interval));
    QTest::keyClick(lister.table(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(lister.table()->currentColumn(), int(Column::SendCount));
}

void tst_GUI_CanAdvancedOpearation::tabLeavesTheTable()
{
    const Lister lister;
    lister.addRows(2);
    lister.setCurrent(1, Column::Interval);
    QTest::keyClick(lister.table(), Qt::Key_Tab);
    QVERIFY(lister.find<QWidget>("cbxMode")->hasFocus());
    QTest::keyClick(lister.find<QWidget>("cbxMode"), Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(lister.table()->hasFocus());
    lister.setCurrent(0, Column::Id);
    QTest::keyClick(lister.table(), Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(lister.find<QWidget>("btnExport")->hasFocus());
    lister.setCurrent(0, Column::Data);
    QTest::keyClick(lister.table(), Qt::Key_Tab, Qt::ControlModifier);
    QVERIFY(lister.find<QWidget>("cbxMode")->hasFocus());
    lister.setCurrent(1, Column::Data);
    QTest::keyClick(lister.table(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(lister.find<QWidget>("btnExport")->hasFocus());
}

void tst_GUI_CanAdvancedOpearation::escapeKeepsTheCell()
{
    const Lister lister;
    lister.addRows(1);
    for (const Column column : {Column::Id, Column::Data, Column::Interval}) {
        const QStringList before = lister.texts(0);
        lister.setCurrent(0, column);
        const QPointer<QWidget> editor = lister.editCurrent();
        QVERIFY(!editor.isNull());
        QTest::keyClicks(editor, QStringLiteral("12"));
        QTest::keyClick(editor, Qt::Key_Escape);
        QTRY_VERIFY(editor.isNull());
        QCOMPARE(lister.texts(0), before);
        QVERIFY(lister.dialog->isVisible());
        QVERIFY(lister.table()->hasFocus());
    }
    QTest::keyClick(lister.table(), Qt::Key_Escape); // nothing is edited: the dialog's own
    QVERIFY(!lister.dialog->isVisible());
}

void tst_GUI_CanAdvancedOpearation::losingTheFocusAccepts()
{
    Lister lister;
    lister.addFrame(1, 1);
    lister.setCurrent(0, Column::Id);
    QWidget *editor = lister.editCurrent();
    QVERIFY(editor != nullptr);
    QTest::keyClicks(editor, QStringLiteral("2A"));
    lister.find<QPushButton>("btnListSend")->setFocus(Qt::MouseFocusReason); // as the click does
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(1));
    QCOMPARE(quint32(lister.sent.at(0).ID), 0x2AU);
}

void tst_GUI_CanAdvancedOpearation::spaceTicksTheRow()
{
    const Lister lister;
    lister.addRows(2);
    for (const Column column : {Column::Tick, Column::Number, Column::Data, Column::Interval}) {
        lister.setCurrent(1, column);
        QTest::keyClick(lister.table(), Qt::Key_Space);
        QVERIFY(lister.isTicked(1));
        QTest::keyClick(lister.table(), Qt::Key_Space);
        QVERIFY(!lister.isTicked(1));
        QVERIFY(lister.editor() == nullptr);
    }
    QVERIFY(!lister.isTicked(0));
    // In an editor it is typed.
    lister.setCurrent(1, Column::Data);
    QWidget *editor = lister.editCurrent();
    QVERIFY(editor != nullptr);
    QTest::keyClicks(editor, QStringLiteral("1 2"));
    QCOMPARE(qobject_cast<QLineEdit *>(editor)->text(), QStringLiteral("1 2"));
    QVERIFY(!lister.isTicked(1));
}

void tst_GUI_CanAdvancedOpearation::enterPressesNoButton()
{
    const Lister lister;
    lister.addFrame(1, 1);
    int clicks = 0;
    for (QPushButton *button : lister.dialog->findChildren<QPushButton *>()) {
        QObject::connect(button, &QPushButton::clicked, button, [&clicks] { ++clicks; });
    }
    lister.setCurrent(0, Column::Id);
    QTest::keyClick(lister.table(), Qt::Key_Return);
    QVERIFY(lister.type(0, Column::Id, QStringLiteral("5")));
    QVERIFY(lister.type(0, Column::Type, QStringLiteral("E")));
    QVERIFY(lister.type(0, Column::Data, QStringLiteral("11")));
    lister.chooseOrder(1);
    for (const char *name : {"cbxMode", "cbxRepeat", "lbxInterval", "checkBox"}) {
        auto *widget = lister.find<QWidget>(name);
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Return);
        QTest::keyClick(widget, Qt::Key_Enter);
    }
    QCOMPARE(clicks, 0);
    QVERIFY(lister.dialog->isVisible());
}

void tst_GUI_CanAdvancedOpearation::enterPressesTheButtonWithTheFocus()
{
    const Lister lister;
    auto *add = lister.find<QPushButton>("btnAdd");
    add->setFocus();
    QTest::keyClick(add, Qt::Key_Return);
    QTest::keyClick(add, Qt::Key_Enter);
    QTest::keyClick(add, Qt::Key_Space);
    QCOMPARE(lister.table()->rowCount(), 3);
}

void tst_GUI_CanAdvancedOpearation::emptyList()
{
    Lister lister;
    lister.click("btnListSend");
    QCOMPARE(lister.notice(), QStringLiteral("The send list is empty (warning)"));
    letTicksPass(10);
    QVERIFY(lister.isIdle());
    QVERIFY(lister.states.isEmpty());
    QVERIFY(!lister.hasSent(1));
}

void tst_GUI_CanAdvancedOpearation::nothingTicked()
{
    Lister lister;
    lister.addRows(3);
    lister.click("btnListSend");
    QCOMPARE(lister.notice(), QStringLiteral("Please check the items you want to send (warning)"));
    letTicksPass(10);
    QVERIFY(lister.isIdle());
    QVERIFY(lister.states.isEmpty());
    QVERIFY(!lister.hasSent(1));
}

void tst_GUI_CanAdvancedOpearation::parallel()
{
    Lister lister;
    lister.addFrame(0xA, 2);
    lister.addFrame(0xB, 1);
    lister.find<QSpinBox>("cbxRepeat")->setValue(3); // of no consequence
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(3) && lister.isIdle());
    letTicksPass(10);
    lister.hasSent(0);
    QCOMPARE(idsOf(lister.sent), (QVector<quint32>{0xA, 0xB, 0xA}));
}

void tst_GUI_CanAdvancedOpearation::order()
{
    Lister lister;
    lister.addFrame(0xA, 2);
    lister.addFrame(0xB, 1);
    lister.chooseOrder(2);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(6) && lister.isIdle());
    letTicksPass(10);
    lister.hasSent(0);
    QCOMPARE(idsOf(lister.sent), (QVector<quint32>{0xA, 0xA, 0xB, 0xA, 0xA, 0xB}));
}

void tst_GUI_CanAdvancedOpearation::tickedRowsOnly()
{
    Lister lister;
    for (int id = 1; id <= 4; ++id) {
        lister.addFrame(id, 1);
    }
    lister.table()->item(0, Column::Tick)->setCheckState(Qt::Unchecked);
    lister.table()->item(2, Column::Tick)->setCheckState(Qt::Unchecked);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(2) && lister.isIdle());
    QCOMPARE(idsOf(lister.sent), (QVector<quint32>{2, 4}));
}

/// All copies in one call, on the device and channel of the dialog.
void tst_GUI_CanAdvancedOpearation::sendsToItsChannel()
{
    Lister lister;
    lister.addFrame(7, 1, 1, 3);
    lister.addFrame(8, 1);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(4) && lister.isIdle());
    QCOMPARE(lister.adapter.takeCalls(), (QStringList{QStringLiteral("VCI_Transmit 4 2 1 3 id7 id7 id7"),
                                                      QStringLiteral("VCI_Transmit 4 2 1 1 id8")}));
}

void tst_GUI_CanAdvancedOpearation::waits_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("listInterval");
    QTest::addColumn<int>("frames");
    QTest::newRow("the row's interval") << Long << 1 << 1;
    QTest::newRow("the list's interval") << 1 << Long << 2;
}

/// Two sends of one row, repeated: a long wait holds up what is behind it.
void tst_GUI_CanAdvancedOpearation::waits()
{
    QFETCH(int, interval);
    QFETCH(int, listInterval);
    QFETCH(int, frames);
    Lister lister;
    lister.addFrame(1, 2, interval);
    lister.chooseOrder(2, listInterval);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(frames));
    letTicksPass(30);
    lister.hasSent(0);
    QCOMPARE(static_cast<int>(lister.sent.size()), frames);
    QVERIFY(lister.isSending());
}

/// The interval is what lies at least between the end of a call and the next one.
void tst_GUI_CanAdvancedOpearation::waitsFromTheAdaptersReturn()
{
    constexpr int IntervalMs = 10;
    constexpr qint64 IntervalNs = IntervalMs * Q_INT64_C(1000000);
    Lister lister;
    QElapsedTimer sinceReturn;
    int tooSoon = 0;
    lister.adapter.onCall("VCI_Transmit", [&] {
        tooSoon += sinceReturn.isValid() && sinceReturn.nsecsElapsed() < IntervalNs ? 1 : 0;
        QElapsedTimer busy;
        busy.start();
        while (!busy.hasExpired(IntervalMs / 2)) {
        }
        sinceReturn.start();
    });
    lister.addFrame(1, 4, IntervalMs);
    lister.addFrame(2, 2, IntervalMs);
    lister.find<QCheckBox>("checkBox")->setChecked(true);
    QEventLoop loop; // runs on without the pauses of the test's own waiting
    QObject::connect(lister.dialog.get(), &GUI_CanAdvancedOpearation::sig_sendStateChanged, &loop,
                     [&loop](bool isIdle) {
                         if (isIdle) {
                             loop.quit();
                         }
                     });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    lister.click("btnListSend");
    loop.exec();
    QVERIFY(lister.hasSent(6));
    QCOMPARE(tooSoon, 0);
}

void tst_GUI_CanAdvancedOpearation::framesAsInTheRow()
{
    Lister lister;
    lister.addFrame(0x123, 1, 1, 2);
    QVERIFY(lister.type(0, Column::Length, QStringLiteral("3")));
    QVERIFY(lister.type(0, Column::Data, QStringLiteral("112233")));
    lister.addFrame(1, 1);
    QVERIFY(lister.type(1, Column::Type, QStringLiteral("E")));
    QVERIFY(lister.type(1, Column::Id, QStringLiteral("1fffffff")));
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(3) && lister.isIdle());
    for (std::size_t i = 0; i < 2; ++i) {
        const VCI_CAN_OBJ &frame = lister.sent.at(i);
        QCOMPARE(quint32(frame.ID), 0x123U);
        QCOMPARE(int(frame.ExternFlag), 0);
        QCOMPARE(int(frame.DataLen), 3);
        QCOMPARE(payloadOf(frame), QByteArray("1122330000000000"));
    }
    const VCI_CAN_OBJ &last = lister.sent.at(2);
    QCOMPARE(quint32(last.ID), 0x1FFFFFFFU);
    QCOMPARE(int(last.ExternFlag), 1);
    QCOMPARE(int(last.DataLen), 0);
    QCOMPARE(payloadOf(last), QByteArray(16, '0'));
    for (const VCI_CAN_OBJ &frame : lister.sent) {
        QCOMPARE(int(frame.RemoteFlag) + int(frame.SendType) + int(frame.TimeFlag), 0);
    }
}

void tst_GUI_CanAdvancedOpearation::fdChannel()
{
    Lister lister(true);
    QVERIFY(lister.isOpen);
    lister.addFrame(0x123, 1, 1, 2);
    QVERIFY(lister.type(0, Column::Length, QStringLiteral("3")));
    QVERIFY(lister.type(0, Column::Data, QStringLiteral("112233")));
    lister.addFrame(5, 2);
    lister.find<QCheckBox>("checkBox")->setChecked(true);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.isIdle());
    const auto frames = lister.adapter.takeFdFrames();
    QCOMPARE(idsOf(frames), (QVector<quint32>{0x123, 0x123, 5, 5}));
    QVERIFY(lister.adapter.takeFrames().empty());
    for (const VCI_CANFD_OBJ &frame : frames) {
        QCOMPARE(int(frame.FDFlag), 0);
        QCOMPARE(int(frame.DataLen), frame.ID == 5 ? 0 : 3);
        QCOMPARE(payloadOf(frame).left(8), frame.ID == 5 ? QByteArray("00000000") : QByteArray("11223300"));
        QCOMPARE(payloadOf(frame).mid(8), QByteArray(120, '0'));
    }
    QCOMPARE(lister.adapter.takeCalls().first(), QStringLiteral("KQ_TransmitCANFD 4 2 1 2 id291 id291"));
    QCOMPARE(lister.batches.count(), 3);
    QCOMPARE(int(lister.batches.first().first().protocol), int(FrameRecord::CAN));
    QCOMPARE(int(lister.batches.first().first().direction), 0); // the recording adapter answers 1 for 2 frames
    QCOMPARE(int(lister.batches.last().first().direction), 1);
}

void tst_GUI_CanAdvancedOpearation::mostCopies()
{
    Lister lister;
    lister.addFrame(7, 2, 1, 65535);
    lister.find<QCheckBox>("checkBox")->setChecked(true);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(2 * 65535) && lister.isIdle());
    QCOMPARE(static_cast<int>(lister.sent.size()), 2 * 65535);
    QCOMPARE(lister.batches.count(), 2);
    QCOMPARE(lister.batches.last().count(), 65535);
}

void tst_GUI_CanAdvancedOpearation::printsToTheTable()
{
    Lister lister;
    lister.adapter.answer("VCI_Transmit", 5);
    lister.addFrame(0x123, 2, 1, 5);
    QVERIFY(lister.type(0, Column::Type, QStringLiteral("E")));
    QVERIFY(lister.type(0, Column::Length, QStringLiteral("3")));
    QVERIFY(lister.type(0, Column::Data, QStringLiteral("112233")));
    lister.find<QCheckBox>("checkBox")->setChecked(true);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.isIdle());
    QCOMPARE(lister.batches.count(), 2);
    for (const auto &batch : qAsConst(lister.batches)) {
        QCOMPARE(batch.count(), 5);
        for (const CTableViewCAN::DataObject &object : batch) {
            QCOMPARE(int(object.direction), 1);
            QCOMPARE(quint32(object.id), 0x123U);
            QCOMPARE(quint32(object.extended), 1U);
            QCOMPARE(quint32(object.remote), 0U);
            QCOMPARE(quint32(object.timeFlag), 0U);
            QCOMPARE(object.timeStamp, 0U);
            QCOMPARE(int(object.protocol), 0);
            QCOMPARE(object.data, QByteArray::fromHex("112233"));
            QVERIFY(QTime::fromString(object.systemTime, QStringLiteral("hh:mm:ss.zzz")).isValid());
        }
    }
}

/// Rows that the adapter refuses do not stop the list.
void tst_GUI_CanAdvancedOpearation::printsFailures()
{
    Lister lister;
    lister.adapter.answer("VCI_Transmit", 0);
    lister.addFrame(1, 3);
    lister.find<QCheckBox>("checkBox")->setChecked(true);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(3) && lister.isIdle());
    QCOMPARE(lister.batches.count(), 3);
    for (const auto &batch : qAsConst(lister.batches)) {
        QCOMPARE(int(batch.first().direction), 0);
    }
    QCOMPARE(lister.notice(), QString());
}

void tst_GUI_CanAdvancedOpearation::printsOnlyWhenTicked()
{
    Lister lister;
    lister.addFrame(1, 60000);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(3));
    QVERIFY(lister.batches.isEmpty());
    QTest::mouseClick(lister.find<QCheckBox>("checkBox"), Qt::LeftButton, {}, QPoint(8, 8)); // while it runs
    QTRY_VERIFY(lister.batches.count() >= 2);
    lister.click("m_btnStop");
}

void tst_GUI_CanAdvancedOpearation::aVanishedDeviceDoesNotStopIt()
{
    Lister lister;
    lister.manager.closeChannel(Device, Channel); // closes the device, too
    lister.isOpen = false;
    lister.adapter.answer("VCI_Transmit", 0);
    lister.addFrame(1, 3);
    lister.find<QCheckBox>("checkBox")->setChecked(true);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.isIdle());
    QCOMPARE(lister.batches.count(), 3);
    QCOMPARE(int(lister.batches.last().first().direction), 0);
    QCOMPARE(lister.stateChanges(), (QVector<bool>{false, true}));
}

void tst_GUI_CanAdvancedOpearation::tellsItsState()
{
    Lister lister;
    lister.addFrame(1, 2);
    lister.click("btnListSend");
    QCOMPARE(lister.stateChanges(), QVector<bool>{false});
    QTRY_VERIFY(lister.isIdle());
    QCOMPARE(lister.stateChanges(), (QVector<bool>{false, true}));
    QVERIFY(lister.hasSent(2)); // the end came behind the last frame
    lister.click("btnListSend");
    lister.click("m_btnStop");
    QCOMPARE(lister.stateChanges(), (QVector<bool>{false, true, false, true}));
}

void tst_GUI_CanAdvancedOpearation::controlsWhileSending()
{
    Lister lister;
    lister.addFrame(1, 60000);
    auto *send = lister.find<QPushButton>("btnListSend");
    send->setFocus();
    QTest::keyClick(send, Qt::Key_Space);
    QVERIFY(lister.isSending());
    auto *stop = lister.find<QPushButton>("m_btnStop");
    QVERIFY(stop->hasFocus());
    QTest::keyClick(stop, Qt::Key_Space);
    QVERIFY(lister.isIdle());
    QVERIFY(send->hasFocus());
}

void tst_GUI_CanAdvancedOpearation::switchedByTheTab()
{
    const Lister lister;
    lister.chooseOrder(1);
    lister.addFrame(1, 1);
    lister.dialog->btnStateChanged(false);
    for (const char *name : Controls) {
        QVERIFY2(!lister.find<QWidget>(name)->isEnabled(), name);
    }
    lister.dialog->btnStateChanged(true);
    for (const char *name : Controls) {
        const bool isStop = qstrcmp(name, "m_btnStop") == 0; // disabled until a list runs
        QVERIFY2(lister.find<QWidget>(name)->isEnabled() != isStop, name);
    }
}

void tst_GUI_CanAdvancedOpearation::switchedByTheTabWhileSending()
{
    Lister lister;
    lister.addFrame(1, 60000);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(1));
    for (const bool state : {false, true}) {
        lister.dialog->btnStateChanged(state);
        QVERIFY(lister.isSending());
        QCOMPARE(lister.find<QWidget>("btnAdd")->isEnabled(), state);
    }
    lister.dialog->btnStateChanged(false);
    lister.click("m_btnStop");
    for (const char *name : Controls) {
        QVERIFY2(!lister.find<QWidget>(name)->isEnabled(), name);
    }
    lister.dialog->btnStateChanged(true);
    QVERIFY(lister.isIdle());
}

void tst_GUI_CanAdvancedOpearation::modeSwitchesRepetition()
{
    const Lister lister;
    const auto isEnabled = [&lister] {
        const bool both = lister.find<QWidget>("cbxRepeat")->isEnabled();
        return both == lister.find<QWidget>("lbxInterval")->isEnabled() ? int(both) : -1;
    };
    auto *mode = lister.find<QComboBox>("cbxMode");
    QCOMPARE(isEnabled(), 0);
    mode->setCurrentIndex(1);
    QCOMPARE(isEnabled(), 1);
    lister.dialog->btnStateChanged(false);
    QCOMPARE(isEnabled(), 0);
    lister.dialog->btnStateChanged(true);
    QCOMPARE(isEnabled(), 1);
    mode->setCurrentIndex(0);
    QCOMPARE(isEnabled(), 0);
    lister.dialog->btnStateChanged(true);
    QCOMPARE(isEnabled(), 0);
}

/// What is changed while a list runs is for the next one.
void tst_GUI_CanAdvancedOpearation::worksOnCopies()
{
    Lister lister;
    lister.addFrame(0xA, 3);
    lister.addFrame(0xB, 1);
    lister.chooseOrder(2);
    lister.click("btnListSend");
    lister.set(0, Column::Id, 0xC, 16);
    lister.set(0, Column::SendCount, 1);
    lister.setCurrent(1, Column::Id);
    lister.click("btnRemove");
    lister.find<QComboBox>("cbxMode")->setCurrentIndex(0);
    lister.find<QSpinBox>("cbxRepeat")->setValue(9);
    lister.find<QSpinBox>("lbxInterval")->setValue(Long);
    QTRY_VERIFY(lister.isIdle());
    lister.hasSent(0);
    QCOMPARE(idsOf(lister.sent), (QVector<quint32>{0xA, 0xA, 0xA, 0xB, 0xA, 0xA, 0xA, 0xB}));
    lister.sent.clear();
    lister.click("btnListSend");
    QTRY_VERIFY(lister.isIdle());
    lister.hasSent(0);
    QCOMPARE(idsOf(lister.sent), QVector<quint32>{0xC});
}

void tst_GUI_CanAdvancedOpearation::takesTheRowsAnew()
{
    Lister lister;
    lister.addFrame(0xA, 2);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(2) && lister.isIdle());
    lister.set(0, Column::Id, 0xB, 16);
    lister.set(0, Column::FrameCount, 2);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(6) && lister.isIdle());
    QCOMPARE(idsOf(lister.sent), (QVector<quint32>{0xA, 0xA, 0xB, 0xB, 0xB, 0xB}));
}

void tst_GUI_CanAdvancedOpearation::tableIsNotChangedBySending()
{
    Lister lister;
    lister.addFrame(0xA, 2);
    lister.addFrame(0xB, 1);
    const QStringList before = lister.texts(0) + lister.texts(1);
    for (int round = 1; round <= 2; ++round) {
        lister.click("btnListSend");
        QTRY_VERIFY(lister.hasSent(3 * round) && lister.isIdle());
        QCOMPARE(lister.texts(0) + lister.texts(1), before);
        QCOMPARE(int(lister.model(0).sendCount), 2);
        QVERIFY(lister.isTicked(0) && lister.isTicked(1));
    }
    QCOMPARE(idsOf(lister.sent), (QVector<quint32>{0xA, 0xB, 0xA, 0xA, 0xB, 0xA}));
    lister.click("btnListSend"); // stopped midway, too
    QTRY_VERIFY(lister.hasSent(7));
    lister.click("m_btnStop");
    QCOMPARE(lister.texts(0) + lister.texts(1), before);
}

void tst_GUI_CanAdvancedOpearation::stops()
{
    Lister lister;
    lister.addFrame(0xA, 60000);
    lister.addFrame(0xB, 60000);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(3));
    lister.click("m_btnStop");
    QVERIFY(lister.isIdle());
    lister.adapter.takeFrames();
    letTicksPass(20);
    QVERIFY(lister.adapter.takeFrames().empty());
    QCOMPARE(lister.stateChanges(), (QVector<bool>{false, true}));
    lister.sent.clear();
    lister.click("btnListSend"); // starts with the first row again
    QTRY_VERIFY(lister.hasSent(1));
    QCOMPARE(quint32(lister.sent.at(0).ID), 0xAU);
    lister.click("m_btnStop");
    // Before the first frame.
    lister.click("btnListSend");
    lister.click("m_btnStop");
    lister.adapter.takeFrames();
    letTicksPass(20);
    QVERIFY(lister.adapter.takeFrames().empty());
}

void tst_GUI_CanAdvancedOpearation::stoppedByAListener()
{
    Lister lister;
    lister.addFrame(1, 60000);
    lister.find<QCheckBox>("checkBox")->setChecked(true);
    QObject::connect(lister.dialog.get(), &GUI_CanAdvancedOpearation::sig_addTableItems, lister.dialog.get(),
                     &GUI_CanAdvancedOpearation::sendStop);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.isIdle());
    letTicksPass(20);
    lister.hasSent(0);
    QCOMPARE(static_cast<int>(lister.sent.size()), 1);
    QCOMPARE(lister.stateChanges(), (QVector<bool>{false, true}));
}

void tst_GUI_CanAdvancedOpearation::stoppedAtTheStart()
{
    Lister lister;
    lister.addFrame(1, 60000);
    QObject::connect(lister.dialog.get(), &GUI_CanAdvancedOpearation::sig_sendStateChanged, lister.dialog.get(),
                     &GUI_CanAdvancedOpearation::sendStop);
    lister.click("btnListSend");
    QVERIFY(lister.isIdle());
    // The spy was there first, so it hears of the start before the listener ends it.
    QCOMPARE(lister.stateChanges(), (QVector<bool>{false, true}));
    letTicksPass(20);
    QVERIFY(!lister.hasSent(1));
}

void tst_GUI_CanAdvancedOpearation::slotsWhileIdle()
{
    Lister lister;
    lister.addFrame(1, 60000);
    lister.dialog->sendStop();
    lister.dialog->sendTimeout();
    QVERIFY(lister.states.isEmpty());
    QVERIFY(!lister.hasSent(1));
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(1));
    lister.dialog->sendList(); // one runs already
    QCOMPARE(lister.stateChanges(), QVector<bool>{false});
    lister.click("m_btnStop");
}

void tst_GUI_CanAdvancedOpearation::closingStops_data()
{
    QTest::addColumn<Closing>("closing");
    QTest::newRow("Esc") << Closing(
        [](GUI_CanAdvancedOpearation &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QTest::newRow("close") << Closing([](GUI_CanAdvancedOpearation &dialog) { dialog.close(); });
    QTest::newRow("reject") << Closing([](GUI_CanAdvancedOpearation &dialog) { dialog.reject(); });
    QTest::newRow("hide") << Closing([](GUI_CanAdvancedOpearation &dialog) { dialog.hide(); });
}

void tst_GUI_CanAdvancedOpearation::closingStops()
{
    QFETCH(Closing, closing);
    Lister lister;
    lister.addFrame(1, 60000);
    lister.chooseOrder(7);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(2));
    closing(*lister.dialog);
    QVERIFY(!lister.dialog->isVisible());
    QCOMPARE(lister.stateChanges(), (QVector<bool>{false, true}));
    lister.adapter.takeFrames();
    letTicksPass(20);
    QVERIFY(lister.adapter.takeFrames().empty());
    lister.dialog->show();
    QVERIFY(lister.isIdle());
    QCOMPARE(lister.table()->rowCount(), 1);
    QCOMPARE(lister.find<QSpinBox>("cbxRepeat")->value(), 7);
    lister.dialog->close(); // while idle there is nothing to tell
    QCOMPARE(lister.states.count(), 2);
}

/// The window system tells of it by an event of its own.
void tst_GUI_CanAdvancedOpearation::minimisingDoesNotStop()
{
    Lister lister;
    lister.addFrame(1, 60000);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(1));
    QHideEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(lister.dialog.get(), &event); // sendEvent() would make it one of the program's own
    QVERIFY(lister.isSending());
    const int before = static_cast<int>(lister.sent.size());
    QTRY_VERIFY(lister.hasSent(before + 5));
}

/// By itself, with a tab that lives on: its controls come back.
void tst_GUI_CanAdvancedOpearation::deletedWhileSending()
{
    QWidget tab;
    tab.show();
    Lister lister(false, &tab);
    lister.addFrame(1, 60000);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(2));
    QVector<bool> states;
    QObject::connect(lister.dialog.get(), &GUI_CanAdvancedOpearation::sig_sendStateChanged, &tab,
                     [&states](bool state) { states.append(state); });
    lister.dialog.reset();
    QCOMPARE(states, QVector<bool>{true});
    lister.adapter.takeFrames();
    letTicksPass(20);
    QVERIFY(lister.adapter.takeFrames().empty());
}

/// A tab's own state is gone when its children are deleted.
void tst_GUI_CanAdvancedOpearation::deletedWithItsTab()
{
    auto tab = std::make_unique<Tab>();
    tab->show();
    Lister lister(false, tab.get());
    QObject::connect(lister.dialog.get(), &GUI_CanAdvancedOpearation::sig_sendStateChanged, tab.get(), &Tab::setState);
    lister.addFrame(1, 60000);
    lister.click("btnListSend");
    QTRY_VERIFY(lister.hasSent(2));
    int changes = 0;
    QObject::connect(lister.dialog.get(), &GUI_CanAdvancedOpearation::sig_sendStateChanged, [&changes] { ++changes; });
    const QPointer<GUI_CanAdvancedOpearation> dialog = lister.dialog.release();
    tab.reset();
    QVERIFY(dialog.isNull());
    QCOMPARE(changes, 0);
    lister.adapter.takeFrames();
    letTicksPass(20);
    QVERIFY(lister.adapter.takeFrames().empty());
}

X9_GUI_TEST(tst_GUI_CanAdvancedOpearation)
#include "tst_GUI_CanAdvancedOpearation.moc"
