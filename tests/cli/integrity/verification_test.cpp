// Digests and signatures, on packages that were really signed.
#include "cli/integrity/verification.h"

#include <gmock/gmock.h>
#include <rpm/rpmpgp.h>
#include <rpm/rpmtag.h>

#include "tests/support/package/package_builder.h"
#include "tests/support/package/signing_key.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class VerificationTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        key_ = new SigningKey;
        otherKey_ = new SigningKey("rsa2048");
    }
    static void TearDownTestSuite() {
        delete key_;
        delete otherKey_;
    }

    std::string signedPackage(const SigningKey& key) {
        const std::string path = PackageBuilder("org.example.app")
                                     .file("/usr/share/org.example.app/x", "x")
                                     .build(directory_);
        key.sign(path);
        return path;
    }

    Verification verified(const std::string& path, const std::vector<std::string>& keys = {}) {
        RpmSession rpm(Keyring{keys});
        const PackageHeader header(path, rpm.transactions());
        return verifyPackage(path, header, !keys.empty(), &rpm);
    }

    std::vector<std::string> lines(const std::string& path,
                                   const std::vector<std::string>& keys = {}) {
        return linesOf(verified(path, keys).findings);
    }

    std::vector<std::string> lines(const CraftedPackage& package,
                                   const std::vector<std::string>& keys = {}) {
        return lines(package.write(directory_), keys);
    }

    static inline SigningKey* key_ = nullptr;
    static inline SigningKey* otherKey_ = nullptr;
    TemporaryDirectory directory_;
};

TEST_F(VerificationTest, HonestPackageIsBoundAndHasNoFinding) {
    const Verification verification = verified(honestPackage().write(directory_));
    EXPECT_THAT(linesOf(verification.findings), IsEmpty());
    EXPECT_TRUE(verification.isPayloadBound);
}

TEST_F(VerificationTest, APayloadThatWasChangedHasAFinding) {
    const CraftedPackage package =
        honestPackage().alterPayloadLate([](std::string* payload) { payload->back() ^= 1; });
    const Verification verification = verified(package.write(directory_));
    EXPECT_FALSE(verification.isPayloadBound);
    EXPECT_THAT(linesOf(verification.findings),
                ElementsAre(HasSubstr("package-digest-wrong: [Payload SHA256 ALT digest]"),
                            HasSubstr("package-digest-wrong: [Payload SHA256 digest] Digest is not "
                                      "right: BAD")));
}

TEST_F(VerificationTest, AHeaderThatWasChangedHasAFinding) {
    CraftedPackage package = honestPackage();
    package.setSignature(RPMSIGTAG_SHA256, rpmText(std::string(64, 'a')));
    EXPECT_THAT(lines(package), ElementsAre(HasSubstr("[Header SHA256 digest] Digest is not "
                                                      "right: BAD")));
    CraftedPackage old = honestPackage();
    old.setSignature(RPMSIGTAG_SHA1, rpmText(std::string(40, 'a')));
    EXPECT_THAT(lines(old), ElementsAre(HasSubstr("[Header SHA1 digest] Digest is not right: "
                                                  "BAD")));
}

TEST_F(VerificationTest, DigestsThatAreMissingHaveFindings) {
    CraftedPackage package = honestPackage();
    package.removeSignature(RPMSIGTAG_SHA256)
        .removeSignature(RPMSIGTAG_SHA1)
        .removeSignature(RPMSIGTAG_MD5);
    EXPECT_THAT(lines(package), Contains("package-digest-missing: [Header SHA256 digest] Digest is "
                                         "missing"));
}

// As packages of rpm before 4.14 have it: the payload is bound, but by MD5.
TEST_F(VerificationTest, WithoutADigestOfThePayloadMd5IsCheckedAndIsTooWeak) {
    CraftedPackage package = honestPackage();
    package.remove(RPMTAG_PAYLOADDIGEST)
        .remove(RPMTAG_PAYLOADDIGESTALGO)
        .remove(RPMTAG_PAYLOADDIGESTALT);
    const Verification verification = verified(package.write(directory_));
    EXPECT_THAT(linesOf(verification.findings), IsEmpty());
    EXPECT_FALSE(verification.isPayloadBound);
    package.setSignature(RPMSIGTAG_MD5, rpmBinary(std::string(16, 'a')));
    EXPECT_THAT(lines(package), ElementsAre(HasSubstr("[MD5 digest] Digest is not right: BAD")));
}

TEST_F(VerificationTest, SignatureIsARemarkWithoutKeys) {
    EXPECT_THAT(lines(signedPackage(*key_)),
                ElementsAre(MatchesRegex("signature-not-checked: \\[Header V4 .* Signature, key ID "
                                         "[0-9a-f]+\\] Signature was not checked: NOKEY")));
}

TEST_F(VerificationTest, SignatureOfAKeyOfTheKeyringIsGood) {
    EXPECT_THAT(lines(signedPackage(*key_), {key_->publicKey(false)}), IsEmpty());
    EXPECT_THAT(
        lines(signedPackage(*otherKey_), {key_->publicKey(false), otherKey_->publicKey(false)}),
        IsEmpty());
}

TEST_F(VerificationTest, SignatureOfAnotherKeyIsAFinding) {
    EXPECT_THAT(lines(signedPackage(*otherKey_), {key_->publicKey(false)}),
                ElementsAre(MatchesRegex("signature-not-good: \\[Header V4 .*\\] Signature is not "
                                         "one of the keyring's: NOKEY")));
}

TEST_F(VerificationTest, UnsignedPackageIsAFindingWithKeys) {
    EXPECT_THAT(lines(honestPackage(), {key_->publicKey(false)}),
                ElementsAre("package-not-signed: Package is not signed"));
}

// The signature is on the header, whose digest of the payload is no longer right.
TEST_F(VerificationTest, SignatureDoesNotMakeUpForAPayloadThatWasChanged) {
    const std::string path = signedPackage(*key_);
    std::string bytes = readFile(path);
    bytes.back() ^= 1;
    writeFile(path, bytes);
    EXPECT_THAT(lines(path, {key_->publicKey(false)}),
                ElementsAre(HasSubstr("package-digest-wrong: [Payload SHA256 ALT digest]"),
                            HasSubstr("package-digest-wrong: [Payload SHA256 digest]")));
}

}  // namespace
