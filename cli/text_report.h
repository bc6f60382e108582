// Judgements as text for a person.
#pragma once

#include <ostream>

#include "cli/model.h"

namespace pkgvet::cli {

struct TextStyle {
    bool color = false;
    bool quiet = false;  // verdicts without findings
};

// Writes judgements as they come, and in the end how many there were. Packages that could not be
// judged have no place here; they are counted.
class TextReport {
public:
    TextReport(std::ostream& stream, TextStyle style) : stream_(stream), style_(style) {}

    void add(const PackageReport& package);
    void finish();

private:
    void writeFindings(const PackageReport& package, const Judgement& judgement);
    void writeVerdict(const PackageReport& package, const Judgement& judgement);

    std::ostream& stream_;
    TextStyle style_;
    std::size_t accepted_ = 0;
    std::size_t rejected_ = 0;
    std::size_t notJudged_ = 0;
};

}  // namespace pkgvet::cli
