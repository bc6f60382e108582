// The members of an object that somebody else may have written.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

// What is wrong with the value at a place, see json_place.h. Thrown by whoever reads it.
struct FieldFault {
    std::string place;
    std::string cause;
};

// One object of a record. What is asked for and not there, or not as it should be, is a FieldFault.
// Members that nobody asks for are of no interest: later versions add some.
class Fields {
public:
    // object must outlive the fields. place is its own.
    Fields(const nlohmann::json& object, std::string place);

    bool has(const char* name) const;
    std::string text(const char* name) const;
    // A text that writers put down as null where it is empty, with the exact bytes where the member
    // with "_escaped" has them.
    std::string bytes(const char* name) const;
    // The same of a text that may be absent, which null says here.
    std::optional<std::string> bytesOrNone(const char* name) const;
    bool flag(const char* name) const;
    std::uint64_t number(const char* name, std::uint64_t least, std::uint64_t most) const;
    double seconds(const char* name) const;
    // SHA-256 in hexadecimal, or null, for which the text is empty.
    std::string digest(const char* name) const;
    // The place of the member's word in words.
    std::size_t word(const char* name, std::span<const std::string_view> words) const;

    Fields object(const char* name) const;
    std::vector<Fields> objects(const char* name) const;
    // The member, which is an array.
    const nlohmann::json& array(const char* name) const;

    [[noreturn]] void refuse(const char* name, std::string_view cause) const;
    void require(bool isRight, const char* name, std::string_view cause) const;

private:
    const nlohmann::json& member(const char* name) const;
    std::string placeOf(const char* name) const;

    const nlohmann::json* object_;
    std::string place_;
};

// Whether text is a SHA-256 in hexadecimal.
bool isDigest(std::string_view text);

}  // namespace pkgvet::cli
