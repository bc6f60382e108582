// The rule on the package's file of managed configuration.
#include <filesystem>
#include <string>

#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/platform/param_file_validator.h"

namespace pkgvet {

namespace {

using ManagedConfiguration::Validator::ParamFileValidator;

// The platform looks for the file here, whatever directories the rule set names.
constexpr const char* kShareDirectory = "usr/share";
constexpr const char* kParameterFile = "managed-configuration/configuration.xml";

// A directory in its place is present as well, and it is up to the validator to refuse it.
bool isPresent(const std::filesystem::path& file) {
    const std::filesystem::file_type type = std::filesystem::status(file).type();
    return type != std::filesystem::file_type::not_found &&
           type != std::filesystem::file_type::none;
}

bool isValid(const std::filesystem::path& file) {
    return ParamFileValidator::instance(ParamFileValidator::standardSchemasDirectory())
        ->isValid(file);
}

}  // namespace

// The file is optional, and the finding names it where it is installed.
void checkConfigurationParameterFile(const std::string& packageName, const std::string& tempDir,
                                     Findings* findings) {
    const std::filesystem::path relative =
        std::filesystem::path(kShareDirectory) / packageName / kParameterFile;
    const std::filesystem::path file = std::filesystem::path(tempDir) / relative;
    if (isPresent(file) && !isValid(file)) {
        findings->violation(kParameterFileInvalid, {("/" / relative).native()});
    }
}

}  // namespace pkgvet
