// views/scene.cpp: the shapes of the stereonet and the rose diagram of a set of planes.
#include "views/scene.h"

namespace kestro::views {

StereonetScene stereonetScene(const std::vector<Plane>& planes, const StereonetOptions& options)
{
    StereonetScene scene;
    scene.primitive = primitive();
    scene.graticule = graticule(10);
    std::vector<Vec3> poleVectors;
    poleVectors.reserve(planes.size());
    for (const Plane& plane : planes)
        poleVectors.push_back(poleVector(plane));
    if (options.poles) {
        scene.poles.reserve(planes.size());
        for (const Vec3& p : poleVectors)
            scene.poles.push_back(project(p));
    }
    if (options.greatCircles)
        for (const Plane& plane : planes)
            scene.greatCircles.push_back(greatCircle(plane));
    if (options.density && !planes.empty()) {
        const NetGrid grid = densityGrid(poleVectors, options.gridSize, options.sigma);
        scene.density = filledContours(grid, contourLevels(grid, options.levelStep));
    }
    if (options.mean) {
        scene.fisher = fisherMean(poleVectors);
        if (scene.fisher.valid) {
            scene.meanPole = project(scene.fisher.mean);
            if (scene.fisher.cone95 > 0)
                scene.meanCone = smallCircle(scene.fisher.meanPole, scene.fisher.cone95);
            scene.meanPlane = greatCircle(scene.fisher.meanPlane);
        }
    }
    return scene;
}

RoseDiagram strikeRose(const std::vector<Plane>& planes, double binWidth, PetalScale scale)
{
    std::vector<double> strikes;
    strikes.reserve(planes.size());
    for (const Plane& plane : planes)
        strikes.push_back(plane.strike);
    return roseDiagram(strikes, binWidth, scale);
}

} // namespace kestro::views
