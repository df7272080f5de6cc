#pragma once

#include <QString>
#include <QVector>

class QWidget;

/// A text that the user sees, hovers or hears in a window.
struct ShownText
{
    QString place; ///< widget and kind of text, for reports
    QString text;
};

/// The texts of a window and its menus, also those of hidden widgets: captions, titles, choices, tool tips, headings,
/// cells, accessible names. What the user types is left out, and in the toolkit's file dialog what comes from the disk.
QVector<ShownText> shownTexts(const QWidget &window);
