#pragma once

#include <QByteArray>
#include <QDialog>

#include <memory>

class CHexEditViewPrivate;

/// The dialog "Edit data": edits the bytes of a payload and keeps their number. Enter accepts, also from the editor.
class CHexEditView : public QDialog
{
    Q_OBJECT

public:
    explicit CHexEditView(const QByteArray &payload, QWidget *parent = nullptr);
    ~CHexEditView() override;

    /// As many bytes as the payload had.
    QByteArray data() const;

private slots:
    void slot_clear();
    void slot_undo();
    void slot_redo();
    void slot_bytesPerLineChanged();
    void slot_dataChanged();
    void slot_restoreLength();

private:
    friend class CHexEditViewPrivate;
    std::unique_ptr<CHexEditViewPrivate> m_p;
};
