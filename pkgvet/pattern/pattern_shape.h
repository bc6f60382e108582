// What a pattern asks of the std::regex engine, told from its text before the engine sees it.
#pragma once

#include <cstddef>
#include <string_view>

namespace pkgvet {

// The engine recurses, so that what it cannot do is what would overflow the stack. Of the usual
// 8 MiB, one is left to callers.
inline constexpr std::size_t kMaxEngineStack = std::size_t{7} << 20;

// Bytes of stack that the engine takes.
struct EngineFrames {
    std::size_t term;         // to compile a term, on top of those before it in a row
    std::size_t group;        // to compile a group, on top of those around it
    std::size_t alternative;  // to match behind a "|", on top of those before it
};

// What was measured for the way in which the library was compiled.
EngineFrames engineFrames();

// A lookahead takes memory for each state of the whole pattern while it is tried, and so does each
// lookahead in it.
inline constexpr std::size_t kMaxLookaheadMemory = std::size_t{512} << 20;

struct PatternShape {
    // Stack for compiling the pattern, as far as the engine gets before it refuses it.
    std::size_t compilerStack = 0;
    // The most alternatives, lazy repeats among them, that the engine may try in one another
    // without a look at the text.
    std::size_t alternatives = 0;
    // The most lookaheads in one another, and the most memory that one of them may take.
    std::size_t lookaheadDepth = 0;
    std::size_t lookaheadMemory = 0;
    // Whether a repeat or a back-reference has a number at which the engine's own would overflow.
    bool hasHugeNumber = false;
    // The most states that the pattern may have, and what it takes to make them, in units of what
    // one look at a text takes.
    std::size_t states = 0;
    std::size_t compilerSteps = 0;
};

// Reads pattern as the engine's compiler does (ECMAScript grammar) and in the same order, up to the
// end or to a fault at which the compiler stops.
PatternShape shapeOf(std::string_view pattern);

}  // namespace pkgvet
