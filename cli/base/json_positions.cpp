// Scans JSON for positions, which no parser here gives. There is no recursion: files may be deep.
#include "cli/base/json_positions.h"

#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "cli/base/json_place.h"

namespace pkgvet::cli {

namespace {

// The names of deeper places would take more memory than the text.
constexpr std::size_t kDeepest = 64;

constexpr std::string_view kBlank = " \t\r\n";
constexpr std::string_view kEscapes = "\"\\/bfnrtu";  // what can follow a backslash
constexpr std::string_view kDelimiters = " \t\r\n,:{}[]\"'";

// The text of a string that is written as raw, with its quotes.
std::string decoded(std::string_view raw) {
    std::string text(raw.substr(1, raw.size() < 2 ? 0 : raw.size() - 2));
    if (text.find('\\') == std::string::npos) {
        return text;
    }
    const nlohmann::json value = nlohmann::json::parse(raw, nullptr, false);
    return value.is_string() ? value.get<std::string>() : text;
}

}  // namespace

// One walk over the text.
class JsonScanner {
public:
    JsonScanner(std::string_view text, JsonPositions* positions)
        : text_(text), positions_(positions) {}

    void run();

private:
    // An object or an array that has not come to its end.
    struct Level {
        std::string place;
        bool isObject = false;
        std::size_t index = 0;  // of the present element
        bool expectsKey = false;
        std::string key = {};  // of the present member
        Position keyPosition = {};
        std::set<std::string> keys = {};
    };

    void advance(std::size_t size);
    bool skipComment();
    void open(char bracket);
    void next();
    void takeString();
    void takeScalar();
    void noteWrongEscape(std::string_view raw, const Position& position);
    void takeKey(std::string_view raw, const Position& position);
    void record(std::string_view text, const Position& position);
    std::string presentPlace() const;

    std::string_view text_;  // what is left of it
    JsonPositions* positions_;
    Position at_{1, 1};
    std::vector<Level> levels_;
};

void JsonScanner::run() {
    while (!text_.empty()) {
        const char c = text_.front();
        if (kBlank.find(c) != std::string_view::npos || c == ':') {
            advance(1);
        } else if (c == '{' || c == '[') {
            open(c);
        } else if (c == '}' || c == ']') {
            levels_.resize(levels_.empty() ? 0 : levels_.size() - 1);
            advance(1);
        } else if (c == ',') {
            next();
        } else if (c == '"' || c == '\'') {
            takeString();
        } else if (!skipComment()) {
            takeScalar();
        }
    }
}

// Of a character of several bytes the first one counts.
void JsonScanner::advance(std::size_t size) {
    for (const char c : text_.substr(0, size)) {
        if (c == '\n') {
            at_ = {at_.line + 1, 1};
        } else if ((static_cast<unsigned char>(c) & 0xc0U) != 0x80U) {
            ++at_.column;
        }
    }
    text_.remove_prefix(std::min(size, text_.size()));
}

bool JsonScanner::skipComment() {
    constexpr std::pair<std::string_view, std::string_view> kComments[] = {{"/*", "*/"},
                                                                           {"//", "\n"}};
    for (const auto& [begin, end] : kComments) {
        if (text_.starts_with(begin)) {
            const std::size_t size = text_.find(end, begin.size());
            advance(size == std::string_view::npos ? text_.size() : size + end.size());
            return true;
        }
    }
    return false;
}

void JsonScanner::open(char bracket) {
    record(std::string_view(), at_);
    const std::string place = levels_.size() < kDeepest ? presentPlace() : std::string();
    levels_.push_back({.place = place, .isObject = bracket == '{', .expectsKey = bracket == '{'});
    advance(1);
}

void JsonScanner::next() {
    if (!levels_.empty()) {
        ++levels_.back().index;
        levels_.back().expectsKey = levels_.back().isObject;
    }
    advance(1);
}

void JsonScanner::takeString() {
    const Position position = at_;
    std::size_t end = 1;
    while (end < text_.size() && text_[end] != text_.front()) {
        end += text_[end] == '\\' ? 2 : 1;
    }
    const std::string_view raw = text_.substr(0, end + 1);
    if (!levels_.empty() && levels_.back().expectsKey) {
        takeKey(raw, position);
    } else {
        record(raw, position);
    }
    noteWrongEscape(raw, position);
    advance(raw.size());
}

// The first one of a text is enough to find the text.
void JsonScanner::noteWrongEscape(std::string_view raw, const Position& position) {
    std::size_t at = raw.find('\\');
    for (; at < raw.size() - 1; at = raw.find('\\', at + 2)) {
        if (kEscapes.find(raw[at + 1]) == std::string_view::npos) {
            positions_->wrongEscapes_.push_back(
                {presentPlace(), std::string(raw.substr(at, 2)), position});
            return;
        }
    }
}

void JsonScanner::takeScalar() {
    const std::size_t end = text_.find_first_of(kDelimiters);
    const std::string_view raw = text_.substr(0, std::max<std::size_t>(end, 1));
    record(raw, at_);
    advance(raw.size());
}

void JsonScanner::takeKey(std::string_view raw, const Position& position) {
    Level& level = levels_.back();
    level.key = decoded(raw);
    level.keyPosition = position;
    level.expectsKey = false;
    if (!level.keys.insert(level.key).second && levels_.size() <= kDeepest) {
        positions_->doubledKeys_.push_back({presentPlace(), position});
    }
}

void JsonScanner::record(std::string_view text, const Position& position) {
    if (levels_.size() > kDeepest) {
        return;
    }
    const bool hasKey = !levels_.empty() && levels_.back().isObject;
    positions_->spots_[presentPlace()] = {hasKey ? levels_.back().keyPosition : position, position,
                                          std::string(text)};
}

std::string JsonScanner::presentPlace() const {
    if (levels_.empty()) {
        return std::string();
    }
    const Level& level = levels_.back();
    return level.isObject ? member(level.place, level.key) : element(level.place, level.index);
}

JsonPositions::JsonPositions(std::string_view text) {
    JsonScanner(text, this).run();
}

const JsonSpot* JsonPositions::find(const std::string& place) const {
    const auto found = spots_.find(place);
    return found == spots_.end() ? nullptr : &found->second;
}

Position JsonPositions::nearest(std::string place) const {
    const JsonSpot* spot = find(place);
    while (spot == nullptr && !place.empty()) {
        const std::size_t end = place.find_last_of(".[");
        place.resize(end == std::string::npos ? 0 : end);
        spot = find(place);
    }
    return spot == nullptr ? Position() : spot->value;
}

}  // namespace pkgvet::cli
