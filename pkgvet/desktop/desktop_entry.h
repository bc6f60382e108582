// A package's desktop file.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/export.h"

struct DesktopEntryPrivate;

// The read-only view of one key file, as GLib reads it. It reports nothing: a file that is missing,
// malformed or not a regular file, a group or key that is not there and an empty value all give the
// same empty answer, and callers turn that into findings. Lists are divided by semicolons.
//
// Keys with a language, such as "Name[de]", are keys of their own whatever the user's language is.
// A key that is set more than once is listed as often, and each time reads as its last value.
//
// Group and key names go in as text that ends in a NUL: literals and the contents of strings. All
// results are copies that belong to the caller. An object never changes and is for one thread.
class PKGVET_EXPORT DesktopEntry {
public:
    // Loads the file at path, a path on disk, links followed.
    explicit DesktopEntry(std::string_view path);
    DesktopEntry(const DesktopEntry&) = delete;
    DesktopEntry(DesktopEntry&&) = delete;
    DesktopEntry& operator=(const DesktopEntry&) = delete;
    DesktopEntry& operator=(DesktopEntry&&) = delete;
    ~DesktopEntry();

    bool hasGroup(std::string_view group) const;
    bool hasKey(std::string_view group, std::string_view key) const;

    // The value with escapes resolved and its trailing blanks kept. Empty also for a value that is
    // not valid UTF-8.
    std::string string(std::string_view group, std::string_view key) const;
    // The elements of the value in order; a semicolon at the end opens no further one.
    std::vector<std::string> stringList(std::string_view group, std::string_view key) const;

    // Names in the file's order.
    std::vector<std::string> groups() const;
    std::vector<std::string> keys(std::string_view group) const;

    // Values of the group "Desktop Entry".
    std::string desktopEntryString(std::string_view key) const;
    std::string name() const;
    std::string exec() const;
    std::string icon() const;
    std::string type() const;

private:
    std::unique_ptr<DesktopEntryPrivate> d_ptr;
};
