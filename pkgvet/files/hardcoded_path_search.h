// The search for the home directory of the platform's default user in the text of a file.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <future>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/base/regular_file.h"

namespace pkgvet {

// Takes a text piece by piece, in one pass without ever going back, and sees it without its white
// space. It is not a substring search: a character that ends a partial match is dropped and does
// not begin a new one, so that neither "//home/defaultuser" nor "/home/home/defaultuser" holds a
// hit.
//
// Where the pieces are cut makes no difference. An object is for one text.
class HardcodedPathSearch {
public:
    // Takes the next piece. Whether the path has been found in it; the search is over then.
    bool feed(std::string_view piece);

private:
    std::size_t matched_ = 0;  // characters of the path that the text last held
};

// Searches the files of one package. Each is read once, whatever the number of its paths, and where
// there is much to read, a second thread helps. An object is for one search.
class HardcodedPathFinder {
public:
    // For each of the files, by its path on disk, whether its text holds the home directory. The
    // paths were found to lead to regular files; what cannot be opened has no text.
    std::vector<bool> find(const std::vector<std::string>& files);

private:
    void searchRest(std::future<void>* helper);
    void search(std::size_t index, OpenFile file, std::string* buffer);

    const std::vector<std::string>* files_ = nullptr;
    std::atomic<std::size_t> next_ = 0;  // the first file that no thread has begun with
    // Of each file, to be read once all are searched; null for what cannot be opened.
    std::vector<const bool*> answers_;
    std::mutex mutex_;  // of what follows
    std::map<FileIdentity, bool> answersByFile_;
};

}  // namespace pkgvet
