#pragma once

#include <QFrame>
#include <QPointer>
#include <QVector>

class QToolButton;

/// A frame inside another widget, mostly a dialog, that holds one widget and has its own close button. While it is
/// shown, the other widgets in its parent are disabled, and the keyboard works in the frame only: Esc closes the frame,
/// not the dialog. It stays in the middle of its parent.
class PopupWidget : public QFrame
{
    Q_OBJECT

public:
    explicit PopupWidget(QWidget *parent);
    ~PopupWidget() override;

    /// The widget that is shown; to be called once. The frame owns it from then on.
    void setWidget(QWidget *content);

public slots:
    /// Whether the close button, Esc and close() close the frame.
    void enabledCloseButton(bool isEnabled);

signals:
    /// The frame was closed. It is not deleted, unless Qt::WA_DeleteOnClose is set.
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void disableOthers();
    void enableOthers();
    void moveToMiddle();

    QToolButton *m_closeButton;
    QVector<QPointer<QWidget>> m_disabled; ///< what was enabled before the frame was shown
    QPointer<QWidget> m_lastFocus;         ///< what had the keyboard before
};
