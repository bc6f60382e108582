// Where the values of a JSON text stand.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

// A place in a text as editors count, from 1 and in characters; 0 where it is not known.
struct Position {
    std::size_t line = 0;
    std::size_t column = 0;
};

struct JsonSpot {
    Position key;  // of the value's key; of the value itself where it has none
    Position value;
    std::string text;  // the value as it is written; empty for an object and an array
};

struct DoubledKey {
    std::string place;
    Position position;  // of the second one
};

struct WrongEscape {
    std::string place;
    std::string text;   // the escape
    Position position;  // of the text that holds it
};

// The values of one text by their places as json_place.h names them, such as "profiles[0].name".
// Of a text that is not JSON it tells as much as can be made out; it takes comments and single
// quotes, as json-glib does. What nests more than 64 levels deep has no position.
class JsonPositions {
public:
    JsonPositions() = default;
    explicit JsonPositions(std::string_view text);

    // Null for a place that the text does not have.
    const JsonSpot* find(const std::string& place) const;

    // Where the value at place begins, or where the nearest value that would enclose it does.
    Position nearest(std::string place) const;

    // Keys that an object has more than once, of which a parser takes the last.
    const std::vector<DoubledKey>& doubledKeys() const { return doubledKeys_; }

    // Texts with escapes that JSON does not know, of which lenient parsers drop the backslash.
    const std::vector<WrongEscape>& wrongEscapes() const { return wrongEscapes_; }

private:
    friend class JsonScanner;

    std::map<std::string, JsonSpot> spots_;
    std::vector<DoubledKey> doubledKeys_;
    std::vector<WrongEscape> wrongEscapes_;
};

}  // namespace pkgvet::cli
