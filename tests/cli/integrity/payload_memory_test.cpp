// Whether a payload ends for want of memory.
#include "cli/integrity/payload_memory.h"

#include <gtest/gtest.h>
#include <rpm/rpmtag.h>

#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;

bool isShort(const std::string& path) {
    RpmSession rpm;
    return isShortOfMemory(path, &rpm);
}

TEST(PayloadMemory, WholePayloadIsReadToItsEnd) {
    const TemporaryDirectory directory;
    for (const char* compressor : {"gzip", "xz", "zstd", "bzip2"}) {
        EXPECT_FALSE(isShort(honestPackage().compressor(compressor).write(directory)))
            << compressor;
    }
}

TEST(PayloadMemory, OtherFaultsAreNotForWantOfMemory) {
    const TemporaryDirectory directory;
    EXPECT_FALSE(isShort(directory / "missing.rpm"));
    EXPECT_FALSE(isShort(directory.write("empty.rpm", "")));
    CraftedPackage cut = honestPackage();
    cut.alterPayload([](std::string* payload) { payload->resize(payload->size() / 2); });
    EXPECT_FALSE(isShort(cut.write(directory)));
    CraftedPackage unknown = honestPackage();
    unknown.set(RPMTAG_PAYLOADCOMPRESSOR, rpmText("unheard-of"));
    EXPECT_FALSE(isShort(unknown.write(directory)));
}

}  // namespace
