// views/rose.h: rose diagram of strikes, bidirectional, as petals in net coordinates.
#pragma once

#include "views/stereonet.h"

#include <vector>

namespace kestro::views {

enum class PetalScale { equalArea, linear };

struct RoseDiagram
{
    double binWidth = 10;
    // Counts of bins of `binWidth` degrees from north clockwise over the whole circle; each strike
    // counts in its own bin and in the opposite one, so the diagram is symmetric.
    std::vector<int> counts;
    int largest = 0;
    // Closed wedges from the centre, radius 1 for the largest count: sqrt(count / largest) for equal
    // area, count / largest for linear. Empty bins have no petal.
    std::vector<Polyline> petals;
    // Axial mean of the strikes in [0, 180), and the length of the mean doubled-angle vector (0 for
    // strikes spread evenly, 1 for all alike). No mean without strikes.
    bool hasMean = false;
    double meanStrike = 0;
    double meanLength = 0;
    // The mean strike as a diameter of the unit circle.
    Polyline meanAxis;
};

// `binWidth` must divide 180; other widths are taken as 10.
RoseDiagram roseDiagram(const std::vector<double>& strikes, double binWidth = 10,
                        PetalScale scale = PetalScale::equalArea);

} // namespace kestro::views
