// Sets librpm up and keeps it quiet.
#include "cli/judge/rpm_session.h"

#include <rpm/rpmcrypto.h>
#include <rpm/rpmkeyring.h>
#include <rpm/rpmlog.h>
#include <rpm/rpmts.h>

#include <utility>

#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

namespace {

using KeyringHandle = CHandle<rpmKeyring_s, rpmKeyringFree>;

// Neither shown by librpm nor cause for it to end the process.
constexpr int kHandled = 0;

int keepMessage(rpmlogRec record, rpmlogCallbackData data) {
    *static_cast<std::string*>(data) = rpmlogRecMessage(record);
    return kHandled;
}

}  // namespace

RpmSession::RpmSession() {
    rpmlogSetCallback(keepMessage, &message_);
    rpmInitCrypto();
    transactions_ = rpmtsCreate();
    rpmtsSetVfyLevel(transactions_, 0);
    const KeyringHandle noKeys(rpmKeyringNew());
    rpmtsSetKeyring(transactions_, noKeys.get());
}

RpmSession::~RpmSession() {
    rpmtsFree(transactions_);
    rpmFreeCrypto();
    rpmlogSetCallback(nullptr, nullptr);
}

std::string RpmSession::takeMessage() {
    std::string message = std::exchange(message_, std::string());
    while (message.ends_with('\n')) {
        message.pop_back();
    }
    return message;
}

}  // namespace pkgvet::cli
