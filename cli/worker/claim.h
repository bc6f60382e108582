// How a run recognises what an earlier one that was killed has left.
#pragma once

#include <string>
#include <string_view>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// The name of a directory that a run makes and claims, behind the directory where it does so.
inline constexpr const char kDirectoryTemplate[] = "/pkgvet.XXXXXX";

// A mark in a directory that was made for one package, and a lock on it that ends with the last
// process that holds it, however that ends.
class Claim {
public:
    Claim() = default;
    // Marks directory, which has to be new and this user's own, as one of a run, together with
    // companion, another one or empty.
    Claim(const std::string& directory, const std::string& companion);

    // Holds a directory that another process of this run has claimed.
    static Claim shared(const std::string& directory);

    // Whether the directory bears the mark: one without would never be cleared.
    bool isMarked() const { return isMarked_; }

private:
    Descriptor lock_;
    bool isMarked_ = false;
};

// A directory that was made to be claimed.
struct ClaimedDirectory {
    std::string path;  // empty, with errno, when there is none to be had
    Claim claim;
};

// A new directory by pathTemplate, which ends as kDirectoryTemplate does, claimed together with
// companion. A run that is killed before the mark is made leaves it empty.
ClaimedDirectory makeClaimed(const std::string& pathTemplate, const std::string& companion);

// Removes it again as long as there is nothing in it but the mark; errno stays as it is.
void discard(const ClaimedDirectory& directory);

// Removes a directory that was claimed and its companion, of which either may be empty, as far as
// that is possible. The mark goes last: whenever this is broken off, a later run knows what is
// left.
void removeClaimed(const std::string& directory, const std::string& companion);

// Removes each directory in parent, with its companion, of which it is certain that a run left it:
// the name is of the form that runs give, it belongs to this user or, for the superuser, to the
// one that judges are, nobody else may write to it, it bears the mark or was made to bear it and
// holds nothing, and nobody holds it. No link is followed. Where others may move directories in
// parent, nothing is removed.
void clearAbandoned(const std::string& parent);

// Whether path can be one that mkdtemp or the program made by the template.
bool isMadeBy(std::string_view pathTemplate, std::string_view path);

}  // namespace pkgvet::cli
