// GRegex behind handles that own their results.
#include "pkgvet/pattern/regex.h"

#include <regex>
#include <utility>

#include "pkgvet/base/glib_handles.h"
#include "pkgvet/base/utf8.h"

struct MatchInfoPrivate {
    // A GMatchInfo refers to the subject's bytes, so the two share one lifetime.
    std::shared_ptr<const std::string> subject;
    pkgvet::MatchInfoHandle info;
};

namespace {

constexpr const char* kMatchFunction = "bool MatchInfo::match(GRegex*, GRegexMatchFlags)";
constexpr const char* kUnusedExpression = "d_ptr->info == nullptr";

pkgvet::MatchInfoHandle share(const pkgvet::MatchInfoHandle& info) {
    return pkgvet::MatchInfoHandle(info ? g_match_info_ref(info.get()) : nullptr);
}

// GRegex checks the pattern no more than the subject. A null one goes through, to be refused there.
pkgvet::RegexHandle compile(std::string_view pattern, GRegexCompileFlags compileFlags,
                            GRegexMatchFlags matchFlags) {
    if (pattern.data() == nullptr) {
        return pkgvet::RegexHandle(g_regex_new(nullptr, compileFlags, matchFlags, nullptr));
    }
    const std::string valid = pkgvet::validUtf8(std::string_view(pattern.data()));
    return pkgvet::RegexHandle(g_regex_new(valid.c_str(), compileFlags, matchFlags, nullptr));
}

// An engine that gives up reports an error beside its false; taking that for a plain no would let
// a text crafted to exhaust the engine slip by unseen.
bool search(GRegex* regex, const std::string& subject, GRegexMatchFlags flags,
            pkgvet::MatchInfoHandle* result) {
    GMatchInfo* info = nullptr;
    GError* error = nullptr;
    const bool found =
        g_regex_match_full(regex, subject.c_str(), static_cast<gssize>(subject.size()), 0, flags,
                           &info, &error) != FALSE;
    result->reset(info);
    if (error != nullptr) {
        const pkgvet::GErrorHandle owner(error);
        throw std::regex_error(std::regex_constants::error_complexity);
    }
    return found;
}

// g_match_info_fetch gives "" for a group that took no part; its position tells the two apart.
std::optional<std::string> textAt(const std::string& subject, bool exists, int start, int end) {
    if (!exists || start < 0 || end < start) {
        return std::nullopt;
    }
    return subject.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

}  // namespace

MatchInfo::MatchInfo(std::string_view subject) : d_ptr(std::make_unique<MatchInfoPrivate>()) {
    d_ptr->subject = std::make_shared<const std::string>(pkgvet::validUtf8(subject));
}

MatchInfo::MatchInfo(const MatchInfo& other)
    : d_ptr(std::make_unique<MatchInfoPrivate>(
          MatchInfoPrivate{other.d_ptr->subject, share(other.d_ptr->info)})) {}

MatchInfo::MatchInfo(MatchInfo&& other) noexcept = default;

MatchInfo& MatchInfo::operator=(const MatchInfo& other) {
    *this = MatchInfo(other);
    return *this;
}

MatchInfo& MatchInfo::operator=(MatchInfo&& other) noexcept = default;

MatchInfo::~MatchInfo() = default;

bool MatchInfo::match(GRegex* regex, GRegexMatchFlags flags) {
    if (d_ptr->info != nullptr) {
        g_return_if_fail_warning(nullptr, kMatchFunction, kUnusedExpression);
        return false;
    }
    return search(regex, *d_ptr->subject, flags, &d_ptr->info);
}

std::optional<std::string> MatchInfo::fetch(int matchNum) const {
    if (!d_ptr->info || matchNum < 0 || !g_match_info_matches(d_ptr->info.get())) {
        return std::nullopt;
    }
    int start = -1;
    int end = -1;
    const bool exists = g_match_info_fetch_pos(d_ptr->info.get(), matchNum, &start, &end) != FALSE;
    return textAt(*d_ptr->subject, exists, start, end);
}

std::optional<std::string> MatchInfo::fetchNamed(std::string_view name) const {
    if (!d_ptr->info || !g_match_info_matches(d_ptr->info.get())) {
        return std::nullopt;
    }
    int start = -1;
    int end = -1;
    const bool exists = g_match_info_fetch_named_pos(d_ptr->info.get(), std::string(name).c_str(),
                                                     &start, &end) != FALSE;
    return textAt(*d_ptr->subject, exists, start, end);
}

Regex::Regex(std::string_view pattern, GRegexCompileFlags compileFlags, GRegexMatchFlags matchFlags)
    : regex_(compile(pattern, compileFlags, matchFlags).release()) {}

Regex::~Regex() {
    const pkgvet::RegexHandle owner(regex_);
}

std::optional<MatchInfo> Regex::match(std::string_view subject, GRegexMatchFlags flags) const {
    MatchInfo info(subject);
    if (!info.match(regex_, flags)) {
        return std::nullopt;
    }
    return info;
}

bool Regex::matchSimple(std::string_view pattern, std::string_view subject,
                        GRegexCompileFlags compileFlags, GRegexMatchFlags matchFlags) {
    const pkgvet::RegexHandle regex = compile(pattern, compileFlags, matchFlags);
    pkgvet::MatchInfoHandle info;
    return search(regex.get(), pkgvet::validUtf8(subject), matchFlags, &info);
}

std::string Regex::escape(std::string_view text) {
    // A null text goes through as it is, so that GLib refuses it and the copy below throws.
    if (text.data() == nullptr) {
        return pkgvet::GStringHandle(g_regex_escape_string(nullptr, 0)).get();
    }
    const std::string valid = pkgvet::validUtf8(text);
    return pkgvet::GStringHandle(
               g_regex_escape_string(valid.c_str(), static_cast<int>(valid.size())))
        .get();
}
