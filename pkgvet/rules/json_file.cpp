// Loads JSON files.
#include "pkgvet/rules/json_file.h"

namespace pkgvet {

JsonFile loadJsonFile(const std::string& path) {
    JsonFile file{JsonParserHandle(json_parser_new()), nullptr};
    if (json_parser_load_from_file(file.parser.get(), path.c_str(), nullptr)) {
        JsonNode* root = json_parser_get_root(file.parser.get());
        if (root != nullptr && JSON_NODE_HOLDS_OBJECT(root)) {
            file.root = json_node_get_object(root);
        }
    }
    return file;
}

}  // namespace pkgvet
