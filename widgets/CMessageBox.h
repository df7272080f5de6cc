#pragma once

#include <QDialog>
#include <QFlags>
#include <QString>

#include <memory>

namespace Ui {
class CMessageBox;
}

/// Modes of the signals that ask for a message, sig_showMessageBox(). Any other value means MessageInformation.
enum MessageMode : int {
    MessageInformation = 0,
    MessageSuccess = 1,
    MessageQuestion = 2,
    MessageWarning = 3,
    MessageCritical = 4
};

/// A message with an icon, a text and standard buttons.
///
/// Either modal with an event loop of its own (exec() or the static functions), or without one: open(), and
/// finished(int) carries the StandardButton that was pressed.
///
/// Keyboard: Esc and the title bar's X press the escape button: Cancel, else No, Abort, Close or NoToAll, else the only
/// button; where there are several buttons and none of these, they do nothing. The focus starts on the default button,
/// which Enter presses. That is the escape button, as the one that changes nothing, unless setDefaultButton says
/// another.
///
/// The text is shown as it is; markup such as "<br>" works only after setTextFormat(Qt::RichText), which is for texts
/// that hold nothing from a file, a reply or the user. Long texts wrap, longer ones scroll, and what follows
/// the first 10,000 characters is left out.
class CMessageBox : public QDialog
{
    Q_OBJECT

public:
    enum Icon { NoIcon, Information, Question, Success, Warning, Critical };
    Q_ENUM(Icon)

    /// The values of the toolkit's standard buttons.
    enum StandardButton {
        NoButton = 0x00000000,
        Ok = 0x00000400,
        Save = 0x00000800,
        SaveAll = 0x00001000,
        Open = 0x00002000,
        Yes = 0x00004000,
        YesToAll = 0x00008000,
        No = 0x00010000,
        NoToAll = 0x00020000,
        Abort = 0x00040000,
        Retry = 0x00080000,
        Ignore = 0x00100000,
        Close = 0x00200000,
        Cancel = 0x00400000,
        Discard = 0x00800000,
        Help = 0x01000000,
        Apply = 0x02000000,
        Reset = 0x04000000,
        RestoreDefaults = 0x08000000,
        FirstButton = Ok,
        LastButton = RestoreDefaults
    };
    Q_DECLARE_FLAGS(StandardButtons, StandardButton)
    Q_FLAG(StandardButtons)

    explicit CMessageBox(QWidget *parent = nullptr);
    CMessageBox(Icon icon, const QString &title, const QString &text, StandardButtons buttons,
                QWidget *parent = nullptr);
    ~CMessageBox() override;

    /// Question, Success and Critical have a picture, the others none.
    void setIcon(Icon icon);
    Icon icon() const { return m_icon; }
    void setText(const QString &text);
    /// The whole text as it was set.
    QString text() const { return m_text; }
    /// Qt::PlainText (at first) or Qt::RichText.
    void setTextFormat(Qt::TextFormat format);
    /// Bits that are no standard button are ignored.
    void setStandardButtons(StandardButtons buttons);
    StandardButtons standardButtons() const;
    StandardButton escapeButton() const;

    // Each shows a box with the icon of its name and returns the button that was pressed, the escape button when the
    // box was closed otherwise, and NoButton when the box was deleted with its parent while it was open.
    static StandardButton information(QWidget *parent, const QString &title, const QString &text,
                                      StandardButtons buttons = Ok)
    {
        return run(Information, parent, title, text, buttons);
    }
    static StandardButton question(QWidget *parent, const QString &title, const QString &text,
                                   StandardButtons buttons = {Yes | No})
    {
        return run(Question, parent, title, text, buttons);
    }
    static StandardButton success(QWidget *parent, const QString &title, const QString &text,
                                  StandardButtons buttons = Ok)
    {
        return run(Success, parent, title, text, buttons);
    }
    static StandardButton warning(QWidget *parent, const QString &title, const QString &text,
                                  StandardButtons buttons = Ok)
    {
        return run(Warning, parent, title, text, buttons);
    }
    static StandardButton critical(QWidget *parent, const QString &title, const QString &text,
                                   StandardButtons buttons = Ok)
    {
        return run(Critical, parent, title, text, buttons);
    }

public slots:
    /// Presses the escape button; without one the box stays.
    void reject() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    static StandardButton run(Icon icon, QWidget *parent, const QString &title, const QString &text,
                              StandardButtons buttons);
    StandardButton safeButton() const;
    void fit();

    std::unique_ptr<Ui::CMessageBox> m_ui;
    Icon m_icon = NoIcon;
    QString m_text;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(CMessageBox::StandardButtons)
