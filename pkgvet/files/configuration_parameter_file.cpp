// The rule on the package's file of managed configuration.
#include <filesystem>
#include <string>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/platform/param_file_validator.h"
#include "pkgvet/report/logger.h"

namespace {

using ManagedConfiguration::Validator::ParamFileValidator;

// The directories of the rule set play no part.
constexpr const char* kShareDirectory = "usr/share";
constexpr const char* kParameterFile = "managed-configuration/configuration.xml";

// A directory in its place exists as well; what to make of it is the validator's affair.
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
void ContentValidator::checkConfigurationParameterFile(const RpmMeta& rpm) {
    const std::filesystem::path relative =
        std::filesystem::path(kShareDirectory) / rpm.name() / kParameterFile;
    const std::filesystem::path file = std::filesystem::path(d_ptr->tempDir) / relative;
    if (isPresent(file) && !isValid(file)) {
        d_ptr->failures |= pkgvet::kViolation;
        const std::string installed = std::filesystem::path("/") / relative;
        Logger::log(LogLevel::Error, {"[", installed, pkgvet::kParameterFileInvalid});
    }
}
