// zel/content/tests/xyplot_calls.h: a test program's XY plot, made and written through the C
// functions with everything but the data fixed.
#pragma once

#include "content_fixture.h"

#include "zel/content/xyplot.h"

namespace zeltest {

// "Wells" with axes "Depth" and "Dip" on a 0x102030 canvas, horizontal grid lines only; the unit
// is also the program's next result.
inline int createPlot(double xLB, double xUB, int xType, double yLB, double yUB, int yType)
{
    int unit = 0, hGrid = 1, vGrid = 0;
    unsigned background = 0x102030;
    double step = -1.0;
    char title[] = "Wells", xName[] = "Depth", yName[] = "Dip";
    ZEL_createXYPlot(&unit, title, xName, yName, &background, &xType, &xLB, &xUB, &step, &yType, &yLB, &yUB,
                     &step, &hGrid, &vGrid, -1, -1, -1);
    programLog.add(unit);
    return unit;
}

// A curve of REAL*8 rows, red and three wide, with blue dots of five.
inline long writePoints(int unit, const double* xy, int rows, int columns, const char* label, int style = 0)
{
    char type[] = "REAL*8";
    int size = 8, fitted = 0, width = 3, dot = 5;
    unsigned color = 0xff0000, dotColor = 0x0000ff;
    return ZEL_writeXYPlot(&unit, const_cast<double*>(xy), type, &size, &rows, &columns, &fitted,
                           const_cast<char*>(label), &color, &width, &dotColor, &dot, &style, -1, -1);
}

} // namespace zeltest
