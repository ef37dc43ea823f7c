// views/scene.h: the stereonet and the rose diagram as lists of shapes in net coordinates (x east,
// y north, primitive of radius 1), for any drawing surface: draw the fills first, clipped to the
// primitive, then the lines, then the points.
#pragma once

#include "views/density.h"
#include "views/rose.h"
#include "views/stereonet.h"

#include <vector>

namespace kestro::views {

struct StereonetOptions
{
    bool poles = true;
    bool greatCircles = false;
    bool density = true;
    int gridSize = 200;   // nodes per side of the density grid
    double sigma = 3;     // Kamb weighting
    double levelStep = 2; // contour levels every so many standard deviations
    bool mean = true;     // mean pole, its 95% cone and the mean plane
};

struct StereonetScene
{
    Polyline primitive;
    std::vector<Polyline> graticule;    // every 10 degrees
    std::vector<FilledContour> density; // lowest level first; each filled by the even-odd rule
    std::vector<NetPoint> poles;
    std::vector<Polyline> greatCircles;
    FisherMean fisher;
    NetPoint meanPole; // with `fisher.valid`
    std::vector<Polyline> meanCone;
    Polyline meanPlane;
};

StereonetScene stereonetScene(const std::vector<Plane>& planes, const StereonetOptions& options = {});

// The rose diagram of the planes' strikes, its petals and mean axis on the unit circle.
RoseDiagram strikeRose(const std::vector<Plane>& planes, double binWidth = 10,
                       PetalScale scale = PetalScale::equalArea);

} // namespace kestro::views
