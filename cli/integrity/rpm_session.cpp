// Sets librpm up and keeps it quiet.
#include "cli/integrity/rpm_session.h"

#include <rpm/rpmcrypto.h>
#include <rpm/rpmkeyring.h>
#include <rpm/rpmlog.h>
#include <rpm/rpmts.h>

#include <utility>

#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

namespace {

using KeyringHandle = CHandle<rpmKeyring_s, rpmKeyringFree>;
using KeyHandle = CHandle<rpmPubkey_s, rpmPubkeyFree>;

// Neither shown by librpm nor cause for it to end the process.
constexpr int kHandled = 0;

// A hostile package can draw as many as it has bytes.
constexpr std::size_t kMostMessages = 1000;

int keepMessage(rpmlogRec record, rpmlogCallbackData data) {
    auto* const messages = static_cast<std::vector<std::string>*>(data);
    if (messages->size() == kMostMessages) {
        messages->pop_back();
    }
    std::string message = rpmlogRecMessage(record);
    while (message.ends_with('\n')) {
        message.pop_back();
    }
    messages->push_back(std::move(message));
    return kHandled;
}

// A key and its subkeys, of which each may have signed.
void addKey(const std::string& bytes, rpmKeyring keyring) {
    const KeyHandle key(
        rpmPubkeyNew(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
    if (!key) {
        return;
    }
    rpmKeyringAddKey(keyring, key.get());
    int count = 0;
    rpmPubkey* const subkeys = rpmGetSubkeys(key.get(), &count);
    for (int i = 0; i < count; ++i) {
        rpmKeyringAddKey(keyring, subkeys[i]);
        rpmPubkeyFree(subkeys[i]);
    }
    free(subkeys);
}

}  // namespace

RpmSession::RpmSession(const Keyring& keyring) {
    rpmlogSetCallback(keepMessage, &messages_);
    rpmInitCrypto();
    transactions_ = rpmtsCreate();
    rpmtsSetVfyLevel(transactions_, 0);
    const KeyringHandle keys(rpmKeyringNew());
    for (const std::string& key : keyring.keys) {
        addKey(key, keys.get());
    }
    rpmtsSetKeyring(transactions_, keys.get());
}

RpmSession::~RpmSession() {
    rpmtsFree(transactions_);
    rpmFreeCrypto();
    rpmlogSetCallback(nullptr, nullptr);
}

std::vector<std::string> RpmSession::takeMessages() {
    return std::exchange(messages_, {});
}

std::string RpmSession::takeMessage() {
    const std::vector<std::string> messages = takeMessages();
    return messages.empty() ? std::string() : messages.back();
}

}  // namespace pkgvet::cli
