// Loads JSON files.
#include "pkgvet/base/json_file.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "pkgvet/base/regular_file.h"

namespace pkgvet {

namespace {

// Far beyond any rule file and any JSON file of a package.
constexpr std::size_t kMaxSize = std::size_t{16} << 20;

// json-glib recurses for each array or object that nests and has no limit of its own: measured, it
// overflows a stack of 8 MiB between 50,000 and 200,000.
constexpr std::size_t kMaxNesting = 5000;

constexpr std::string_view kOpening = "[{";
constexpr std::string_view kClosing = "]}";

// json-glib takes text in single quotes and comments as well.
constexpr std::string_view kExtensions = "'/#";

// Where the text in double quotes that begins at quote ends.
std::size_t endOfText(std::string_view json, std::size_t quote) {
    std::size_t i = quote + 1;
    while (i < json.size() && json[i] != '"') {
        i += json[i] == '\\' ? 2 : 1;
    }
    return i;
}

// At least the depth to which json nests. Where something other than plain JSON begins, brackets
// may be text, so that closing ones count no more.
std::size_t nestingBound(std::string_view json) {
    std::size_t depth = 0;
    std::size_t deepest = 0;
    bool plain = true;
    for (std::size_t i = 0; i < json.size(); ++i) {
        if (plain && json[i] == '"') {
            i = endOfText(json, i);
        } else if (kOpening.find(json[i]) != std::string_view::npos) {
            deepest = std::max(deepest, ++depth);
        } else if (plain && depth > 0 && kClosing.find(json[i]) != std::string_view::npos) {
            --depth;
        } else if (kExtensions.find(json[i]) != std::string_view::npos) {
            plain = false;
        }
    }
    return deepest;
}

}  // namespace

JsonFile loadJsonFile(const std::string& path) {
    JsonFile file{JsonParserHandle(json_parser_new()), nullptr};
    const std::optional<std::string> content = readRegularFile(path, kMaxSize);
    if (!content || nestingBound(*content) > kMaxNesting) {
        return file;
    }
    if (json_parser_load_from_data(file.parser.get(), content->data(),
                                   static_cast<gssize>(content->size()), nullptr)) {
        JsonNode* root = json_parser_get_root(file.parser.get());
        if (root != nullptr && JSON_NODE_HOLDS_OBJECT(root)) {
            file.root = json_node_get_object(root);
        }
    }
    return file;
}

}  // namespace pkgvet
