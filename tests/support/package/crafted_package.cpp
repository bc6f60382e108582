#include "tests/support/package/crafted_package.h"

#include <rpm/rpmds.h>
#include <rpm/rpmfiles.h>
#include <rpm/rpmpgp.h>
#include <rpm/rpmtag.h>

#include <algorithm>
#include <numeric>

namespace {

constexpr const char* kVersion = "1.0";
constexpr const char* kRelease = "1";
constexpr std::uint32_t kTime = 1'700'000'000;

// Features of rpm that a package says it needs.
struct Feature {
    const char* name;
    const char* version;
};

constexpr Feature kFeatures[] = {
    {"rpmlib(CompressedFileNames)", "3.0.4-1"},
    {"rpmlib(FileDigests)", "4.6.0-1"},
    {"rpmlib(PayloadFilesHavePrefix)", "4.0-1"},
};

struct CompressorFeature {
    const char* compressor;
    Feature feature;
};

constexpr CompressorFeature kCompressorFeatures[] = {
    {"bzip2", {"rpmlib(PayloadIsBzip2)", "3.0.5-1"}},
    {"lzma", {"rpmlib(PayloadIsLzma)", "4.4.6-1"}},
    {"xz", {"rpmlib(PayloadIsXz)", "5.2-1"}},
    {"zstd", {"rpmlib(PayloadIsZstd)", "5.4.18-1"}},
};

constexpr Feature kCapabilitiesFeature = {"rpmlib(FileCaps)", "4.6.1-1"};
constexpr Feature kHardLinksFeature = {"rpmlib(PartialHardlinkSets)", "4.0.4-1"};

bool isAt(const PackedFile& file, const std::string& path) {
    return file.path == path;
}

void putInPlace(std::vector<PackedFile>* files, const PackedFile& file) {
    const auto old = std::find_if(files->begin(), files->end(), [&file](const PackedFile& other) {
        return isAt(other, file.path);
    });
    if (old == files->end()) {
        files->push_back(file);
    } else {
        *old = file;
    }
}

void takeOut(std::vector<PackedFile>* files, const std::string& path) {
    std::erase_if(*files, [&path](const PackedFile& file) { return isAt(file, path); });
}

void introduce(const std::string& name, RpmHeader* header) {
    header->set(RPMTAG_HEADERI18NTABLE, rpmTexts({"C"}));
    header->set(RPMTAG_NAME, rpmText(name));
    header->set(RPMTAG_VERSION, rpmText(kVersion));
    header->set(RPMTAG_RELEASE, rpmText(kRelease));
    header->set(RPMTAG_SUMMARY, rpmI18nText("A package under test"));
    header->set(RPMTAG_DESCRIPTION, rpmI18nText("A package under test"));
    header->set(RPMTAG_BUILDTIME, rpmInt32({kTime}));
    header->set(RPMTAG_BUILDHOST, rpmText("localhost"));
    header->set(RPMTAG_LICENSE, rpmText("MIT"));
    header->set(RPMTAG_GROUP, rpmI18nText("Unspecified"));
    header->set(RPMTAG_OS, rpmText("linux"));
    header->set(RPMTAG_ARCH, rpmText("noarch"));
    header->set(RPMTAG_SOURCERPM, rpmText(name + "-" + kVersion + "-" + kRelease + ".src.rpm"));
    header->set(RPMTAG_RPMVERSION, rpmText("4.18.0"));
    header->set(RPMTAG_PLATFORM, rpmText("noarch-unknown-linux"));
    header->set(RPMTAG_ENCODING, rpmText("utf-8"));
    header->set(RPMTAG_PROVIDENAME, rpmTexts({name}));
    header->set(RPMTAG_PROVIDEFLAGS, rpmInt32({RPMSENSE_EQUAL}));
    header->set(RPMTAG_PROVIDEVERSION, rpmTexts({std::string(kVersion) + "-" + kRelease}));
}

void require(const std::vector<Feature>& features, const std::vector<std::string>& others,
             RpmHeader* header) {
    std::vector<std::string> names = others;
    std::vector<std::string> versions(others.size());
    std::vector<std::uint32_t> flags(others.size());
    for (const Feature& feature : features) {
        names.emplace_back(feature.name);
        versions.emplace_back(feature.version);
        flags.push_back(RPMSENSE_RPMLIB | RPMSENSE_LESS | RPMSENSE_EQUAL);
    }
    header->set(RPMTAG_REQUIRENAME, rpmTexts(names));
    header->set(RPMTAG_REQUIREVERSION, rpmTexts(versions));
    header->set(RPMTAG_REQUIREFLAGS, rpmInt32(flags));
}

}  // namespace

CraftedPackage::CraftedPackage(const std::string& name)
    : name_(name),
      lead_(rpmLead(name + "-" + kVersion + "-" + kRelease)),
      digestAlgorithm_(PGPHASHALGO_SHA256) {}

CraftedPackage& CraftedPackage::file(const PackedFile& file) {
    list(file);
    return (file.flags & RPMFILE_GHOST) != 0 ? *this : pack(file);
}

CraftedPackage& CraftedPackage::list(const PackedFile& file) {
    putInPlace(&listed_, file);
    return *this;
}

CraftedPackage& CraftedPackage::pack(const PackedFile& file) {
    putInPlace(&packed_, file);
    return *this;
}

CraftedPackage& CraftedPackage::unlist(const std::string& path) {
    takeOut(&listed_, path);
    return *this;
}

CraftedPackage& CraftedPackage::unpack(const std::string& path) {
    takeOut(&packed_, path);
    return *this;
}

CraftedPackage& CraftedPackage::requirement(const std::string& name) {
    requirements_.push_back(name);
    return *this;
}

CraftedPackage& CraftedPackage::set(std::uint32_t tag, const RpmValue& value) {
    changes_.push_back({tag, value});
    return *this;
}

CraftedPackage& CraftedPackage::add(std::uint32_t tag, const RpmValue& value) {
    changes_.push_back({tag, value, true});
    return *this;
}

CraftedPackage& CraftedPackage::remove(std::uint32_t tag) {
    changes_.push_back({tag, std::nullopt});
    return *this;
}

CraftedPackage& CraftedPackage::setSignature(std::uint32_t tag, const RpmValue& value) {
    signatureChanges_.push_back({tag, value});
    return *this;
}

CraftedPackage& CraftedPackage::removeSignature(std::uint32_t tag) {
    signatureChanges_.push_back({tag, std::nullopt});
    return *this;
}

CraftedPackage& CraftedPackage::digestAlgorithm(int algorithm) {
    digestAlgorithm_ = algorithm;
    return *this;
}

CraftedPackage& CraftedPackage::compressor(const std::string& name) {
    compressor_ = name;
    return *this;
}

CraftedPackage& CraftedPackage::archive(const std::string& bytes) {
    archive_ = bytes;
    return *this;
}

CraftedPackage& CraftedPackage::alterPayload(const Alteration& change) {
    alteration_ = change;
    return *this;
}

CraftedPackage& CraftedPackage::alterPayloadLate(const Alteration& change) {
    lateAlteration_ = change;
    return *this;
}

CraftedPackage& CraftedPackage::lead(const std::string& bytes) {
    lead_ = bytes;
    return *this;
}

void CraftedPackage::apply(const std::vector<Change>& changes, RpmHeader* header) {
    for (const Change& change : changes) {
        if (!change.beside) {
            header->remove(change.tag);
        }
        if (change.value) {
            header->add(change.tag, *change.value);
        }
    }
}

void CraftedPackage::requireFeatures(RpmHeader* header) const {
    std::vector<Feature> features(std::begin(kFeatures), std::end(kFeatures));
    for (const CompressorFeature& known : kCompressorFeatures) {
        if (compressor_ == known.compressor) {
            features.push_back(known.feature);
        }
    }
    const auto needs = [this, &features](bool (*has)(const PackedFile&), const Feature& feature) {
        if (std::any_of(listed_.begin(), listed_.end(), has)) {
            features.push_back(feature);
        }
    };
    needs([](const PackedFile& file) { return file.inode != 0; }, kHardLinksFeature);
    needs([](const PackedFile& file) { return !file.capabilities.empty(); }, kCapabilitiesFeature);
    require(features, requirements_, header);
}

// librpm looks paths up by halves.
std::vector<PackedFile> CraftedPackage::sortedFiles() const {
    std::vector<PackedFile> files = listed_;
    std::stable_sort(files.begin(), files.end(),
                     [](const PackedFile& a, const PackedFile& b) { return a.path < b.path; });
    return files;
}

RpmHeader CraftedPackage::header() const {
    const std::vector<PackedFile> files = sortedFiles();
    const std::uint32_t size = std::accumulate(
        files.begin(), files.end(), 0U,
        [](std::uint32_t sum, const PackedFile& file) { return sum + sizeOf(file); });
    RpmHeader header;
    introduce(name_, &header);
    header.set(RPMTAG_SIZE, rpmInt32({size}));
    describeFiles(files, digestAlgorithm_, &header);
    requireFeatures(&header);
    header.set(RPMTAG_PAYLOADFORMAT, rpmText("cpio"));
    if (!compressor_.empty()) {
        header.set(RPMTAG_PAYLOADCOMPRESSOR, rpmText(compressor_));
    }
    return header;
}

std::string CraftedPackage::entries() const {
    return cpioEntriesOf(packed_);
}

std::string CraftedPackage::largeFileEntries() const {
    const std::vector<PackedFile> files = sortedFiles();
    std::string bytes;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if ((files[i].flags & RPMFILE_GHOST) == 0) {
            bytes += cpioLargeFileEntry(static_cast<std::uint32_t>(i), cpioEntryOf(files[i]).data);
        }
    }
    return bytes;
}

std::string CraftedPackage::bytes() const {
    const std::string archive = archive_ ? *archive_ : entries() + cpioTrailer();
    RpmFile file{lead_, {}, header(), compressed(archive, compressor_)};
    if (alteration_) {
        alteration_(&file.payload);
    }
    bindPayload(&file, archive);
    apply(changes_, &file.header);
    bindHeader(&file, archive);
    apply(signatureChanges_, &file.signature);
    if (lateAlteration_) {
        lateAlteration_(&file.payload);
    }
    return file.bytes();
}

std::string CraftedPackage::write(const TemporaryDirectory& directory) const {
    static int count = 0;
    return directory.write("crafted-" + std::to_string(count++) + ".rpm", bytes());
}
