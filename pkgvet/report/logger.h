// Findings as lines on standard error.
#pragma once

#include <initializer_list>
#include <string_view>

#include "pkgvet/export.h"

// The values are fixed, and their order is not the order of gravity.
enum class LogLevel {
    Warning = 0,   // a finding that does not fail the package
    Error = 1,     // a rule violation
    Critical = 2,  // the gravest violation: it fails the package even with validation switched off
    Info = 3,      // a remark, no finding
};

// Writes every finding of the library as one line to std::cerr, so that a caller who redirects
// that stream's buffer captures them. It has no instances, filters nothing and counts nothing; the
// verdicts are kept by the validators.
//
// Its one process-wide switch is the colour, which is off until a caller turns it on. Neither the
// terminal nor the environment is consulted. No locks are taken: callers that log from several
// threads and want whole lines serialise the calls themselves.
class PKGVET_EXPORT Logger {
public:
    // Writes the level's label, then the pieces in order, each by its length and with nothing in
    // between, then a line feed, and flushes. Pieces need no terminating NUL and may hold any
    // bytes. A level outside the enumeration writes nothing at all. Never throws.
    static void log(LogLevel level, std::initializer_list<std::string_view> pieces);

    // Colours the labels of all lines from the next one on, or stops doing so.
    static void enableColor(bool enable);
};
