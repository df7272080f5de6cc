#pragma once

#include <QByteArray>
#include <QPointer>
#include <QUndoStack>
#include <QWidget>

#include <memory>

class CHexEditView;
class QKeyEvent;

namespace Ui {
class CHexLineEdit;
}

/// Entry field for a payload of a fixed number of bytes: a line of hexadecimal digits and a button "..." that opens
/// CHexEditView. Typing fills the payload from its first byte and never changes its length; what is not typed is zero.
///
/// The line shows the first eight bytes only. An edit of the line sets the whole payload: bytes that the line does not
/// hold become zero, until the edit is undone. A payload as long as that is edited by "...".
class CHexLineEdit : public QWidget
{
    Q_OBJECT

public:
    static constexpr int LengthMax = 64; ///< bytes, of a CAN FD frame

    /// Has no bytes until setPayload or setLength.
    explicit CHexLineEdit(QWidget *parent = nullptr);
    ~CHexLineEdit() override;

    /// Sets bytes and length. What is beyond LengthMax is cut.
    void setPayload(const QByteArray &payload);
    QByteArray payload() const { return m_state.payload; }

    /// Keeps the first bytes, new ones are zero. Below 0 is 0, above LengthMax is LengthMax.
    void setLength(int bytes);
    int length() const { return m_state.payload.size(); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void slot_buttonClicked();
    void slot_textEdited(const QString &text);
    void slot_textEditingFinished();

private:
    struct State
    {
        QString text;
        int cursor = 0;
        QByteArray payload;
    };

    void show(const State &wanted);
    void change(const State &wanted);
    void skipBlanks(bool backward);
    bool handleKey(const QKeyEvent &event);
    void showContextMenu(QPoint position);

    std::unique_ptr<Ui::CHexLineEdit> m_ui;
    QPointer<CHexEditView> m_dialog;
    State m_state;
    /// Instead of the line edit's own history, which ends with each regrouping and knows no payload.
    QUndoStack m_history;
};
