#include "capture/GUI_CanAdvancedOpearation.h"

#include "capture/SendList.h"
#include "device/CANCommunication.h"
#include "device/TickTimer.h"
#include "ui_GUI_CanAdvancedOpearation.h"
#include "widgets/CNotice.h"
#include "widgets/NumberEntry.h"

#include <QHideEvent>
#include <QKeyEvent>
#include <QTime>
#include <QWindow>

#include <optional>
#include <vector>

namespace {
constexpr int NoticeMs = 1000;
constexpr int FirstTickMs = 1;

/// The copies of a row for one transmit call.
struct Batch
{
    std::optional<std::size_t> row; ///< of the list that runs
    std::vector<VCI_CAN_OBJ> frames;
    std::vector<VCI_CANFD_OBJ> fdFrames; ///< instead, on a CAN FD channel
};
} // namespace

class GUI_CanAdvancedOpearationPrivate
{
public:
    GUI_CanAdvancedOpearationPrivate(GUI_CanAdvancedOpearation *dialog, CANCommunication &manager, quint8 dev,
                                     quint8 ch, bool isFdDevice)
        : q(dialog)
        , communication(manager)
        , devInd(dev)
        , canInd(ch)
        , isCANFD(isFdDevice)
    {
    }

    void fillTexts();
    void connectSignals();
    void updateControls();
    void showWarning(const QString &text) const { notice->setMesseage(text, CNotice::Warning, NoticeMs); }
    void end();
    bool transmitCurrent();
    void print(const DataModel &row, bool accepted) const;
    bool isParentGoing() const;

    GUI_CanAdvancedOpearation *q;
    CANCommunication &communication;
    const quint8 devInd;
    const quint8 canInd;
    const bool isCANFD;
    Ui::GUI_CanAdvancedOpearation ui;
    CNotice *notice = nullptr; ///< seen where the click was, not behind this window
    SendList list;
    TickTimer timer;
    Batch batch;
    bool isAllowed = true; ///< the tab lets the dialog send
};

void GUI_CanAdvancedOpearationPrivate::fillTexts()
{
    const QString interval = GUI_CanAdvancedOpearation::tr("Interval");
    ui.tableWidget->horizontalHeaderItem(ui.tableWidget->columnCount() - 1)->setText(interval + QStringLiteral("(ms)"));
    ui.lblInterval->setText(interval + QStringLiteral("(ms):"));
    ui.lblRepeat->setText(GUI_CanAdvancedOpearation::tr("Repeat") + QLatin1Char(':'));
    ui.cbxMode->addItem(GUI_CanAdvancedOpearation::tr("Parallel send mode"),
                        static_cast<int>(SendList::Mode::Parallel));
    ui.cbxMode->addItem(GUI_CanAdvancedOpearation::tr("Order send mode"), static_cast<int>(SendList::Mode::Order));
}

void GUI_CanAdvancedOpearationPrivate::connectSignals()
{
    using Dialog = GUI_CanAdvancedOpearation;
    const auto onClick = [this](const QPushButton *button, auto action) {
        QObject::connect(button, &QPushButton::clicked, q, action);
    };
    onClick(ui.btnAllSelect, [this] { ui.tableWidget->setAllTicked(true); });
    onClick(ui.btnInvert, [this] { ui.tableWidget->setAllTicked(false); }); // takes all ticks away: wanted so
    onClick(ui.btnAdd, [this] { ui.tableWidget->appendRow(); });
    onClick(ui.btnRemove, &Dialog::slot_removeBtnClicked);
    onClick(ui.btnListSend, &Dialog::sendList);
    onClick(ui.m_btnStop, &Dialog::sendStop);
    QObject::connect(ui.cbxMode, QOverload<int>::of(&QComboBox::currentIndexChanged), q, [this] { updateControls(); });
    QObject::connect(&timer, &TickTimer::sig_tick, q, &Dialog::sendTimeout);
}

void GUI_CanAdvancedOpearationPrivate::updateControls()
{
    const bool isRunning = list.isRunning();
    const bool isOrder = ui.cbxMode->currentData().toInt() == static_cast<int>(SendList::Mode::Order);
    for (QWidget *control : std::initializer_list<QWidget *>{ui.btnAllSelect, ui.btnInvert, ui.btnAdd, ui.btnRemove,
                                                             ui.btnImport, ui.btnExport, ui.checkBox, ui.cbxMode}) {
        control->setEnabled(isAllowed);
    }
    for (QWidget *control :
         std::initializer_list<QWidget *>{ui.lblRepeat, ui.cbxRepeat, ui.lblInterval, ui.lbxInterval}) {
        control->setEnabled(isAllowed && isOrder);
    }
    // The focus stays with the button that is of use next.
    const bool hadFocus = ui.btnListSend->hasFocus() || ui.m_btnStop->hasFocus();
    ui.m_btnStop->setEnabled(isRunning);
    ui.btnListSend->setEnabled(isAllowed && !isRunning);
    if (hadFocus) {
        (isRunning ? ui.m_btnStop : ui.btnListSend)->setFocus();
    }
}

/// Every end of a list that runs.
void GUI_CanAdvancedOpearationPrivate::end()
{
    timer.stop();
    list.stop();
    batch = Batch();
    updateControls();
    emit q->sig_sendStateChanged(true);
}

/// All copies of the current row in one call; they are made anew only when the row has changed.
bool GUI_CanAdvancedOpearationPrivate::transmitCurrent()
{
    const DataModel &row = list.current();
    const bool isNew = batch.row != list.currentIndex();
    batch.row = list.currentIndex();
    if (isCANFD) {
        if (isNew) {
            batch.fdFrames.assign(row.frameCount, toCanFdRecord(row.frame));
        }
        return communication.transmitCANFD(devInd, canInd, batch.fdFrames.data(), row.frameCount) == CAN_OK;
    }
    if (isNew) {
        batch.frames.assign(row.frameCount, row.frame);
    }
    return communication.transmit(devInd, canInd, batch.frames.data(), row.frameCount) == CAN_OK;
}

void GUI_CanAdvancedOpearationPrivate::print(const DataModel &row, bool accepted) const
{
    const QString now = QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"));
    const FrameRecord record = FrameRecord::sent(row.frame, accepted, now);
    emit q->sig_addTableItems(QVector<FrameRecord>(row.frameCount, record));
}

/// A parent that is being destroyed no longer lists the child it is deleting; what listens to this object may be gone.
bool GUI_CanAdvancedOpearationPrivate::isParentGoing() const
{
    return q->parent() != nullptr && !q->parent()->children().contains(q);
}

GUI_CanAdvancedOpearation::GUI_CanAdvancedOpearation(CANCommunication &communication, quint8 devInd, quint8 canInd,
                                                     bool isCANFD, QWidget *parent)
    : QDialog(parent)
    , m_p(std::make_unique<GUI_CanAdvancedOpearationPrivate>(this, communication, devInd, canInd, isCANFD))
{
    qRegisterMetaType<DataModel>("DataModel");
    m_p->ui.setupUi(this);
    cleanSpinBoxes(this);
    m_p->notice = new CNotice(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    m_p->fillTexts();
    m_p->connectSignals();
    m_p->updateControls();
}

GUI_CanAdvancedOpearation::~GUI_CanAdvancedOpearation()
{
    if (!m_p->isParentGoing()) {
        sendStop();
    }
}

void GUI_CanAdvancedOpearation::btnStateChanged(bool state)
{
    m_p->isAllowed = state;
    m_p->updateControls();
}

void GUI_CanAdvancedOpearation::sendList()
{
    if (m_p->list.isRunning()) {
        return;
    }
    if (m_p->ui.tableWidget->rowCount() == 0) {
        m_p->showWarning(tr("The send list is empty"));
        return;
    }
    const auto mode = static_cast<SendList::Mode>(m_p->ui.cbxMode->currentData().toInt());
    m_p->list.start(m_p->ui.tableWidget->tickedRows(), m_p->ui.cbxRepeat->value(), m_p->ui.lbxInterval->value(), mode);
    if (!m_p->list.isRunning()) {
        m_p->showWarning(tr("Please check the items you want to send"));
        return;
    }
    emit sig_sendStateChanged(false);
    if (m_p->list.isRunning()) { // unless whoever listens has stopped it
        m_p->updateControls();
        m_p->timer.start(FirstTickMs);
    }
}

void GUI_CanAdvancedOpearation::sendStop()
{
    if (m_p->list.isRunning()) {
        m_p->end();
    }
}

/// What the adapter answers only marks the printed rows: the list goes on when it refuses frames or is gone.
void GUI_CanAdvancedOpearation::sendTimeout()
{
    if (!m_p->list.isRunning()) {
        return;
    }
    const bool accepted = m_p->transmitCurrent();
    const DataModel row = m_p->list.current();
    const std::optional<int> wait = m_p->list.advance();
    if (wait) {
        m_p->timer.start(*wait); // from the adapter's return on, whatever the printing takes
    }
    if (m_p->ui.checkBox->isChecked()) {
        m_p->print(row, accepted);
    }
    if (!wait && !m_p->list.isRunning()) { // whoever listens may have started it anew
        m_p->end();
    }
}

/// A message box that is not above everything must not come up under this window.
bool GUI_CanAdvancedOpearation::event(QEvent *event)
{
    const bool isBlocked = event->type() == QEvent::WindowBlocked;
    if ((isBlocked || event->type() == QEvent::WindowUnblocked) && windowHandle() != nullptr) {
        windowHandle()->setFlag(Qt::WindowStaysOnTopHint, !isBlocked);
    }
    return QDialog::event(event);
}

/// Every way of closing ends here. The window system hiding the window, as when it is minimised, does not.
void GUI_CanAdvancedOpearation::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        sendStop();
    }
    QDialog::hideEvent(event);
}

/// No button is preset, so that Enter in a cell or field presses none; on a button it presses that one.
void GUI_CanAdvancedOpearation::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter) {
        if (auto *button = qobject_cast<QPushButton *>(focusWidget())) {
            button->click();
        }
        return;
    }
    QDialog::keyPressEvent(event);
}

void GUI_CanAdvancedOpearation::slot_removeBtnClicked()
{
    if (!m_p->ui.tableWidget->removeCurrentRow()) {
        m_p->showWarning(tr("Please select the delete item first"));
    }
}
