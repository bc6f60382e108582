// Loads JSON files.
#include "pkgvet/base/json_file.h"

#include <algorithm>
#include <optional>

#include "pkgvet/base/json_depth.h"
#include "pkgvet/base/regular_file.h"

namespace pkgvet {

namespace {

constexpr std::size_t kPieceSize = std::size_t{1} << 20;

// The file has no largest size. json-glib refuses every text that holds a NUL, so reading ends at
// the first one: a link may lead to a sparse file, which is larger than any memory.
std::optional<std::string> readText(const std::string& path) {
    RegularFileReader file(path);
    if (!file.isOpen()) {
        return std::nullopt;
    }
    std::string content;
    while (file.remaining() > 0) {
        std::string piece(std::min<std::uint64_t>(kPieceSize, file.remaining()), '\0');
        if (!file.read(&piece) || piece.find('\0') != std::string::npos) {
            return std::nullopt;
        }
        content += piece;
    }
    return content;
}

// The depth is looked at ahead of the parser, which cannot be stopped once it recurses.
JsonOutcome parse(const std::string& content, JsonParser* parser) {
    if (jsonDepth(content) > kMaxJsonDepth) {
        return JsonOutcome::TooDeep;
    }
    const bool isLoaded = json_parser_load_from_data(parser, content.data(),
                                                     static_cast<gssize>(content.size()), nullptr);
    return isLoaded ? JsonOutcome::Loaded : JsonOutcome::Unreadable;
}

}  // namespace

JsonFile loadJsonFile(const std::string& path) {
    JsonFile file;
    file.parser.reset(json_parser_new());
    const std::optional<std::string> content = readText(path);
    if (!content) {
        return file;
    }
    file.outcome = parse(*content, file.parser.get());
    if (file.outcome == JsonOutcome::Loaded) {
        file.node = json_parser_get_root(file.parser.get());
        if (file.node != nullptr && JSON_NODE_HOLDS_OBJECT(file.node)) {
            file.root = json_node_get_object(file.node);
        }
    }
    return file;
}

}  // namespace pkgvet
