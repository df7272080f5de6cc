#pragma once

#include "capture/CTableViewCAN.h"
#include "capture/SendList.h"
#include "device/ChannelParam.h"
#include "device/TickTimer.h"

#include <QDialog>
#include <QVector>

#include <memory>
#include <optional>
#include <vector>

class CANCommunication;
class CNotice;

namespace Ui {
class GUI_CanAdvancedOpearation;
}

/// The send list of a CAN channel: up to 1000 prepared classic frames, of which the ticked ones are sent as a list. A
/// list that runs works on what was in the table and the controls when it was started; only "Print to table" may be
/// switched meanwhile. Closing the dialog in whatever way ends the list. The misspelt name is the one in use.
///
/// Stays above other windows, but gives way to modal dialogs.
class GUI_CanAdvancedOpearation : public QDialog
{
    Q_OBJECT

public:
    /// communication must outlive the dialog. On a channel opened for CAN FD the frames are sent as classic ones by the
    /// CAN FD call, as such a channel has no other.
    GUI_CanAdvancedOpearation(const ChannelParam &channel, CANCommunication &communication, QWidget *parent = nullptr);
    /// Ends a list that runs with sig_sendStateChanged(true), unless the parent is being destroyed.
    ~GUI_CanAdvancedOpearation() override;

signals:
    /// False when a list starts, true when it has ended or was stopped.
    void sig_sendStateChanged(bool state);
    /// One frame for the frame table. The list hands over batches only, so this is not emitted.
    void sig_addTableItem(const CTableViewCAN::DataObject &obj, bool filter);
    /// The copies of one send for the frame table.
    void sig_addTableItems(const QVector<CTableViewCAN::DataObject> &objs);

public slots:
    /// Whether the twelve controls may be used; false while other frames are sent on the channel. "Stop" stays usable
    /// while a list runs, and what is disabled for another reason stays disabled.
    void btnStateChanged(bool state);
    /// Starts the list of the ticked rows, unless one runs.
    void sendList();
    /// Ends the list that runs; no further frame goes out.
    void sendStop();
    /// Sends the current row and goes on to the next.
    void sendTimeout();

protected:
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private slots:
    void slot_removeBtnClicked();

private:
    /// The copies of a row for one transmit call.
    struct Batch
    {
        std::optional<std::size_t> row; ///< of the list that runs
        std::vector<VCI_CAN_OBJ> frames;
        std::vector<VCI_CANFD_OBJ> fdFrames; ///< instead, on a CAN FD channel
    };

    void fillTexts();
    void connectSignals();
    void updateControls();
    void showWarning(const QString &text);
    void end();
    bool transmitCurrent();
    void print(const DataModel &row, bool accepted);

    const ChannelParam m_channel;
    CANCommunication &m_communication;
    std::unique_ptr<Ui::GUI_CanAdvancedOpearation> m_ui;
    CNotice *m_notice = nullptr; ///< seen where the click was, not behind this window
    SendList m_list;
    TickTimer m_timer;
    Batch m_batch;
    bool m_isAllowed = true; ///< the tab lets the dialog send
};
