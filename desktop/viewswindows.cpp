// desktop/viewswindows.cpp: the views drawn with the environment's canvas and spreadsheet functions.
#include "desktop/viewswindows.h"

#include "desktop/viewspainter.h"
#include "views/scene.h"
#include "views/table.h"
#include "zel/core/zel.h"

#include <QRectF>

#include <atomic>
#include <cstdio>
#include <cstring>

namespace kestro::desktop {

namespace {

// Unit numbers of our own for the windows, far from those a program would choose.
int newUnit()
{
    static std::atomic<int> next{9000};
    return next++;
}

std::vector<views::Plane> planesOf(const std::vector<views::PlaneRecord>& records)
{
    std::vector<views::Plane> planes;
    planes.reserve(records.size());
    for (const views::PlaneRecord& r : records)
        planes.push_back(r.plane);
    return planes;
}

unsigned rgb(const QColor& colour)
{
    return colour.rgb() & 0xffffffu;
}

// A drawing surface of canvas calls: net coordinates in, canvas coordinates out.
class CanvasPen
{
public:
    explicit CanvasPen(int unit) : unit(unit), frame(netFrame(QRectF(0, 0, viewCanvasSide, viewCanvasSide)))
    {
    }

    std::vector<float> points(const views::Polyline& line) const
    {
        std::vector<float> out;
        out.reserve(line.size() * 2);
        for (const views::NetPoint& p : line) {
            out.push_back(float(frame.cx + p.x * frame.radius));
            out.push_back(float(frame.cy - p.y * frame.radius));
        }
        return out;
    }
    void polyline(const views::Polyline& line, float width, unsigned colour)
    {
        if (line.size() < 2) return;
        std::vector<float> segments;
        segments.reserve(line.size() * 4);
        const std::vector<float> p = points(line);
        for (std::size_t i = 2; i + 1 < p.size(); i += 2)
            segments.insert(segments.end(), {p[i - 2], p[i - 1], p[i], p[i + 1]});
        int id = -1, count = int(segments.size() / 4);
        ZEL_drawLines(&unit, &id, segments.data(), &count, &width, nullptr, nullptr, nullptr, &colour);
    }
    void polygon(std::vector<float> p, unsigned colour)
    {
        int id = -1, count = int(p.size() / 2);
        float width = 0;
        if (count < 3) return;
        ZEL_drawPolygonWithBrush(&unit, &id, p.data(), &count, &width, nullptr, nullptr, nullptr, &colour,
                                 &colour);
    }
    void disc(const views::NetPoint& centre, float radius, unsigned pen, unsigned* brush, float width = 1)
    {
        float rect[4] = {float(frame.cx + centre.x * frame.radius - radius),
                         float(frame.cy - centre.y * frame.radius - radius), 2 * radius, 2 * radius};
        int id = -1;
        if (brush)
            ZEL_drawEllipseWithBrush(&unit, &id, rect, &width, nullptr, nullptr, nullptr, &pen, brush);
        else
            ZEL_drawEllipse(&unit, &id, rect, &width, nullptr, nullptr, nullptr, &pen);
    }
    void north()
    {
        float rect[4] = {float(frame.cx - 20), float(frame.cy - frame.radius - 28), 40, 24};
        char text[] = "N", family[] = "Sans";
        int flags = 0x84, size = 12, weight = 50; // centred both ways
        bool italic = false;
        unsigned black = 0;
        int id = -1;
        ZEL_drawText(&unit, &id, rect, text, &flags, family, &size, &weight, &italic, &black, -1, -1);
    }
    // Whites out what lies between the primitive and the canvas's border: one polygon from the
    // border into the circle and back.
    void maskOutside(const views::Polyline& primitive)
    {
        const float s = viewCanvasSide;
        std::vector<float> p = {0, 0, s, 0, s, s, 0, s, 0, 0};
        const std::vector<float> circle = points(primitive);
        p.insert(p.end(), circle.begin(), circle.end());
        p.insert(p.end(), {circle[0], circle[1], 0, 0});
        polygon(p, 0xffffff);
    }

    int unit;
    NetFrame frame;
};

int openCanvas(const std::string& title)
{
    int unit = newUnit(), side = viewCanvasSide;
    unsigned white = 0xffffff;
    ZEL_createCanvas(&unit, const_cast<char*>(title.c_str()), &side, &side, nullptr, nullptr, &white,
                     long(title.size()));
    return unit;
}

// Yellow for the lowest level through orange to deep red, as in the pictures.
unsigned levelRgb(std::size_t index, std::size_t count)
{
    const double t = count > 1 ? double(index) / double(count - 1) : 0;
    return rgb(QColor::fromRgbF(1.0, 0.95 - 0.8 * t, 0.6 - 0.6 * t));
}

// Whether a point of the net lies inside a closed ring (crossing count).
bool inside(const views::NetPoint& p, const views::Polyline& ring)
{
    bool in = false;
    for (std::size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++)
        if ((ring[i].y > p.y) != (ring[j].y > p.y) &&
            p.x < (ring[j].x - ring[i].x) * (p.y - ring[i].y) / (ring[j].y - ring[i].y) + ring[i].x)
            in = !in;
    return in;
}

} // namespace

int openStereonetWindow(const std::vector<views::PlaneRecord>& records, const std::string& title)
{
    const views::StereonetScene scene = views::stereonetScene(planesOf(records));
    CanvasPen pen(openCanvas(title));
    // The filled contours: each level's outer rings in its colour, then the rings inside an odd
    // number of others (holes) in the colour below it.
    for (std::size_t level = 0; level < scene.density.size(); ++level) {
        const std::vector<views::Polyline>& rings = scene.density[level].rings;
        std::vector<bool> hole(rings.size(), false);
        for (std::size_t i = 0; i < rings.size(); ++i)
            for (std::size_t j = 0; j < rings.size(); ++j)
                if (i != j && !rings[i].empty() && !rings[j].empty() && inside(rings[i][0], rings[j]))
                    hole[i] = !hole[i];
        for (bool holes : {false, true})
            for (std::size_t i = 0; i < rings.size(); ++i)
                if (hole[i] == holes)
                    pen.polygon(pen.points(rings[i]),
                                holes ? (level ? levelRgb(level - 1, scene.density.size()) : 0xffffffu)
                                      : levelRgb(level, scene.density.size()));
    }
    if (!scene.density.empty()) pen.maskOutside(scene.primitive);
    for (const views::Polyline& line : scene.graticule)
        pen.polyline(line, 0.8f, 0xaaaaaa);
    for (const views::Polyline& line : scene.greatCircles)
        pen.polyline(line, 1.2f, 0x3c3c3c);
    const unsigned mean = rgb(meanColour), pole = rgb(poleColour);
    if (scene.fisher.valid) {
        pen.polyline(scene.meanPlane, 2, mean);
        for (const views::Polyline& line : scene.meanCone)
            pen.polyline(line, 1.5f, mean);
    }
    pen.polyline(scene.primitive, 2, 0);
    pen.north();
    if (scene.fisher.valid) pen.disc(scene.meanPole, 8, mean, nullptr, 2);
    unsigned fill = pole;
    for (const views::NetPoint& p : scene.poles)
        pen.disc(p, 3.5f, pole, &fill);
    return pen.unit;
}

void openRoseWindow(const std::vector<views::PlaneRecord>& records, const std::string& title)
{
    const views::RoseDiagram rose = views::strikeRose(planesOf(records));
    CanvasPen pen(openCanvas(title));
    for (int ring = 1; ring <= 4; ++ring)
        pen.disc({}, float(pen.frame.radius * ring / 4), 0xaaaaaa, nullptr, 0.8f);
    for (const views::Polyline& petal : rose.petals) {
        pen.polygon(pen.points(petal), 0x7896dc);
        pen.polyline(petal, 1, 0x28285a);
    }
    if (rose.hasMean) pen.polyline(rose.meanAxis, 2.5f, rgb(meanColour));
    pen.disc({}, float(pen.frame.radius), 0, nullptr, 2);
    pen.north();
}

int openTableWindow(const std::vector<views::PlaneRecord>& records, const views::UncertaintyOptions& options,
                    const std::string& title)
{
    const std::vector<views::TableRow> rows = views::tableRows(records, options);
    constexpr int field = 40;
    static const char* const headers[] = {"id",         "strike_rhr",  "dip_direction", "dip",
                                          "pole_trend", "pole_plunge", "sigma_strike",  "sigma_dip",
                                          "cone95",     "condition",   "comment"};
    int columns = int(std::size(headers)), rowCount = std::max(1, int(rows.size()));
    int unit = newUnit();
    ZEL_createSpreadsheet(&unit, const_cast<char*>(title.c_str()), &rowCount, &columns, long(title.size()));
    // The header fields keep their blanks, so they are only as wide as the longest label.
    std::size_t widest = 0;
    for (const char* h : headers)
        widest = std::max(widest, std::strlen(h));
    std::string labels;
    for (const char* h : headers)
        labels += std::string(h).append(widest - std::strlen(h), ' ');
    int labelLength = int(widest);
    ZEL_setHorizontalHeaderLabels(&unit, labels.data(), &labelLength, &columns);

    std::vector<char> cells(std::size_t(rowCount) * columns * field, ' ');
    auto put = [&](int r, int c, const std::string& text) {
        std::memcpy(&cells[(std::size_t(r) * columns + c) * field], text.data(),
                    std::min<std::size_t>(field, text.size()));
    };
    auto angle = [](double v) {
        char text[32];
        std::snprintf(text, sizeof text, "%.2f", v);
        return std::string(text);
    };
    for (int r = 0; r < int(rows.size()); ++r) {
        const views::TableRow& row = rows[std::size_t(r)];
        put(r, 0, std::to_string(row.id));
        const double values[] = {row.strike, row.dipDirection, row.dip, row.poleTrend, row.polePlunge};
        for (int c = 0; c < 5; ++c)
            put(r, c + 1, angle(values[c]));
        if (row.hasUncertainty) {
            put(r, 6, angle(row.sigmaStrike));
            put(r, 7, angle(row.sigmaDip));
            put(r, 8, angle(row.cone95));
        }
        put(r, 9, row.condition);
        put(r, 10, row.comment);
    }
    char type[] = "CHARACTER*40";
    int size = field;
    ZEL_writeSpreadsheet(&unit, cells.data(), type, &size, &rowCount, &columns, -1);
    return unit;
}

} // namespace kestro::desktop
