// What crosses the boundary between the library and a program: exceptions that the library throws,
// and objects that it makes and the program destroys.
#include <pkgvet/pattern/patterns.h>
#include <pkgvet/pattern/regex.h>
#include <pkgvet/platform/param_file_validator.h>
#include <pkgvet/rules/configuration.h>

#include <fstream>
#include <iostream>
#include <regex>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

bool throwsRegexError() {
    try {
        matchesPattern("text", "(");
    } catch (const std::regex_error&) {
        return true;
    }
    return false;
}

bool throwsLogicError() {
    try {
        Regex::escape(std::string_view());
    } catch (const std::logic_error&) {
        return true;
    }
    return false;
}

bool throwsInvalidArgument(const std::string& rules) {
    std::ofstream(rules) << "{}";
    try {
        const Configuration configuration(rules, Profiles::Regular);
    } catch (const std::invalid_argument&) {
        return true;
    }
    return false;
}

bool makesValidator(const std::string& file) {
    using ManagedConfiguration::Validator::ParamFileValidator;
    std::ofstream(file) << "<empty/>";
    return ParamFileValidator::instance(ParamFileValidator::standardSchemasDirectory())
        ->isValid(file);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    const std::string scratch = argv[1];
    std::cout << throwsRegexError() << throwsLogicError() << throwsInvalidArgument(scratch)
              << makesValidator(scratch) << '\n';
    return 0;
}
