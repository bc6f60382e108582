// Has librpm verify packages.
#include "cli/integrity/verification.h"

#include <rpm/rpmcli.h>
#include <rpm/rpmio.h>
#include <rpm/rpmlog.h>
#include <rpm/rpmts.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <type_traits>
#include <vector>

#include "cli/base/text.h"
#include "cli/catalogue/integrity_messages.h"
#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

namespace {

using RpmFileHandle = CHandle<std::remove_pointer_t<FD_t>, Fclose>;

constexpr const char* kOpenMode = "r.ufdio";

// How librpm's lines on digests and signatures begin, and what stands between name and answer.
constexpr std::string_view kIndent = "    ";
constexpr std::string_view kSeparator = ": ";
constexpr std::string_view kSignature = "ignature";
constexpr std::string_view kPayload = "Payload";
constexpr std::string_view kGood = "OK";
constexpr std::string_view kMissing = "NOTFOUND";

// For which two packages with one digest can be made.
constexpr std::array<std::string_view, 2> kWeakDigests = {"MD5", "SHA1"};

// One line, such as "Payload SHA256 digest: OK".
struct Item {
    std::string_view name;
    std::string_view answer;

    bool isSignature() const { return name.find(kSignature) != std::string_view::npos; }
    bool isGood() const { return answer == kGood; }
    bool isMissing() const { return answer == kMissing; }
    // A signature that is not there is one of several kinds, of which no package has all.
    bool isWrong() const { return !isGood() && !(isSignature() && isMissing()); }
    bool bindsPayload() const {
        return isGood() && !isSignature() && name.starts_with(kPayload) &&
               std::none_of(kWeakDigests.begin(), kWeakDigests.end(),
                            [this](std::string_view weak) {
                                return name.find(weak) != std::string_view::npos;
                            });
    }
};

// The lines that librpm indents.
std::vector<Item> itemsOf(const std::vector<std::string>& messages) {
    std::vector<Item> items;
    for (const std::string_view message : messages) {
        const std::size_t separator = message.find(kSeparator);
        if (message.starts_with(kIndent) && separator != std::string_view::npos) {
            items.push_back({message.substr(kIndent.size(), separator - kIndent.size()),
                             message.substr(separator + kSeparator.size())});
        }
    }
    return items;
}

// MD5 takes three times as long as all else together. It is left out where a digest of the payload
// that nobody can forge stands in the header.
rpmVSFlags flagsFor(const PackageHeader& header) {
    return header.has(RPMTAG_PAYLOADDIGEST) ? RPMVSF_NOMD5 : RPMVSF_DEFAULT;
}

// Whether librpm has no objection. It tells of each digest and signature only when it is talkative.
bool isVerified(const std::string& path, rpmVSFlags flags, int level, rpmts transactions) {
    const RpmFileHandle file(Fopen(path.c_str(), kOpenMode));
    rpmQVKArguments_s arguments{};
    const rpmVSFlags formerFlags = rpmtsSetVfyFlags(transactions, flags);
    const int formerLevel = rpmtsSetVfyLevel(transactions, level);
    const int formerVerbosity = rpmlogSetMask(RPMLOG_UPTO(RPMLOG_INFO));
    const int result = rpmVerifySignatures(&arguments, transactions, file.get(), path.c_str());
    rpmlogSetMask(formerVerbosity);
    rpmtsSetVfyLevel(transactions, formerLevel);
    rpmtsSetVfyFlags(transactions, formerFlags);
    return result == 0;
}

// Where a digest is wrong, librpm asks for others that the package does without.
void judgeDigests(const std::vector<Item>& digests, IntegrityFindings* findings) {
    const bool anyWrong = std::any_of(digests.begin(), digests.end(), [](const Item& digest) {
        return !digest.isGood() && !digest.isMissing();
    });
    for (const Item& digest : digests) {
        if (digest.isMissing() && !anyWrong) {
            findings->add(kPackageDigestMissing, {digest.name});
        } else if (!digest.isMissing() && !digest.isGood()) {
            findings->add(kPackageDigestWrong, {digest.name, digest.answer});
        }
    }
}

void judgeSignatures(const std::vector<Item>& signatures, bool wantsSignature,
                     IntegrityFindings* findings) {
    for (const Item& signature : signatures) {
        if (!wantsSignature) {
            findings->add(kSignatureRemark, {signature.name, signature.answer});
        } else if (!signature.isGood()) {
            findings->add(kSignatureNotGood, {signature.name, signature.answer});
        }
    }
    if (wantsSignature && signatures.empty()) {
        findings->add(kNotSigned);
    }
}

}  // namespace

Verification verifyPackage(const std::string& path, const PackageHeader& header,
                           bool wantsSignature, RpmSession* rpm) {
    const int level = wantsSignature ? RPMSIG_VERIFIABLE_TYPE : RPMSIG_DIGEST_TYPE;
    rpm->takeMessages();
    const bool isGood = isVerified(path, flagsFor(header), level, rpm->transactions());
    const std::vector<std::string> messages = rpm->takeMessages();
    IntegrityFindings findings;
    Verification verification;
    std::vector<Item> digests;
    std::vector<Item> signatures;
    bool isExplained = false;
    for (const Item& item : itemsOf(messages)) {
        verification.isPayloadBound = verification.isPayloadBound || item.bindsPayload();
        isExplained = isExplained || item.isWrong();
        if (!item.isSignature()) {
            digests.push_back(item);
        } else if (!item.isMissing()) {
            signatures.push_back(item);
        }
    }
    judgeDigests(digests, &findings);
    judgeSignatures(signatures, wantsSignature, &findings);
    // librpm also wants to be sure that header and payload are bound by what it did find.
    if (!isGood && !isExplained && !(wantsSignature && signatures.empty())) {
        findings.add(kNotVerified, {joined(messages, ";")});
    }
    verification.findings = findings.take();
    return verification;
}

}  // namespace pkgvet::cli
