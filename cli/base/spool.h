// Text that waits, on disk where there is much of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Takes text of any size, of which it keeps a few megabytes in memory, and gives it back. The file
// that more of it goes to has no name, so that nothing is left of it whatever ends the process.
// Throws std::runtime_error when there is no room.
class Spool {
public:
    void write(std::string_view text);
    // Hands all of the text on, piece by piece.
    void read(const std::function<void(std::string_view piece)>& receive) const;
    std::uint64_t size() const { return size_; }
    // The text from offset on, which is at least of that size.
    std::string part(std::uint64_t offset, std::size_t size) const;
    // The file itself, at its beginning. The spool is of no use afterwards.
    Descriptor takeFile();

private:
    void moveToFile();
    void append(std::string_view text);

    std::string text_;  // all of it, as long as there is no file
    Descriptor file_;
    std::uint64_t size_ = 0;
};

}  // namespace pkgvet::cli
