// The platform's validator of managed configuration.
#pragma once

#include <filesystem>
#include <memory>

#include "pkgvet/export.h"

namespace ManagedConfiguration::Validator {

struct ParamFileValidatorPrivate;

// Judges files of managed configuration by the schemas of one directory. On the platform the class
// comes from its own library, whose namespaces and names these are; elsewhere the layer behind this
// header stands in for it. Its schemas are XML Schema, one "*.xsd" file each.
//
// For that layer a file is valid when it is well-formed XML and conforms to each schema that
// declares its root element. With no such schema it is enough to be well-formed. Nothing outside
// the file is included in it and nothing is fetched from a network. A file that declares entities
// or attributes of its own, is larger than 256 KiB or nests deeper than 256 levels is not valid.
class PKGVET_EXPORT ParamFileValidator {
public:
    ParamFileValidator(const ParamFileValidator&) = delete;
    ParamFileValidator(ParamFileValidator&&) = delete;
    ParamFileValidator& operator=(const ParamFileValidator&) = delete;
    ParamFileValidator& operator=(ParamFileValidator&&) = delete;
    ~ParamFileValidator();

    // The platform's directory of schemas, on disk.
    static std::filesystem::path standardSchemasDirectory();

    // A validator for the schemas in schemasDirectory, on disk. A directory that is not there holds
    // no schemas.
    static std::shared_ptr<ParamFileValidator> instance(
        const std::filesystem::path& schemasDirectory);

    // Whether file, on disk, conforms to the schemas. False for what is not a regular file or
    // cannot be read, and where a schema that declares its root element is itself broken.
    bool isValid(const std::filesystem::path& file);

private:
    explicit ParamFileValidator(const std::filesystem::path& schemasDirectory);

    std::unique_ptr<ParamFileValidatorPrivate> d_ptr;
};

}  // namespace ManagedConfiguration::Validator
