// Text that waits on disk.
#pragma once

#include <functional>
#include <string_view>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Takes text of any size without keeping it in memory, and gives it back. The file behind it has no
// name, so that nothing is left of it whatever ends the process. Throws std::runtime_error when
// there is no room.
class Spool {
public:
    Spool();

    void write(std::string_view text);
    // Hands all of the text on, piece by piece.
    void read(const std::function<void(std::string_view piece)>& receive) const;
    // The file itself, at its beginning. The spool is of no use afterwards.
    Descriptor takeFile();

private:
    Descriptor file_;
};

}  // namespace pkgvet::cli
