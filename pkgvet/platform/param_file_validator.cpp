// Stands in for the platform's validator of managed configuration, on libxml2.
#include "pkgvet/platform/param_file_validator.h"

#include <libxml/parser.h>
#include <libxml/xmlIO.h>
#include <libxml/xmlschemas.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "pkgvet/base/c_handle.h"
#include "pkgvet/base/regular_file.h"

namespace ManagedConfiguration::Validator {

struct ParamFileValidatorPrivate {
    std::vector<std::string> schemas;
};

namespace {

namespace fs = std::filesystem;

using XmlDocumentHandle = pkgvet::CHandle<xmlDoc, xmlFreeDoc>;
using XmlParserHandle = pkgvet::CHandle<xmlParserCtxt, xmlFreeParserCtxt>;
using XmlSchemaHandle = pkgvet::CHandle<xmlSchema, xmlSchemaFree>;
using XmlSchemaParserHandle = pkgvet::CHandle<xmlSchemaParserCtxt, xmlSchemaFreeParserCtxt>;
using XmlSchemaValidatorHandle = pkgvet::CHandle<xmlSchemaValidCtxt, xmlSchemaFreeValidCtxt>;

constexpr const char* kStandardSchemasDirectory = "/usr/share/managed-configuration/schemas";
constexpr const char* kSchemaSuffix = ".xsd";
constexpr std::string_view kSchemaNamespace = "http://www.w3.org/2001/XMLSchema";

// The file comes from a stranger, and libxml2 compares each attribute of an element with all before
// it: measured, 1.5 seconds for 256 KiB of them, and a minute for four times as much.
constexpr std::size_t kMaxFileSize = std::size_t{256} << 10;
constexpr std::size_t kMaxSchemaSize = std::size_t{4} << 20;

// Without a permission to be huge, libxml2 bounds the depth of nesting itself.
constexpr int kParserOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// Takes the place of libxml2's own report on standard error: the caller says what is wrong.
void ignoreError(void* /*context*/, xmlErrorPtr /*error*/) {}

// Keeps schemas from including others over a network. The loader is one for the whole process, so
// it is put back.
class NoNetwork {
public:
    NoNetwork() : former_(xmlGetExternalEntityLoader()) {
        xmlSetExternalEntityLoader(xmlNoNetExternalEntityLoader);
    }
    NoNetwork(const NoNetwork&) = delete;
    NoNetwork(NoNetwork&&) = delete;
    NoNetwork& operator=(const NoNetwork&) = delete;
    NoNetwork& operator=(NoNetwork&&) = delete;
    ~NoNetwork() { xmlSetExternalEntityLoader(former_); }

private:
    xmlExternalEntityLoader former_;
};

std::string_view text(const xmlChar* characters) {
    return characters != nullptr ? reinterpret_cast<const char*>(characters) : std::string_view();
}

std::string_view namespaceOf(const xmlNode* node) {
    return node->ns != nullptr ? text(node->ns->href) : std::string_view();
}

std::string attributeOf(xmlNode* node, const char* name) {
    const xmlAttr* attribute = xmlHasProp(node, reinterpret_cast<const xmlChar*>(name));
    if (attribute == nullptr || attribute->children == nullptr) {
        return std::string();
    }
    return std::string(text(attribute->children->content));
}

// Entities and default values of attributes can grow to any size from a few lines, so a file that
// declares either ends there.
void stop(void* context) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    parser->wellFormed = 0;
    xmlStopParser(parser);
}

void stopAtEntity(void* context, const xmlChar* /*name*/, int /*type*/, const xmlChar* /*publicId*/,
                  const xmlChar* /*systemId*/, xmlChar* /*content*/) {
    stop(context);
}

void stopAtAttribute(void* context, const xmlChar* /*element*/, const xmlChar* /*name*/,
                     int /*type*/, int /*kind*/, const xmlChar* /*value*/, xmlEnumeration* values) {
    xmlFreeEnumeration(values);
    stop(context);
}

XmlDocumentHandle readDocument(const std::string& file, std::size_t maxSize) {
    const std::optional<std::string> content = pkgvet::readRegularFile(file, maxSize);
    const XmlParserHandle parser(xmlNewParserCtxt());
    if (!content || !parser) {
        return nullptr;
    }
    parser->sax->entityDecl = stopAtEntity;
    parser->sax->attributeDecl = stopAtAttribute;
    return XmlDocumentHandle(xmlCtxtReadMemory(parser.get(), content->data(),
                                               static_cast<int>(content->size()), file.c_str(),
                                               nullptr, kParserOptions));
}

// Whether schema declares an element of the name and namespace of root for use as a root.
bool declares(xmlDoc* schema, const xmlNode* root) {
    xmlNode* top = xmlDocGetRootElement(schema);
    if (namespaceOf(top) != kSchemaNamespace ||
        attributeOf(top, "targetNamespace") != namespaceOf(root)) {
        return false;
    }
    for (xmlNode* child = top->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE && namespaceOf(child) == kSchemaNamespace &&
            text(child->name) == "element" && attributeOf(child, "name") == text(root->name)) {
            return true;
        }
    }
    return false;
}

bool conforms(xmlDoc* document, xmlDoc* schemaDocument) {
    const NoNetwork noNetwork;
    const XmlSchemaParserHandle parser(xmlSchemaNewDocParserCtxt(schemaDocument));
    if (!parser) {
        return false;
    }
    xmlSchemaSetParserStructuredErrors(parser.get(), ignoreError, nullptr);
    const XmlSchemaHandle schema(xmlSchemaParse(parser.get()));
    if (!schema) {
        return false;
    }
    const XmlSchemaValidatorHandle validator(xmlSchemaNewValidCtxt(schema.get()));
    if (!validator) {
        return false;
    }
    xmlSchemaSetValidStructuredErrors(validator.get(), ignoreError, nullptr);
    return xmlSchemaValidateDoc(validator.get(), document) == 0;
}

std::vector<std::string> schemasIn(const fs::path& directory) {
    std::vector<std::string> schemas;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(directory, error)) {
        if (entry.path().extension() == kSchemaSuffix) {
            schemas.push_back(entry.path());
        }
    }
    std::sort(schemas.begin(), schemas.end());
    return schemas;
}

}  // namespace

ParamFileValidator::ParamFileValidator(const fs::path& schemasDirectory)
    : d_ptr(std::make_unique<ParamFileValidatorPrivate>(
          ParamFileValidatorPrivate{schemasIn(schemasDirectory)})) {}

ParamFileValidator::~ParamFileValidator() = default;

fs::path ParamFileValidator::standardSchemasDirectory() {
    return kStandardSchemasDirectory;
}

std::shared_ptr<ParamFileValidator> ParamFileValidator::instance(const fs::path& schemasDirectory) {
    return std::shared_ptr<ParamFileValidator>(new ParamFileValidator(schemasDirectory));
}

// A schema that is not well-formed declares nothing.
bool ParamFileValidator::isValid(const fs::path& file) {
    const XmlDocumentHandle document = readDocument(file, kMaxFileSize);
    if (!document) {
        return false;
    }
    const xmlNode* root = xmlDocGetRootElement(document.get());
    return std::all_of(d_ptr->schemas.begin(), d_ptr->schemas.end(), [&](const std::string& name) {
        const XmlDocumentHandle schema = readDocument(name, kMaxSchemaSize);
        return !schema || !declares(schema.get(), root) || conforms(document.get(), schema.get());
    });
}

}  // namespace ManagedConfiguration::Validator
