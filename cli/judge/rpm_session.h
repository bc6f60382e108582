// librpm as the front end uses it.
#pragma once

#include <string>

using rpmts = struct rpmts_s*;

namespace pkgvet::cli {

// Reads librpm's configuration and owns a transaction set that judges packages whoever signed them.
// What librpm has to say is kept from the user and can be asked for. There is one in a process, as
// librpm's state is the process's.
class RpmSession {
public:
    RpmSession();
    RpmSession(const RpmSession&) = delete;
    RpmSession(RpmSession&&) = delete;
    RpmSession& operator=(const RpmSession&) = delete;
    RpmSession& operator=(RpmSession&&) = delete;
    ~RpmSession();

    rpmts transactions() const { return transactions_; }

    // librpm's last message since the last call, without its line feed; empty when there was none.
    std::string takeMessage();

private:
    rpmts transactions_;
    std::string message_;
};

}  // namespace pkgvet::cli
