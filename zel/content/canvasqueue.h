// zel/content/canvasqueue.h: a draw call of the program on its way to the GUI thread. A call is a
// compact record; consecutive calls travel in one batch of the bridge and become property maps
// only on the GUI thread, so that a draw call costs the program little more than a copy.
#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

struct CanvasDraw
{
    enum Kind : unsigned char { line, rect, roundedRect, polygon, ellipse, arc, chord, pie, text, picture };
    // Bits of `given`: the optional arguments that the caller passed.
    enum Given : unsigned {
        penWidthGiven = 1,
        penStyleGiven = 2,
        capStyleGiven = 4,
        joinStyleGiven = 8,
        penColorGiven = 16,
        brushColorGiven = 32,
        textColorGiven = 64
    };

    long unit = 0;
    long id = 0;
    Kind kind = line;
    unsigned given = 0;
    float penWidth = 0;
    int penStyle = 0, capStyle = 0, joinStyle = 0;
    unsigned penColor = 0, brushColor = 0, textColor = 0;
    // A rect (left, top, width, height), then start and span angles or x and y radii.
    float shape[6] = {};
    // Points (2 floats each) or rectangles (4 each) of lines, polygons and rect lists: the
    // caller's array when queued, the batch's own copy after.
    const float* values = nullptr;
    int valueCount = 0; // floats
    // Text and picture.
    QString content; // the text, or the picture's file name
    QString family;
    int textFlags = 0, pointSize = -1, weight = 0;
    bool italic = false;
};

// The property map of Canvas::createObject for a record; `values` is where its floats are.
QMap<QString, QVariant> canvasDrawProperties(const CanvasDraw& draw, const float* values);

// Hands the record to the bridge behind the program's earlier calls. False when the bridge has gone.
bool queueCanvasDraw(const CanvasDraw& draw);
