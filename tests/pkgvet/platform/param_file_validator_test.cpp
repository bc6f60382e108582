// The layer that stands in for the platform's validator of managed configuration.
#include "pkgvet/platform/param_file_validator.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using ManagedConfiguration::Validator::ParamFileValidator;

// A schema in which the element name, in a namespace or none, holds a number.
std::string schemaFor(const std::string& name, const std::string& space = "") {
    const std::string target = space.empty() ? "" : " targetNamespace='" + space + "'";
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'" + target +
           "><xs:element name='" + name + "' type='xs:int'/></xs:schema>";
}

class ParamFile : public testing::Test {
protected:
    void addSchema(const std::string& name, const std::string& content) {
        directory_.write("schemas/" + name, content);
    }

    // Says nothing, whatever the answer.
    bool isValid(const std::string& content) {
        return isValidFile(directory_.write("configuration.xml", content));
    }

    bool isValidFile(const std::string& file) {
        const CapturedDescriptor descriptor;
        const bool valid = ParamFileValidator::instance(directory_ / "schemas")->isValid(file);
        EXPECT_EQ(descriptor.text(), "");
        return valid;
    }

    TemporaryDirectory directory_;
};

TEST_F(ParamFile, WithoutSchemasItHasToBeWellFormed) {
    EXPECT_TRUE(isValid("<a/>"));
    EXPECT_TRUE(isValid("<?xml version='1.0' encoding='ISO-8859-1'?><a b='c'>\xE4</a>"));
    EXPECT_TRUE(isValid("<!DOCTYPE a><a>&amp;&#65;</a>"));
    for (const char* text : {"", " ", "text", "<a>", "<a></b>", "<a/><a/>", "<a b=c/>",
                             "<a>\xE4</a>", "<a>&b;</a>", "{\"a\": 1}"}) {
        EXPECT_FALSE(isValid(text)) << text;
    }
}

TEST_F(ParamFile, SchemaThatDeclaresTheRootDecides) {
    addSchema("number.xsd", schemaFor("number"));
    EXPECT_TRUE(isValid("<number>1</number>"));
    EXPECT_FALSE(isValid("<number>one</number>"));
    EXPECT_FALSE(isValid("<number/>"));
    EXPECT_TRUE(isValid("<other>one</other>"));
}

TEST_F(ParamFile, NamespaceOfTheRootHasToMatch) {
    addSchema("number.xsd", schemaFor("number", "urn:a"));
    EXPECT_TRUE(isValid("<number>one</number>"));
    EXPECT_TRUE(isValid("<number xmlns='urn:b'>one</number>"));
    EXPECT_FALSE(isValid("<number xmlns='urn:a'>one</number>"));
    EXPECT_TRUE(isValid("<p:number xmlns:p='urn:a'>1</p:number>"));
}

TEST_F(ParamFile, EachSchemaOfTheRootHasToAgree) {
    addSchema("a.xsd", schemaFor("number"));
    addSchema("b.xsd",
              "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
              "<xs:element name='number' type='xs:boolean'/></xs:schema>");
    EXPECT_TRUE(isValid("<number>1</number>"));
    EXPECT_FALSE(isValid("<number>2</number>"));
    EXPECT_FALSE(isValid("<number>true</number>"));
}

TEST_F(ParamFile, OtherFilesOfTheDirectoryAreNoSchemas) {
    addSchema("number.xml", schemaFor("number"));
    addSchema("broken.xsd", "<xs:schema");
    addSchema("other.xsd", "<schema><element name='number'/></schema>");
    addSchema("nested.xsd",
              "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:group name='g'>"
              "<xs:sequence><xs:element name='number' type='xs:int'/></xs:sequence></xs:group>"
              "</xs:schema>");
    EXPECT_TRUE(isValid("<number>one</number>"));
}

TEST_F(ParamFile, SchemaThatIsBrokenAdmitsNothing) {
    addSchema("number.xsd",
              "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
              "<xs:element name='number' type='missing'/></xs:schema>");
    EXPECT_FALSE(isValid("<number>1</number>"));
    EXPECT_TRUE(isValid("<other/>"));
}

TEST_F(ParamFile, SchemasMayIncludeTheirNeighboursOnly) {
    addSchema("types.part",
              "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
              "<xs:simpleType name='t'><xs:restriction base='xs:int'/></xs:simpleType>"
              "</xs:schema>");
    addSchema("number.xsd",
              "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
              "<xs:include schemaLocation='types.part'/><xs:element name='number' type='t'/>"
              "</xs:schema>");
    EXPECT_TRUE(isValid("<number>1</number>"));
    EXPECT_FALSE(isValid("<number>one</number>"));
}

// Neither the file nor what it names is read; the answer is about the file alone.
TEST_F(ParamFile, FileCannotBringASchemaOfItsOwn) {
    addSchema("number.xsd", schemaFor("number"));
    directory_.write("any.xsd", schemaFor("other"));
    EXPECT_TRUE(
        isValid("<other xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                "xsi:noNamespaceSchemaLocation='any.xsd'>one</other>"));
}

TEST_F(ParamFile, NoEntityIsExpanded) {
    EXPECT_FALSE(isValid("<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>"));
    EXPECT_FALSE(isValid("<!DOCTYPE a [<!ENTITY b SYSTEM '/etc/passwd'>]><a>&b;</a>"));
    EXPECT_FALSE(isValid("<!DOCTYPE a [<!ENTITY % b SYSTEM '/etc/passwd'>%b;]><a/>"));
    EXPECT_FALSE(isValid("<!DOCTYPE a [<!ATTLIST a b CDATA 'c'>]><a/>"));
    std::string bomb = "<!DOCTYPE a [<!ENTITY e0 'boom'>";
    for (int i = 1; i < 30; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY e" + std::to_string(i) + " '" + inner + inner + "'>";
    }
    EXPECT_FALSE(isValid(bomb + "]><a b='&e29;'>&e29;</a>"));
}

TEST_F(ParamFile, SizeAndDepthAreBounded) {
    const auto nested = [](std::size_t depth) {
        std::string text;
        for (std::size_t i = 0; i < depth; ++i) {
            text += "<a>";
        }
        for (std::size_t i = 0; i < depth; ++i) {
            text += "</a>";
        }
        return text;
    };
    EXPECT_TRUE(isValid(nested(200)));
    EXPECT_FALSE(isValid(nested(30000)));
    EXPECT_TRUE(isValid("<a>" + std::string(256 * 1024 - 7, ' ') + "</a>"));
    EXPECT_FALSE(isValid("<a>" + std::string(256 * 1024 - 6, ' ') + "</a>"));
}

TEST_F(ParamFile, WhatIsNoRegularFileIsInvalid) {
    ASSERT_EQ(mkfifo((directory_ / "fifo").c_str(), 0600), 0);
    for (const std::string& path : {directory_ / "missing", directory_ / "fifo",
                                    std::string(directory_.path()), std::string("/dev/zero")}) {
        EXPECT_FALSE(isValidFile(path)) << path;
    }
}

TEST(ParamFileValidator, StandardDirectoryIsAbsolute) {
    EXPECT_TRUE(ParamFileValidator::standardSchemasDirectory().is_absolute());
}

}  // namespace
