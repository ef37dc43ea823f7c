// zel/core/zel.h: the C-callable face of the window environment.
//
// Scalars by reference; texts as a pointer with its length by value at the end of the list, where
// -1 means NUL-terminated. Texts are Latin-1. After the environment has begun to end, every
// function returns its neutral value at once.
//
// What each function returns, with a live bridge and once the bridge has gone (or before it
// exists). A null pointer where the function needs a value gives the "no bridge" column unless
// the row says otherwise. Rows are added with each window type.
//
//   function                                 live bridge                              no bridge
//   ZEL_writeText                            the length given                         -1
//   ZEL_readText, ZEL_readTextWindow         characters with the line feed; -1 size  -1
//                                            0 or cancelled, -3 line too long, 0 the
//                                            bridge went while waiting, -2 thread done
//   ZEL_getFileName                          characters of the name; 0 the bridge     0 (-1 without
//                                            went while waiting, -2 thread done        length or unit)
//   ZEL_makewindow, ZEL_closewindow          0                                        0
//   ZEL_createTextWindow                     0, unit assigned                         0, unit assigned
//   ZEL_writeTextWindow, ZEL_closeTextWindow 0                                        0
//   ZEL_closeWindow and its aliases          1                                        1
//   ZEL_moveWindow, ZEL_activateWindow       0                                        0
//   ZEL_TileWindows, ZEL_CascadeWindows      1                                        1
//   ZEL_addMenu, ZEL_menuItemEnable,         0                                        0
//   ZEL_setMenuItemCheckable/Checked
//   ZEL_isMenuItemChecked                    1 checked, 0 not                         0
//   ZEL_alertBox                             1 once dismissed; -2 thread done         1
//   ZEL_saveWindow and its aliases           1 once written or reported               1
//   ZEL_createXYPlot                         1, unit assigned; -1 null unit           0, unit assigned
//   ZEL_writeXYPlot                          1 once the plot has the points; -1 null  1
//                                            unit
//   ZEL_clearXYPlot                          1; -1 null unit                          0
//   ZEL_startEvents, ZEL_yield,              0                                        0
//   ZEL_yieldCurrentThread
#pragma once

extern "C" {
// Hooks of the runtime (text units, window units, file names).
long ZEL_readText(char* buffer, long size, long* unit);
long ZEL_writeText(char* text, long* length, int descriptor, long* unit);
int ZEL_makewindow(long* unit, char* name, char* access, int nameLength, long accessLength);
int ZEL_closewindow(long* unit, long* status);
long ZEL_getFileName(char* buffer, long* length, long* unit, bool* newFile);

// Text windows.
long ZEL_createTextWindow(int* unit, char* title, int* width, int* height, long titleLength);
long ZEL_writeTextWindow(int* unit, char* text, int length);
long ZEL_readTextWindow(int* unit, char* buffer, long length);
long ZEL_closeTextWindow(int* unit);

// Window handling.
long ZEL_closeWindow(int* unit);
long ZEL_closeSpreadsheet(int* unit);
long ZEL_closeBarchart(int* unit);
long ZEL_closeXYPlot(int* unit);
long ZEL_closePolarPlot(int* unit);
long ZEL_closeContourPlot(int* unit);
long ZEL_closePiechart(int* unit);
long ZEL_closeCanvas(int* unit);
long ZEL_moveWindow(int* unit, int* x, int* y);
long ZEL_activateWindow(int* unit);
long ZEL_TileWindows();
long ZEL_CascadeWindows();

// User menus, alerts.
long ZEL_addMenu(int* unit, char* menu, char* item, long (*callback)(), char* shortcut, int menuLength,
                 int itemLength, int shortcutLength);
long ZEL_menuItemEnable(int* unit, char* menu, char* item, bool* state, int menuLength, long itemLength);
long ZEL_setMenuItemCheckable(int* unit, char* menu, char* item, bool* state, int menuLength,
                              long itemLength);
long ZEL_setMenuItemChecked(int* unit, char* menu, char* item, bool* state, int menuLength, long itemLength);
long ZEL_isMenuItemChecked(int* unit, char* menu, char* item, int menuLength, long itemLength);
long ZEL_alertBox(char* title, char* message, int titleLength, long messageLength);

// Saving a content window to a file by script: the file-name rule of its type applies. The other
// names are the same function.
long ZEL_saveWindow(int* unit, char* fileName, int length);
long ZEL_saveBarchart(int* unit, char* fileName, int length);
long ZEL_saveXYPlot(int* unit, char* fileName, int length);
long ZEL_savePolarPlot(int* unit, char* fileName, int length);
long ZEL_saveContourPlot(int* unit, char* fileName, int length);
long ZEL_savePiechart(int* unit, char* fileName, int length);
long ZEL_saveCanvas(int* unit, char* fileName, int length);

// Spreadsheets. The program's own unit number names the window. A write copies the array and
// returns at once; a read waits until the array holds the cells (-2 when the program is ending).
// labels: `count` fields of `labelLength` bytes each, blanks kept.
long ZEL_createSpreadsheet(int* unit, char* title, int* rows, int* columns, int titleLength);
long ZEL_setHorizontalHeaderLabels(int* unit, char* labels, int* labelLength, int* count);
long ZEL_setVerticalHeaderLabels(int* unit, char* labels, int* labelLength, int* count);
long ZEL_writeSpreadsheet(int* unit, void* data, char* dataType, int* elementSize, int* rows, int* columns,
                          int typeLength);
long ZEL_readSpreadsheet(int* unit, void* data, char* dataType, int* rows, int* columns, int typeLength);

// Timers: `callback` runs on the GUI thread, first after the program has gone idle. An id of -1
// gets a new number; destroying sets the id to -1 and returns 0 if it already was.
long ZEL_createTimer(int* id, unsigned* interval, bool* singleShot, void (*callback)());
long ZEL_destroyTimer(int* id);

// XY plots. Data: `rows` points of `columns` values each, row after row, (x, y) first.
long ZEL_createXYPlot(int* unit, char* title, char* xAxisName, char* yAxisName,
                      unsigned* chartBackgroundColor, int* xScaleType, double* xScaleLB, double* xScaleUB,
                      double* xScaleStep, int* yScaleType, double* yScaleLB, double* yScaleUB,
                      double* yScaleStep, int* showHgridLines, int* showVgridLines, int titleLength,
                      int xAxisNameLength, int yAxisNameLength);
long ZEL_writeXYPlot(int* unit, void* data, char* dataType, int* elementSize, int* rows, int* columns,
                     int* fittedCurve, char* curveLabel, unsigned* curveColor, int* curveLineWidth,
                     unsigned* dotColor, int* dotSize, int* symbolStyle, int dataTypeLength,
                     int curveLabelLength);
long ZEL_clearXYPlot(int* unit);

// Giving control to the user, and giving way.
long ZEL_startEvents();
long ZEL_yield();
long ZEL_yieldCurrentThread();
}
