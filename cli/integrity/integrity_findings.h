// What the program's own rules report through.
#pragma once

#include <initializer_list>
#include <map>
#include <string_view>
#include <vector>

#include "cli/model/model.h"
#include "pkgvet/report/message.h"

namespace pkgvet::cli {

// What fills the places of a message, in their order.
using Texts = std::initializer_list<std::string_view>;

// The finding of the catalogue's entry that has this message, which must be one of its chapter
// "Package integrity".
Finding integrityFinding(const Message& message, Texts texts = {});

// Gathers findings of the rules on a package's integrity, in the order in which they were found.
// Of those of one kind the first hundred are kept, and one line tells of the others: what there is
// to say about a hostile package has a bound.
class IntegrityFindings {
public:
    void add(const Message& message, Texts texts = {});

    // All findings since the last call, which are handed over.
    std::vector<Finding> take();

private:
    std::vector<Finding> findings_;
    std::map<const Message*, std::size_t> counts_;
};

}  // namespace pkgvet::cli
