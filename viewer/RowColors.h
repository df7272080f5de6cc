#pragma once

#include "viewer/core/ColorRules.h"

#include <QColor>
#include <QPalette>

/// How a row with a rule's colours is drawn.
struct RowColors
{
    QColor text;
    QColor background; ///< not valid: as rows without a rule
};

/// Whether letters are light and the ground is dark.
bool isDark(const QPalette &palette);

/// A rule's colour as it is drawn there: in dark surroundings its lightness is turned round.
QColor colorIn(const QPalette &palette, quint32 rgb);

/// The rule's colours in these surroundings: in dark ones their lightness is turned round, and a text that could not be
/// read on its ground is made lighter or darker until the contrast is 4.5 to 1, as WCAG 2 has it.
RowColors rowColors(const ColorRule &rule, const QPalette &palette);

/// The ratio of WCAG 2 between two colours, 1 to 21.
double contrast(const QColor &first, const QColor &second);
