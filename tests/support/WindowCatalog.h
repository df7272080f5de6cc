#pragma once

#include <QString>

#include <functional>
#include <vector>

class QWidget;

/// One window of the program in one state.
struct CatalogWindow
{
    using Visitor = std::function<void(QWidget &window)>;

    QString name; ///< also of its picture
    /// Brings the window on screen as a user would, hands it to the visitor once, and clears up behind it. The visitor
    /// may close the window. Ends the program when the window does not come. Texts are in the language installed.
    std::function<void(const Visitor &visit)> show;
};

/// Every window, dialog, message and menu of the program, against the virtual adapter. A window that is added to the
/// program gets its line in WindowCatalog.cpp, and with it the checks of texts and keyboard and its pictures.
/// Needs Qt::AA_DontUseNativeDialogs.
std::vector<CatalogWindow> windowCatalog();
