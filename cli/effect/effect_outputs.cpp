// Writes an effect to standard output and to files.
#include "cli/effect/effect_outputs.h"

#include <exception>
#include <sstream>

namespace pkgvet::cli {

namespace {

constexpr Words<EffectFormat, 4> kFormats = {{
    {"text", EffectFormat::Text},
    {"json", EffectFormat::Json},
    {"markdown", EffectFormat::Markdown},
    {"html", EffectFormat::Html},
}};

}  // namespace

std::vector<Option> effectOutputOptions(EffectOutputOptions* options) {
    return {
        choiceOption("--format", kFormats, &options->format, "Format on standard output [text]"),
        outputOption(kFormats, &options->outputs,
                     "Write a report to a file as well; may be repeated; - is standard output"),
    };
}

std::string conflictIn(const EffectOutputOptions& options) {
    return formatsOfStandardOutput(options.format, options.outputs).size() > 1
               ? kOneFormatOnStandardOutput
               : "";
}

EffectOutputs::EffectOutputs(const EffectOutputOptions& options)
    : format_(formatsOfStandardOutput(options.format, options.outputs).front()) {
    for (const EffectOutput& output : filesAmong(options.outputs)) {
        files_.push_back({output.format, OutputFile(output.path)});
    }
}

// All files are tried before the first failure counts: one full disk must not cost the reports on
// others.
void EffectOutputs::write(const Effect& effect, std::ostream& stream) {
    writeEffect(effect, format_, stream);
    std::exception_ptr failure;
    for (File& file : files_) {
        try {
            std::ostringstream content;
            writeEffect(effect, file.format, content);
            file.file.write(content.str());
            file.file.commit();
        } catch (const std::exception&) {
            failure = std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

}  // namespace pkgvet::cli
