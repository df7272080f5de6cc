#include "viewer/PlotLayout.h"

#include <qwt_plot.h>
#include <qwt_plot_layout.h>

void alignToScales(QwtPlot &plot)
{
    plot.plotLayout()->setAlignCanvasToScales(true);
    plot.plotLayout()->setCanvasMargin(0);
}
