// Reads a file line by line.
#include "pkgvet/qml/line_reader.h"

#include <algorithm>
#include <cstdint>
#include <regex>
#include <utility>

namespace pkgvet {

namespace {

// Large enough that the cost of each call to read does not show.
constexpr std::size_t kPieceSize = std::size_t{64} << 10;

}  // namespace

LineReader::LineReader(const std::string& path) : file_(path) {}

LineReader::LineReader(OpenFile file) : file_(std::move(file)) {}

bool LineReader::next(std::string* line) {
    line->clear();
    bool found = false;
    while (position_ < buffer_.size() || fill()) {
        found = true;
        const std::size_t end = std::min(buffer_.find('\n', position_), buffer_.size());
        if (line->size() + (end - position_) > kMaxLineSize) {
            throw std::regex_error(std::regex_constants::error_space);
        }
        line->append(buffer_, position_, end - position_);
        position_ = end + 1;
        if (end < buffer_.size()) {
            break;
        }
    }
    return found;
}

// What could be read of a file that breaks off still counts.
bool LineReader::fill() {
    buffer_.resize(
        static_cast<std::size_t>(std::min<std::uint64_t>(file_.remaining(), kPieceSize)));
    file_.read(&buffer_);
    position_ = 0;
    return !buffer_.empty();
}

}  // namespace pkgvet
