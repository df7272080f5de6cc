#pragma once

#include <QDialog>
#include <QSet>

#include <memory>

class GUI_CanGateWayPrivate;

/// Edits the list of identifiers that the adapter's gateway forwards. The dialog knows words only
/// (can/GatewayIdList.h); its owner reads them from the adapter and writes entries() back when the dialog was accepted.
class GUI_CanGateWay : public QDialog
{
    Q_OBJECT

public:
    /// Every word of entries gets a row, those of an odd form and beyond the 64 that the adapter takes, too.
    explicit GUI_CanGateWay(const QSet<quint32> &entries, QWidget *parent = nullptr);
    ~GUI_CanGateWay() override;

    /// The words in the list now. Those that the user did not touch are bit for bit the ones given.
    QSet<quint32> entries() const;

signals:
    /// Asks for a modal message about an entry that was not added; mode is always 4 (critical).
    void sig_showMessageBox(const QString &text, int mode);

private:
    std::unique_ptr<GUI_CanGateWayPrivate> m_p;
};
