#include <rpm/rpmtag.h>

#include "tests/support/base/joined_tables.h"
#include "tests/support/hostile/lies.h"
#include "tests/support/package/accepted_package.h"

namespace {

const std::vector<Lie> kDigests = {
    {"the digest of the payload is wrong",
     [](CraftedPackage* package) {
         package->set(RPMTAG_PAYLOADDIGEST, rpmTexts({std::string(64, '0')}));
     },
     {"package-digest-wrong"}},
    {"the payload was changed afterwards",
     [](CraftedPackage* package) {
         // A byte of the header of gzip that says on what machine it was made.
         package->alterPayloadLate([](std::string* payload) { (*payload)[9] ^= 1; });
     },
     {"package-digest-wrong"}},
    {"there are bytes behind the payload",
     [](CraftedPackage* package) {
         package->alterPayloadLate([](std::string* payload) { payload->append("evil"); });
     },
     {"package-digest-wrong"}},
    {"the digest of the header is wrong",
     [](CraftedPackage* package) {
         package->setSignature(RPMSIGTAG_SHA256, rpmText(std::string(64, '0')));
     },
     {"package-digest-wrong"}},
    {"the old digest of the header is wrong",
     [](CraftedPackage* package) {
         package->setSignature(RPMSIGTAG_SHA1, rpmText(std::string(40, '0')));
     },
     {"package-digest-wrong"}},
    {"the digest is wrong that packages had before there was one of the payload",
     [](CraftedPackage* package) {
         package->setSignature(RPMSIGTAG_MD5, rpmBinary(std::string(16, '0')));
         package->remove(RPMTAG_PAYLOADDIGEST).remove(RPMTAG_PAYLOADDIGESTALT);
         package->remove(RPMTAG_PAYLOADDIGESTALGO);
     },
     {"package-digest-wrong"}},
    {"there is no digest of the header",
     [](CraftedPackage* package) {
         package->removeSignature(RPMSIGTAG_SHA256).removeSignature(RPMSIGTAG_SHA1);
     },
     {"package-digest-missing"}},
    {"there is no digest at all",
     [](CraftedPackage* package) {
         package->removeSignature(RPMSIGTAG_SHA256).removeSignature(RPMSIGTAG_SHA1);
         package->removeSignature(RPMSIGTAG_MD5).remove(RPMTAG_PAYLOADDIGEST);
         package->remove(RPMTAG_PAYLOADDIGESTALT).remove(RPMTAG_PAYLOADDIGESTALGO);
     },
     {"package-digest-missing"}},
};

}  // namespace

std::vector<Lie> liesInDigests() {
    return kDigests;
}

std::vector<Lie> allLies() {
    return joined<Lie>(
        {liesOfTheHeader(), liesInTags(), liesAboutFiles(), liesOfTheArchive(), liesInDigests()});
}
