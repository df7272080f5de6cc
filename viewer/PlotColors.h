#pragma once

#include <QColor>

/// The color of the curve of a number (from 0), which can be told from its neighbours' and is seen on a background as
/// light or dark as that one; after 8 they come again.
QColor plotColor(int number, const QColor &background);
