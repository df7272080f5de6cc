#pragma once

class QwtPlot;

/// Lets the picture of a plot end where its scales end, without a margin.
void alignToScales(QwtPlot &plot);
