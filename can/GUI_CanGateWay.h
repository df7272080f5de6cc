#pragma once

#include "can/GatewayIdList.h"

#include <QDialog>
#include <QIcon>
#include <QSet>

#include <memory>

namespace Ui {
class GUI_CanGateWay;
}

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
    QSet<quint32> entries() const { return m_list.toSet(); }

signals:
    /// Asks for a modal message about an entry that was not added; mode is always 4 (critical).
    void sig_showMessageBox(const QString &text, int mode);

private:
    void prepareEntry();
    void connectSignals();
    void addRow(quint32 word);
    void addDeleteButton(QWidget *row, quint32 word);
    void showRows();
    void addTyped();
    QString add(const QString &text, quint8 type);
    void remove(quint32 word);
    int selectedRow() const;

    std::unique_ptr<Ui::GUI_CanGateWay> m_ui;
    GatewayIdList m_list; ///< the rows, in their order
    const QIcon m_rowIcon{QStringLiteral(":/32x32/Images/32x32/Parameter.png")};
    const QIcon m_deleteIcon{QStringLiteral(":/32x32/Images/32x32/Close.png")};
};
