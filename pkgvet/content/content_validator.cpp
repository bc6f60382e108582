// How a ContentValidator is made and destroyed, the order of its rules, and its verdict.
#include "pkgvet/content/content_validator.h"

#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "pkgvet/base/file_modes.h"
#include "pkgvet/base/remove_tree.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/rules/configuration.h"

namespace {

// Neither the environment nor the rule set moves it.
constexpr char kTemporaryDirectory[] = "/tmp/dir.XXXXXX";

constexpr const char* kDesktopSuffix = ".desktop";

// What an executable that is a shared object has somewhere in its path on disk.
constexpr const char* kSharedObject = ".so";

// A new directory, or nothing. A name such as "dir.soX1yZ" is passed over, since it would make
// every executable below it look like a shared object and hide, in one run of 3,844, those out of
// place.
std::string makeTemporaryDirectory() {
    for (;;) {
        std::string directory = kTemporaryDirectory;
        if (mkdtemp(directory.data()) == nullptr) {
            return std::string();
        }
        if (directory.find(kSharedObject) == std::string::npos) {
            return directory;
        }
        rmdir(directory.c_str());
    }
}

std::shared_ptr<PayloadFacts> factsOf(const RpmMeta& meta, const std::string& tempDir,
                                      const ContentValidator::KnownText& known) {
    auto facts = std::make_shared<PayloadFacts>();
    facts->paths = meta.paths();
    facts->modes = pkgvet::readModes(tempDir, meta.paths(), [&](const struct stat& status) {
        facts->knownTexts.push_back(known ? known(status) : std::nullopt);
    });
    return facts;
}

// Has the rules share what they ask of the files as long as it lives. What was remembered of other
// paths is of no use.
class SharedFacts {
public:
    SharedFacts(const RpmMeta& meta, ContentValidatorPrivate* record) : record_(*record) {
        const std::shared_ptr<PayloadFacts>& remembered = record_.rememberedFacts;
        const bool isOfThese = remembered && remembered->paths == meta.paths();
        record_.facts = isOfThese ? remembered : factsOf(meta, record_.tempDir, {});
    }
    SharedFacts(const SharedFacts&) = delete;
    SharedFacts(SharedFacts&&) = delete;
    SharedFacts& operator=(const SharedFacts&) = delete;
    SharedFacts& operator=(SharedFacts&&) = delete;
    ~SharedFacts() { record_.facts.reset(); }

private:
    ContentValidatorPrivate& record_;
};

}  // namespace

ContentValidator::ContentValidator(const std::string& rpmPath)
    : d_ptr(std::make_unique<ContentValidatorPrivate>()) {
    // The record names the directory once it holds a payload, since only then are files judged.
    const std::string directory = makeTemporaryDirectory();
    if (directory.empty()) {
        return;
    }
    if (extractRpm(directory.c_str(), rpmPath.c_str()) != 0) {
        // What a broken payload left behind stays: only an empty directory is removed here.
        rmdir(directory.c_str());
        return;
    }
    d_ptr->tempDir = directory;
}

ContentValidator::ContentValidator(const Configuration& /*config*/, const RpmMeta& /*meta*/,
                                   const std::string& rpmPath)
    : ContentValidator(rpmPath) {}

ContentValidator::ContentValidator(const ContentValidator& other)
    : d_ptr(std::make_unique<ContentValidatorPrivate>(*other.d_ptr)) {}

ContentValidator& ContentValidator::operator=(ContentValidator&& other) noexcept {
    d_ptr.swap(other.d_ptr);
    return *this;
}

ContentValidator::~ContentValidator() {
    pkgvet::removeTree(d_ptr->tempDir);
}

bool ContentValidator::extracted() const {
    return !d_ptr->tempDir.empty();
}

void ContentValidator::rememberFiles(const RpmMeta& meta, const KnownText& known) {
    d_ptr->rememberedFacts = factsOf(meta, d_ptr->tempDir, known);
}

// Rules pass results on through the record, so that their order is part of the verdict.
bool ContentValidator::validateContent(const Configuration& config, const RpmMeta& meta) {
    const std::string& tempDir = d_ptr->tempDir;
    const SharedFacts facts(meta, d_ptr.get());
    const std::string mainBinaryPath = tempDir + config.binDir() + meta.name();
    const std::string desktopPath = config.desktopDir() + meta.name() + kDesktopSuffix;
    checkDesktop(config, meta, desktopPath);
    if (d_ptr->desktopFacts.desktop) {
        const DesktopEntry entry(tempDir + desktopPath);
        processDesktopFile(meta, entry);
        processPinfold(config, meta, entry, tempDir);
        processBackgroundTasks(meta, entry);
    }
    checkQmlImports(config, meta, tempDir);
    checkExecutables(config, meta, tempDir);
    checkIcons(config, meta, tempDir);
    checkLibraries(config, meta, mainBinaryPath);
    checkRpath(meta, mainBinaryPath);
    checkArch(meta);
    checkSandboxing(meta, tempDir);
    checkExcludedPaths(config, meta, tempDir);
    checkEmptyDirectories(meta);
    checkConfigurationParameterFile(meta);
    processLiblumbraapp(meta);
    processPermissions(config, meta, tempDir);
    processElfTabs(mainBinaryPath);
    return d_ptr->findings.isAccepted(config.validationEnabled());
}

bool ContentValidator::validateContent(const Configuration& config, const RpmMeta& meta) const {
    return const_cast<ContentValidator*>(this)->validateContent(config, meta);
}

int ContentValidator::removeDir(const char* path, const struct stat* st, int /*typeFlag*/,
                                struct FTW* /*ftw*/) {
    return S_ISDIR(st->st_mode) ? rmdir(path) : unlink(path);
}

bool ContentValidator::endsWith(const std::string& text, const std::string& suffix) const {
    return text.ends_with(suffix);
}
