// Runs validators.
#include "tests/support/program/schemas.h"

#include "tests/support/base/source_tree.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/package_builder.h"

namespace {

std::string faultsOf(const std::vector<std::string>& command) {
    std::string output;
    const int status = runProgram(command, &output);
    return status == 0 ? std::string() : "status " + std::to_string(status) + ": " + output;
}

}  // namespace

std::string jsonFaults(const std::string& schema, const std::vector<std::string>& documents) {
    const TemporaryDirectory directory;
    std::vector<std::string> command = {PKGVET_JSONSCHEMA};
    for (const std::string& document : documents) {
        const std::string name = std::to_string(command.size()) + ".json";
        command.insert(command.end(), {"-i", directory.write(name, document)});
    }
    command.push_back(sourceFile(schema));
    return faultsOf(command);
}

std::string xmlFaults(const std::string& schema, const std::string& document) {
    const TemporaryDirectory directory;
    return faultsOf({PKGVET_XMLLINT, "--noout", "--nonet", "--schema", sourceFile(schema),
                     directory.write("report.xml", document)});
}
