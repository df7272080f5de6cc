#pragma once

#include <QStringList>

class QWidget;

/// What is cut off in a window as it is on screen, one line each: captions, titles, headings and contents larger than
/// their place, choices that the list of a combo box cuts, numbers that their field cannot show, controls that stick
/// out of their parent or lie over each other. Cells of tables are not looked at: where a column is narrow they end in
/// an ellipsis.
QStringList cutTexts(const QWidget &window);
