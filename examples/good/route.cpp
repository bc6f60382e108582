#include "route.h"

#include <algorithm>
#include <cmath>
#include <istream>

namespace {

constexpr double kEarthRadiusKm = 6371.0;
constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180.0;

double squaredHalfSine(double degrees) {
    const double sine = std::sin(degrees * kRadiansPerDegree / 2);
    return sine * sine;
}

}  // namespace

std::vector<Waypoint> readRoute(std::istream& in) {
    std::vector<Waypoint> route;
    Waypoint point;
    while (in >> point.name >> point.latitude >> point.longitude) {
        route.push_back(point);
    }
    return route;
}

double legLength(const Waypoint& from, const Waypoint& to) {
    const double cosines =
        std::cos(from.latitude * kRadiansPerDegree) * std::cos(to.latitude * kRadiansPerDegree);
    const double haversine = squaredHalfSine(to.latitude - from.latitude) +
                             cosines * squaredHalfSine(to.longitude - from.longitude);
    // Rounding may carry antipodes a hair above 1, where asin has no value.
    return 2 * kEarthRadiusKm * std::asin(std::sqrt(std::min(1.0, haversine)));
}
