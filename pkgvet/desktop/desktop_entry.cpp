// Reads desktop files through GKeyFile.
#include "pkgvet/desktop/desktop_entry.h"

#include <glib.h>

#include <cstddef>
#include <optional>

#include "pkgvet/base/glib_handles.h"
#include "pkgvet/base/regular_file.h"
#include "pkgvet/desktop/vocabulary.h"

struct DesktopEntryPrivate {
    pkgvet::KeyFileHandle file;
};

namespace {

constexpr const char* kNameKey = "Name";
constexpr const char* kIconKey = "Icon";

// A thousand times what a real desktop file holds. GKeyFile keeps all of a file in memory, and of
// a file with short lines fifty times its size.
constexpr std::size_t kMaxFileSize = std::size_t{16} << 20;

// Without this flag GKeyFile keeps or drops a key such as "IconMode[de]" by the language of whoever
// runs the check.
constexpr GKeyFileFlags kLoadFlags = G_KEY_FILE_KEEP_TRANSLATIONS;

// Only a regular file is read: a fifo would block, and a device might never end.
pkgvet::KeyFileHandle load(const std::string& path) {
    pkgvet::KeyFileHandle file(g_key_file_new());
    const std::optional<std::string> content = pkgvet::readRegularFile(path, kMaxFileSize);
    if (!content || !g_key_file_load_from_data(file.get(), content->data(), content->size(),
                                               kLoadFlags, nullptr)) {
        // A load that failed leaves behind whatever stood ahead of the bad line.
        file.reset(g_key_file_new());
    }
    return file;
}

std::string copyOf(const pkgvet::GStringHandle& text) {
    return text ? std::string(text.get()) : std::string();
}

std::vector<std::string> copyOf(const pkgvet::GStringListHandle& list) {
    std::vector<std::string> copy;
    for (char** element = list.get(); element != nullptr && *element != nullptr; ++element) {
        copy.emplace_back(*element);
    }
    return copy;
}

}  // namespace

DesktopEntry::DesktopEntry(std::string_view path)
    : d_ptr(std::make_unique<DesktopEntryPrivate>(DesktopEntryPrivate{load(std::string(path))})) {}

DesktopEntry::~DesktopEntry() = default;

bool DesktopEntry::hasGroup(std::string_view group) const {
    return g_key_file_has_group(d_ptr->file.get(), group.data()) != FALSE;
}

bool DesktopEntry::hasKey(std::string_view group, std::string_view key) const {
    return g_key_file_has_key(d_ptr->file.get(), group.data(), key.data(), nullptr) != FALSE;
}

std::string DesktopEntry::string(std::string_view group, std::string_view key) const {
    return copyOf(pkgvet::GStringHandle(
        g_key_file_get_string(d_ptr->file.get(), group.data(), key.data(), nullptr)));
}

std::vector<std::string> DesktopEntry::stringList(std::string_view group,
                                                  std::string_view key) const {
    return copyOf(pkgvet::GStringListHandle(
        g_key_file_get_string_list(d_ptr->file.get(), group.data(), key.data(), nullptr, nullptr)));
}

std::vector<std::string> DesktopEntry::groups() const {
    return copyOf(pkgvet::GStringListHandle(g_key_file_get_groups(d_ptr->file.get(), nullptr)));
}

std::vector<std::string> DesktopEntry::keys(std::string_view group) const {
    return copyOf(pkgvet::GStringListHandle(
        g_key_file_get_keys(d_ptr->file.get(), group.data(), nullptr, nullptr)));
}

std::string DesktopEntry::desktopEntryString(std::string_view key) const {
    return string(pkgvet::kDesktopEntryGroup, key);
}

std::string DesktopEntry::name() const {
    return desktopEntryString(kNameKey);
}

std::string DesktopEntry::exec() const {
    return desktopEntryString(pkgvet::kExecKey);
}

std::string DesktopEntry::icon() const {
    return desktopEntryString(kIconKey);
}

std::string DesktopEntry::type() const {
    return desktopEntryString(pkgvet::kTypeKey);
}
