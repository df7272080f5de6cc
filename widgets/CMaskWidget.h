#pragma once

#include <QWidget>

/// Darkens a whole window: black at 40 % opacity over everything in it, as large as the window whatever its size
/// becomes. It takes neither the keyboard focus nor mouse clicks. ModalMasks puts one over every window that a dialog
/// blocks.
class CMaskWidget : public QWidget
{
    Q_OBJECT

public:
    /// A child of the window, shown at once where the window is visible and on top of what is in it.
    explicit CMaskWidget(QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
