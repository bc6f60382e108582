// Looks faults up in the text of files.
#include "cli/rules/fault_locator.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace pkgvet::cli {

const JsonPositions& FaultLocator::positionsIn(const std::string& file) {
    const auto known = files_.find(file);
    if (known != files_.end()) {
        return known->second;
    }
    std::string content;
    std::error_code error;
    // A pipe would be waited for, and a directory has no text.
    if (std::filesystem::is_regular_file(file, error)) {
        std::ifstream stream(file, std::ios::binary);
        content.assign(std::istreambuf_iterator<char>(stream), {});
    }
    return files_.emplace(file, JsonPositions(content)).first->second;
}

// A fault of the file as a whole has its place in the words of the reader, if anywhere.
void FaultLocator::locateValue(Fault* fault) {
    if (fault->key.empty() || fault->position.line != 0) {
        return;
    }
    const JsonPositions& positions = positionsIn(fault->file);
    fault->position = positions.nearest(fault->key);
    if (const JsonSpot* spot = positions.find(fault->key)) {
        fault->value = spot->text;
    }
}

void FaultLocator::locateKey(Fault* fault) {
    if (const JsonSpot* spot = positionsIn(fault->file).find(fault->key)) {
        fault->position = spot->key;
    }
}

}  // namespace pkgvet::cli
