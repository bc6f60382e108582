// The route of a flight: waypoints in order, and the legs between them.

#pragma once

#include <iosfwd>
#include <string>
#include <vector>

struct Waypoint {
    std::string name;
    double latitude = 0;   // degrees, north positive
    double longitude = 0;  // degrees, east positive
};

// Reads one waypoint a line: name, latitude, longitude. Ends at the first line of another form.
std::vector<Waypoint> readRoute(std::istream& in);

// Great circle distance in kilometres.
double legLength(const Waypoint& from, const Waypoint& to);
