// Where an effect is told, and in which formats.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/base/option.h"
#include "cli/base/output_file.h"
#include "cli/base/output_option.h"
#include "cli/effect/effect_formats.h"

namespace pkgvet::cli {

using EffectOutput = OutputIn<EffectFormat>;

struct EffectOutputOptions {
    std::optional<EffectFormat> format;  // on standard output, if the user says so
    std::vector<EffectOutput> outputs;
};

// --format and --output.
std::vector<Option> effectOutputOptions(EffectOutputOptions* options);

// What is wrong with options; empty when they make sense.
std::string conflictIn(const EffectOutputOptions& options);

// One report on a stream and one in each file.
class EffectOutputs {
public:
    // Opens the files; std::runtime_error names one that cannot be written.
    explicit EffectOutputs(const EffectOutputOptions& options);

    // std::runtime_error names a file that was not written; the others and the stream are.
    void write(const Effect& effect, std::ostream& stream);

private:
    struct File {
        EffectFormat format;
        OutputFile file;
    };

    EffectFormat format_;
    std::vector<File> files_;
};

}  // namespace pkgvet::cli
