// Patterns that the std::regex engine is known to take, told without it.
#pragma once

#include <string_view>

namespace pkgvet {

// Whether pattern surely compiles and can be tried on the empty text, in the ECMAScript grammar.
// Knows what rule files are usually made of: ordinary and escaped characters, ".", plain bracket
// expressions, repeats by "*", "+" and "?", alternatives, and groups and lookaheads that are not in
// one another. What it does not know may still be sound, which only the engine can tell.
bool isSurelySound(std::string_view pattern);

}  // namespace pkgvet
