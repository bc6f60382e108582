// A file of managed configuration, in the first part of the input, against a schema, which is that
// of the second part or, without one, one of our own.
#include "fuzz/fuzz_target.h"
#include "pkgvet/platform/param_file_validator.h"
#include "tests/support/base/temporary_directory.h"

namespace {

constexpr const char* kSchema = R"(<?xml version="1.0"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="parameters"><xs:complexType><xs:sequence>
    <xs:element name="parameter" minOccurs="0" maxOccurs="9"><xs:complexType>
      <xs:attribute name="name" type="xs:NMTOKEN" use="required"/>
      <xs:attribute name="value" type="xs:int"/>
    </xs:complexType></xs:element>
  </xs:sequence></xs:complexType></xs:element>
</xs:schema>
)";

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    using ManagedConfiguration::Validator::ParamFileValidator;
    static const TemporaryDirectory directory;
    const std::vector<std::string> parts = partsOf(input, 2);
    const std::string document = directory.write("parameters.xml", parts[0]);
    directory.write("schemas/own.xsd", parts[1].empty() ? kSchema : parts[1]);
    const auto validator = ParamFileValidator::instance(directory / "schemas");
    const bool isValid = validator->isValid(document);
    expect(validator->isValid(document) == isValid, "a second look gives the same answer");
}
