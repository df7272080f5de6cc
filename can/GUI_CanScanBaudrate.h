#pragma once

#include <QDialog>

#include <memory>
#include <optional>

class CANCommunication;
class GUI_CanScanBaudratePrivate;

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
    std::unique_ptr<GUI_CanScanBaudratePrivate> m_p;
};
