// Prints the legs of the route and their sum; with --sync only the sum, as the background task
// wants it.

#include <cstring>
#include <fstream>
#include <iomanip>
#include <iostream>

#include "route.h"

namespace {

constexpr const char* kRouteFile = "/usr/share/org.example.pilot/route.txt";

double printLegs(const std::vector<Waypoint>& route, bool sumOnly) {
    double sum = 0;
    for (std::size_t i = 1; i < route.size(); ++i) {
        const double length = legLength(route[i - 1], route[i]);
        sum += length;
        if (!sumOnly) {
            std::cout << route[i - 1].name << " - " << route[i].name << ": " << length << " km\n";
        }
    }
    return sum;
}

}  // namespace

int main(int argc, char** argv) {
    const bool sync = argc > 1 && std::strcmp(argv[1], "--sync") == 0;
    std::ifstream file(kRouteFile);
    if (!file) {
        std::cerr << "cannot read " << kRouteFile << '\n';
        return 1;
    }
    std::cout << std::fixed << std::setprecision(1);
    const double sum = printLegs(readRoute(file), sync);
    std::cout << "total: " << sum << " km\n";
    return 0;
}
