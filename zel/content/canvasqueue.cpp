// zel/content/canvasqueue.cpp: the batch of draw calls and the property maps made from it.
#include "zel/content/canvasqueue.h"

#include "zel/core/gluemanager.h"

#include <QPointF>
#include <QRectF>

#include <vector>

namespace {

const char* const typeNames[] = {"Line", "Rect",  "RoundedRect", "Polygon", "Ellipse",
                                 "Arc",  "Chord", "Pie",         "Text",    "Picture"};

// Enough calls for one turn of the GUI's queue, so that a long series leaves it room to paint.
constexpr std::size_t batchCalls = 512;

class CanvasDrawBatch : public GlueBatch
{
public:
    bool add(const void* call) override
    {
        if (draws.size() >= batchCalls) return false;
        const auto& draw = *static_cast<const CanvasDraw*>(call);
        draws.push_back(draw);
        CanvasDraw& copy = draws.back();
        offsets.push_back(values.size());
        if (draw.valueCount > 0) values.insert(values.end(), draw.values, draw.values + draw.valueCount);
        copy.values = nullptr;
        return true;
    }

    void run(GlueManager& g) override
    {
        for (std::size_t i = 0; i < draws.size(); ++i) {
            const CanvasDraw& draw = draws[i];
            emit g.createObjectOnCanvas(draw.unit, draw.id,
                                        canvasDrawProperties(draw, values.data() + offsets[i]));
        }
    }

private:
    std::vector<CanvasDraw> draws;
    std::vector<std::size_t> offsets;
    std::vector<float> values;
};

std::unique_ptr<GlueBatch> makeBatch()
{
    auto batch = std::make_unique<CanvasDrawBatch>();
    return batch;
}

const char batchKind = 0;

QVariantList pointList(const float* v, int floats)
{
    QVariantList list;
    list.reserve(floats / 2);
    for (int i = 0; i + 1 < floats; i += 2)
        list.append(QPointF(v[i], v[i + 1]));
    return list;
}

QVariantList rectList(const float* v, int floats)
{
    QVariantList list;
    list.reserve(floats / 4);
    for (int i = 0; i + 3 < floats; i += 4)
        list.append(QRectF(v[i], v[i + 1], v[i + 2], v[i + 3]));
    return list;
}

} // namespace

QMap<QString, QVariant> canvasDrawProperties(const CanvasDraw& d, const float* values)
{
    QMap<QString, QVariant> p;
    p.insert(QStringLiteral("type"), QString::fromLatin1(typeNames[d.kind]));
    const QRectF rect(d.shape[0], d.shape[1], d.shape[2], d.shape[3]);
    switch (d.kind) {
    case CanvasDraw::line:
        p.insert(QStringLiteral("pointList"), pointList(values, d.valueCount));
        break;
    case CanvasDraw::polygon:
        p.insert(QStringLiteral("pointsList"), pointList(values, d.valueCount));
        break;
    case CanvasDraw::roundedRect:
        p.insert(QStringLiteral("xRadius"), d.shape[4]);
        p.insert(QStringLiteral("yRadius"), d.shape[5]);
        Q_FALLTHROUGH();
    case CanvasDraw::rect:
        p.insert(QStringLiteral("rectList"), rectList(values, d.valueCount));
        break;
    case CanvasDraw::arc:
    case CanvasDraw::chord:
    case CanvasDraw::pie:
        p.insert(QStringLiteral("startAngle"), d.shape[4]);
        p.insert(QStringLiteral("spanAngle"), d.shape[5]);
        Q_FALLTHROUGH();
    case CanvasDraw::ellipse:
        p.insert(QStringLiteral("rect"), rect);
        break;
    case CanvasDraw::text:
        p.insert(QStringLiteral("rect"), rect);
        p.insert(QStringLiteral("text"), d.content);
        p.insert(QStringLiteral("textFlags"), d.textFlags);
        p.insert(QStringLiteral("fontFamilyName"), d.family);
        p.insert(QStringLiteral("fontPointSize"), d.pointSize);
        p.insert(QStringLiteral("fontWeight"), d.weight);
        p.insert(QStringLiteral("fontItalic"), d.italic);
        if (d.given & CanvasDraw::textColorGiven) p.insert(QStringLiteral("textColor"), d.textColor);
        return p;
    case CanvasDraw::picture:
        p.insert(QStringLiteral("rect"), rect);
        p.insert(QStringLiteral("fileName"), d.content);
        return p;
    }
    if (d.given & CanvasDraw::penWidthGiven) p.insert(QStringLiteral("penWidth"), d.penWidth);
    if (d.given & CanvasDraw::penStyleGiven) p.insert(QStringLiteral("penStyle"), d.penStyle);
    if (d.given & CanvasDraw::capStyleGiven) p.insert(QStringLiteral("capStyle"), d.capStyle);
    if (d.given & CanvasDraw::joinStyleGiven) p.insert(QStringLiteral("joinStyle"), d.joinStyle);
    if (d.given & CanvasDraw::penColorGiven) p.insert(QStringLiteral("penColor"), d.penColor);
    if (d.given & CanvasDraw::brushColorGiven) p.insert(QStringLiteral("brushColor"), d.brushColor);
    return p;
}

bool queueCanvasDraw(const CanvasDraw& draw)
{
    return GlueManager::callBatched(&batchKind, &makeBatch, &draw);
}
