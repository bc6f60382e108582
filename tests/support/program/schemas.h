// Documents held against their schemas by independent tools.
#pragma once

#include <string>
#include <vector>

// What is wrong with the JSON documents, or nothing. schema is a path in the source tree.
std::string jsonFaults(const std::string& schema, const std::vector<std::string>& documents);

// The same for an XML document and an XML Schema.
std::string xmlFaults(const std::string& schema, const std::string& document);
