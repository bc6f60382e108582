// librpm as the front end uses it.
#pragma once

#include <string>
#include <vector>

#include "cli/integrity/keyring.h"

using rpmts = struct rpmts_s*;

namespace pkgvet::cli {

// Owns a transaction set that reads packages whoever signed them. No configuration of librpm's is
// read, neither the machine's nor the user's, and no database of keys is opened: what a package is
// does not depend on where it is judged.
//
// What librpm has to say is kept from the user and can be asked for. There is one in a process, as
// librpm's state is the process's.
class RpmSession {
public:
    // Knows the keys of keyring and no others.
    explicit RpmSession(const Keyring& keyring = {});
    RpmSession(const RpmSession&) = delete;
    RpmSession(RpmSession&&) = delete;
    RpmSession& operator=(const RpmSession&) = delete;
    RpmSession& operator=(RpmSession&&) = delete;
    ~RpmSession();

    rpmts transactions() const { return transactions_; }

    // librpm's messages since the last call, without their line feeds.
    std::vector<std::string> takeMessages();
    // The last one of them; empty when there was none.
    std::string takeMessage();

private:
    rpmts transactions_;
    std::vector<std::string> messages_;
};

}  // namespace pkgvet::cli
