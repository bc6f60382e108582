// Writes and reads the files between a judge and the guard.
#include "cli/guard/guard_note.h"

#include <charconv>
#include <initializer_list>
#include <limits>
#include <system_error>
#include <utility>

namespace pkgvet::cli {

namespace {

// What one package's header can need is far below.
constexpr std::size_t kMaxOrdersSize = std::size_t{16} << 20;
constexpr unsigned kSetId = 06000;
constexpr unsigned kMostSetId = 07777;

// Takes numbers and texts from the front. Once something is amiss it yields nothing.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    // A number in decimal digits and the one character behind it.
    std::uint64_t number(std::uint64_t most) {
        std::uint64_t value = 0;
        const char* const end = rest_.data() + rest_.size();
        const auto [behind, error] = std::from_chars(rest_.data(), end, value);
        isSound_ = isSound_ && error == std::errc() && behind != end && value <= most;
        if (!isSound_) {
            return 0;
        }
        rest_.remove_prefix(static_cast<std::size_t>(behind - rest_.data()) + 1);
        return value;
    }
    std::string_view text(std::size_t size) {
        isSound_ = isSound_ && size <= rest_.size();
        const std::string_view taken = rest_.substr(0, isSound_ ? size : 0);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    bool isSound() const { return isSound_; }
    bool isAtEnd() const { return rest_.empty(); }

private:
    std::string_view rest_;
    bool isSound_ = true;
};

std::string numbers(std::initializer_list<std::uint64_t> values) {
    std::string text;
    for (const std::uint64_t value : values) {
        text += std::to_string(value) + ' ';
    }
    text.back() = '\n';
    return text;
}

}  // namespace

std::string formatOrders(const GuardOrders& orders) {
    std::string text = numbers({orders.bytes, orders.files});
    for (const auto& [path, mode] : orders.setIdModes) {
        if (text.size() > kMaxOrdersSize) {
            break;
        }
        if ((mode & kSetId) != 0) {
            text += numbers({mode & kSetId, path.size()}) + path;
        }
    }
    return text;
}

std::optional<GuardOrders> parseOrders(std::string_view text) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    GuardOrders orders;
    Reader reader(text);
    orders.bytes = reader.number(most);
    orders.files = reader.number(most);
    while (reader.isSound() && !reader.isAtEnd()) {
        const auto mode = static_cast<unsigned>(reader.number(kMostSetId));
        orders.setIdModes.emplace(reader.text(reader.number(text.size())), mode);
    }
    return reader.isSound() ? std::optional(std::move(orders)) : std::nullopt;
}

std::string formatNote(const GuardNote& note) {
    const std::string name = note.name.substr(0, kMaxNameSize);
    std::string text =
        numbers({static_cast<unsigned>(note.end), static_cast<unsigned>(note.irregularity),
                 note.offset, name.size()}) +
        name;
    text.resize(kNoteSize, '\0');
    return text;
}

std::optional<GuardNote> parseNote(std::string_view text) {
    constexpr auto lastEnd = static_cast<unsigned>(GuardEnd::Last);
    constexpr auto lastIrregularity = static_cast<unsigned>(Irregularity::Last);
    GuardNote note;
    Reader reader(text);
    note.end = static_cast<GuardEnd>(reader.number(lastEnd));
    note.irregularity = static_cast<Irregularity>(reader.number(lastIrregularity));
    note.offset = reader.number(std::numeric_limits<std::uint64_t>::max());
    note.name = reader.text(reader.number(kMaxNameSize));
    const bool isWhole = reader.isSound() && text.size() == kNoteSize;
    return isWhole ? std::optional(std::move(note)) : std::nullopt;
}

}  // namespace pkgvet::cli
