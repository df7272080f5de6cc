#pragma once

#include "device/CANError.h"

#include <QDialog>
#include <QStandardItemModel>
#include <QVector>

#include <memory>
#include <optional>

class CANCommunication;
class CNotice;

namespace Ui {
class GUI_CanScanBaudrate;
}

/// Searches for the bit rates of a device's two CAN buses, lists what was tried, and names what is being tried and what
/// was found. Closing the dialog in whatever way ends the scan, and it closes with the window it belongs to; "Apply"
/// closes it as accepted.
class GUI_CanScanBaudrate : public QDialog
{
    Q_OBJECT

public:
    /// communication must outlive the dialog. Without a device "Scan" says that there is none.
    GUI_CanScanBaudrate(CANCommunication &communication, std::optional<quint8> device, QWidget *parent = nullptr);
    ~GUI_CanScanBaudrate() override;

signals:
    /// A channel receives at these rates: index in canBaudrates(), 1 to 9, and CAN FD data-rate index, 0 to 5.
    void sig_rateFound(int index, int indexCANFDFre);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    /// Of a step, by channel: a BaudrateScanReport::Channel.
    using Results = QVector<quint8>;

    void prepareTable();
    void connectSignals();
    void setScanning(bool isOn);
    void showTried(int index, int dataRate);
    void showResult(const Results &results, quint8 index, quint8 dataRate);
    void noteFound(const Results &results, quint8 index, quint8 dataRate);
    void finish();
    void showFound(bool isThrough);
    bool isAnyFound() const { return m_found.count(QString()) < m_found.size(); }
    void start();
    void stop();
    QString refusal(CANError error) const;

    std::unique_ptr<Ui::GUI_CanScanBaudrate> m_ui;
    CANCommunication &m_communication;
    const std::optional<quint8> m_device;
    QStandardItemModel m_model;
    CNotice *m_notice = nullptr;
    bool m_isScanning = false; ///< this dialog's scan runs; there may be scans of others
    bool m_isStopping = false;
    QVector<QString> m_found; ///< the rates of each channel; empty: none yet
    int m_foundRow = 0;       ///< of the rate found last
};
