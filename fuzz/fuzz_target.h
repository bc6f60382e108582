// What each fuzz target defines, and what they share.
#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::fuzz {

// The target: takes one input. Whatever an input may not cause ends the process, be it a fault
// that a sanitizer sees, an exception that comes out or an expectation that does not hold.
void run(std::string_view input);

// Ends the process where something that has to hold does not.
void expect(bool holds, const char* what);

// The parts of an input that lines of "----" divide; at least count, empty at the end.
std::vector<std::string> partsOf(std::string_view input, std::size_t count);

// The lines of text, each without its line feed.
std::vector<std::string> linesOf(std::string_view text);

// Does something that may throw exceptions of this type and of no other.
template <typename Exception, typename Action>
void tolerate(const Action& action) {
    try {
        action();
    } catch (const Exception&) {
        // What the operation promises for such input.
    }
}

}  // namespace pkgvet::fuzz
