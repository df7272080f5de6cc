#pragma once

#include <QObject>

class QApplication;

/// Dims every window of the program while a modal dialog blocks it, whoever opens the dialog and however it closes: a
/// message box, a file dialog (the system's own as well), a dialog that is deleted while open. There is one CMaskWidget
/// per blocked window, never two on top of each other; a dialog that is blocked by a second one is dimmed like any
/// window. Menus, drop-down lists and tool tips are never blocked.
///
/// Qt tells a window by WindowBlocked and WindowUnblocked, once per change, whether a dialog blocks it. That is all
/// this object listens to, so no dialog needs to know of it.
class ModalMasks : public QObject
{
    Q_OBJECT

public:
    /// Works from now on and belongs to the application.
    explicit ModalMasks(QApplication *application);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
