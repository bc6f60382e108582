// The rules that hold the header against the unpacked payload.
#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/integrity/early_contents.h"
#include "cli/integrity/file_content.h"
#include "cli/integrity/header_files.h"
#include "cli/integrity/integrity_findings.h"
#include "cli/integrity/tree_walk.h"

namespace pkgvet::cli {

// Holds the files of a header against the tree at root, each of which may have been made by
// strangers, in two steps: the first one looks at what the file system knows, the second one reads
// all files but those that were read early, and may run beside whatever else only reads the tree.
//
// What is made beyond the entries of the payload, the directories above them, is not held
// against the package where the header has something below them.
class TreeComparison {
public:
    TreeComparison(const HeaderFiles& list, const std::string& root, const EarlyContents& early);

    void compareEntries();
    void compareContents();

    // The mode of each file of the header as it was unpacked, 0 for what is not there.
    const std::vector<mode_t>& modes() const { return modes_; }
    std::vector<Finding> take() { return findings_.take(); }

private:
    // A file that is read once, however many hard links lead to it.
    struct Reading {
        std::size_t index;  // in the header, of the first of them
        bool isDone = false;
        FileContent content = {};
    };

    std::optional<std::size_t> find(const std::string& path) const;
    bool isAboveSome(const std::string& path) const;
    void compareUnlisted(const TreeEntry& entry);
    void compareListed(std::size_t index, const TreeEntry& entry);
    void compareFile(std::size_t index, const TreeEntry& entry);
    void compareLink(std::size_t index, const TreeEntry& entry);
    void noteContent(std::size_t index, const TreeEntry& entry);
    void read(ContentReader* reader, Reading* reading) const;
    void readAll();
    void noteTextBehind(const std::string& link, const std::string& target);
    void compareContent(std::size_t index, const FileContent& content);
    void findMissing();
    void compareHardLinks();

    const HeaderFiles& list_;
    const std::string& root_;
    const EarlyContents& early_;
    std::vector<std::size_t> sorted_;  // numbers of files in the order of their paths
    std::vector<mode_t> modes_;
    std::vector<ino_t> inodes_;  // of files, 0 for what is none
    std::vector<Reading> readings_;
    ContentReader earlyReader_;
    std::map<ino_t, std::size_t> linkedReadings_;                // of files with hard links
    std::vector<std::pair<std::size_t, std::size_t>> contents_;  // number of a file, of its reading
    std::set<std::size_t> linkedTexts_;  // numbers of files that a link calls texts
    IntegrityFindings findings_;
};

}  // namespace pkgvet::cli
