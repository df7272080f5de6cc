#pragma once

#include <QByteArray>
#include <QDialog>

#include <memory>

namespace Ui {
class CHexEditView;
}

/// The dialog "Edit data": edits the bytes of a payload and keeps their number. Enter accepts, also from the editor.
class CHexEditView : public QDialog
{
    Q_OBJECT

public:
    explicit CHexEditView(const QByteArray &payload, QWidget *parent = nullptr);
    ~CHexEditView() override;

    /// As many bytes as the payload had, whatever the editor did.
    QByteArray data() const;

private slots:
    void slot_bytesPerLineChanged();
    void slot_dataChanged();

private:
    void prepareEditor(const QByteArray &payload);
    void prepareButtons();

    std::unique_ptr<Ui::CHexEditView> m_ui;
    const int m_size; ///< bytes of the payload
};
