// Headers of RPM files, byte by byte.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// What a tag has: elements of one type, as bytes in network order. The types are librpm's; any
// combination of the three can be written.
struct RpmValue {
    std::uint32_t type;
    std::uint32_t count;
    std::string bytes;
};

RpmValue rpmInt16(const std::vector<std::uint16_t>& numbers);
RpmValue rpmInt32(const std::vector<std::uint32_t>& numbers);
RpmValue rpmInt64(const std::vector<std::uint64_t>& numbers);
RpmValue rpmText(const std::string& text);
RpmValue rpmTexts(const std::vector<std::string>& texts);
RpmValue rpmI18nText(const std::string& text);
RpmValue rpmBinary(const std::string& bytes);

// A header, either the main one or that of the signatures. Its tags are written in ascending
// order, below a region of the kind that librpm demands.
class RpmHeader {
public:
    // Gives tag this one value.
    RpmHeader& set(std::uint32_t tag, const RpmValue& value);
    // The same beside those that it has.
    RpmHeader& add(std::uint32_t tag, const RpmValue& value);
    RpmHeader& remove(std::uint32_t tag);

    // regionTag is RPMTAG_HEADERIMMUTABLE or RPMTAG_HEADERSIGNATURES.
    std::string bytes(std::uint32_t regionTag) const;

private:
    std::multimap<std::uint32_t, RpmValue> values_;
};
