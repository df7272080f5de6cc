#include "capture/GUI_CanAdvancedOpearation.h"

#include "device/CANCommunication.h"
#include "device/ClockText.h"
#include "ui_GUI_CanAdvancedOpearation.h"
#include "widgets/CNotice.h"
#include "widgets/NumberEntry.h"

#include <QHideEvent>
#include <QKeyEvent>
#include <QWindow>

namespace {
constexpr int FirstTickMs = 1;
} // namespace

GUI_CanAdvancedOpearation::GUI_CanAdvancedOpearation(const ChannelParam &channel, CANCommunication &communication,
                                                     QWidget *parent)
    : QDialog(parent)
    , m_channel(channel)
    , m_communication(communication)
    , m_ui(std::make_unique<Ui::GUI_CanAdvancedOpearation>())
{
    qRegisterMetaType<DataModel>("DataModel");
    m_ui->setupUi(this);
    cleanSpinBoxes(this);
    m_notice = new CNotice(this);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    fillTexts();
    connectSignals();
    updateControls();
}

/// A parent that is being destroyed no longer lists the child it is deleting; what listens to this object may be gone.
GUI_CanAdvancedOpearation::~GUI_CanAdvancedOpearation()
{
    if (parent() == nullptr || parent()->children().contains(this)) {
        sendStop();
    }
}

void GUI_CanAdvancedOpearation::fillTexts()
{
    const QString interval = tr("Interval");
    m_ui->tableWidget->horizontalHeaderItem(m_ui->tableWidget->columnCount() - 1)
        ->setText(interval + QStringLiteral("(ms)"));
    m_ui->lblInterval->setText(interval + QStringLiteral("(ms):"));
    m_ui->lblRepeat->setText(tr("Repeat") + QLatin1Char(':'));
    m_ui->cbxMode->addItem(tr("Parallel send mode"), static_cast<int>(SendList::Mode::Parallel));
    m_ui->cbxMode->addItem(tr("Order send mode"), static_cast<int>(SendList::Mode::Order));
}

void GUI_CanAdvancedOpearation::connectSignals()
{
    using Dialog = GUI_CanAdvancedOpearation;
    const auto onClick = [this](const QPushButton *button, auto action) {
        connect(button, &QPushButton::clicked, this, action);
    };
    onClick(m_ui->btnAllSelect, [this] { m_ui->tableWidget->setAllTicked(true); });
    onClick(m_ui->btnInvert, [this] { m_ui->tableWidget->setAllTicked(false); }); // takes all ticks away: wanted so
    onClick(m_ui->btnAdd, [this] { m_ui->tableWidget->appendRow(); });
    onClick(m_ui->btnRemove, &Dialog::slot_removeBtnClicked);
    onClick(m_ui->btnListSend, &Dialog::sendList);
    onClick(m_ui->m_btnStop, &Dialog::sendStop);
    connect(m_ui->cbxMode, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { updateControls(); });
    connect(&m_timer, &TickTimer::sig_tick, this, &Dialog::sendTimeout);
}

void GUI_CanAdvancedOpearation::updateControls()
{
    const bool isRunning = m_list.isRunning();
    const bool isOrder = m_ui->cbxMode->currentData().toInt() == static_cast<int>(SendList::Mode::Order);
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_ui->btnAllSelect, m_ui->btnInvert, m_ui->btnAdd, m_ui->btnRemove,
                                          m_ui->btnImport, m_ui->btnExport, m_ui->checkBox, m_ui->cbxMode}) {
        control->setEnabled(m_isAllowed);
    }
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_ui->lblRepeat, m_ui->cbxRepeat, m_ui->lblInterval, m_ui->lbxInterval}) {
        control->setEnabled(m_isAllowed && isOrder);
    }
    // The focus stays with the button that is of use next.
    const bool hadFocus = m_ui->btnListSend->hasFocus() || m_ui->m_btnStop->hasFocus();
    m_ui->m_btnStop->setEnabled(isRunning);
    m_ui->btnListSend->setEnabled(m_isAllowed && !isRunning);
    if (hadFocus) {
        (isRunning ? m_ui->m_btnStop : m_ui->btnListSend)->setFocus();
    }
}

void GUI_CanAdvancedOpearation::showWarning(const QString &text)
{
    m_notice->setMesseage(text, CNotice::Warning, CNotice::DialogMs);
}

/// Every end of a list that runs.
void GUI_CanAdvancedOpearation::end()
{
    m_timer.stop();
    m_list.stop();
    m_batch = Batch();
    updateControls();
    emit sig_sendStateChanged(true);
}

/// All copies of the current row in one call; they are made anew only when the row has changed.
bool GUI_CanAdvancedOpearation::transmitCurrent()
{
    const DataModel &row = m_list.current();
    const bool isNew = m_batch.row != m_list.currentIndex();
    m_batch.row = m_list.currentIndex();
    if (m_channel.isCANFD) {
        if (isNew) {
            m_batch.fdFrames.assign(row.frameCount, toCanFdRecord(row.frame));
        }
        return m_communication.transmitCANFD(m_channel.device, m_channel.channel, m_batch.fdFrames.data(),
                                             row.frameCount) == CAN_OK;
    }
    if (isNew) {
        m_batch.frames.assign(row.frameCount, row.frame);
    }
    return m_communication.transmit(m_channel.device, m_channel.channel, m_batch.frames.data(), row.frameCount) ==
           CAN_OK;
}

void GUI_CanAdvancedOpearation::print(const DataModel &row, bool accepted)
{
    const FrameRecord record = FrameRecord::sent(row.frame, accepted, clockText());
    emit sig_addTableItems(QVector<FrameRecord>(row.frameCount, record));
}

void GUI_CanAdvancedOpearation::btnStateChanged(bool state)
{
    m_isAllowed = state;
    updateControls();
}

void GUI_CanAdvancedOpearation::sendList()
{
    if (m_list.isRunning()) {
        return;
    }
    if (m_ui->tableWidget->rowCount() == 0) {
        showWarning(tr("The send list is empty"));
        return;
    }
    const auto mode = static_cast<SendList::Mode>(m_ui->cbxMode->currentData().toInt());
    m_list.start(m_ui->tableWidget->tickedRows(), m_ui->cbxRepeat->value(), m_ui->lbxInterval->value(), mode);
    if (!m_list.isRunning()) {
        showWarning(tr("Please check the items you want to send"));
        return;
    }
    emit sig_sendStateChanged(false);
    if (m_list.isRunning()) { // unless whoever listens has stopped it
        updateControls();
        m_timer.start(FirstTickMs);
    }
}

void GUI_CanAdvancedOpearation::sendStop()
{
    if (m_list.isRunning()) {
        end();
    }
}

/// What the adapter answers only marks the printed rows: the list goes on when it refuses frames or is gone.
void GUI_CanAdvancedOpearation::sendTimeout()
{
    if (!m_list.isRunning()) {
        return;
    }
    const bool accepted = transmitCurrent();
    const DataModel row = m_list.current();
    const std::optional<int> wait = m_list.advance();
    if (wait) {
        m_timer.start(*wait); // from the adapter's return on, whatever the printing takes
    }
    if (m_ui->checkBox->isChecked()) {
        print(row, accepted);
    }
    if (!wait && !m_list.isRunning()) { // whoever listens may have started it anew
        end();
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
    if (!m_ui->tableWidget->removeCurrentRow()) {
        showWarning(tr("Please select the delete item first"));
    }
}
