// GRegex behind handles that own their results.
#include "pkgvet/pattern/regex.h"

#include <algorithm>
#include <regex>

#include "pkgvet/base/glib_handles.h"
#include "pkgvet/base/utf8.h"

struct MatchInfoPrivate {
    // A GMatchInfo refers to the subject's bytes, so the two share one lifetime.
    std::shared_ptr<const std::string> subject;
    pkgvet::MatchInfoHandle info;
};

struct RegexPrivate {
    std::optional<std::string> uncompiled;  // the pattern until it is first tried
    GRegexCompileFlags compileFlags{};
    GRegexMatchFlags matchFlags{};
    pkgvet::RegexHandle regex;
    pkgvet::RegexHandle rawRegex;  // for subjects of bytes, made for the first one
};

namespace {

constexpr const char* kMatchFunction = "bool MatchInfo::match(GRegex*, GRegexMatchFlags)";
constexpr const char* kUnusedExpression = "d_ptr->info == nullptr";

pkgvet::MatchInfoHandle share(const pkgvet::MatchInfoHandle& info) {
    return pkgvet::MatchInfoHandle(info ? g_match_info_ref(info.get()) : nullptr);
}

// Compiles text for subjects that are bytes. Flags of another kind stay as they are.
pkgvet::RegexHandle compileRaw(const char* text, GRegexCompileFlags compileFlags,
                               GRegexMatchFlags matchFlags) {
    const auto rawFlags = static_cast<GRegexCompileFlags>(compileFlags | G_REGEX_RAW);
    return pkgvet::RegexHandle(g_regex_new(text, rawFlags, matchFlags, nullptr));
}

// GRegex takes a pattern for UTF-8 without looking, so one that is not is compiled as bytes. A null
// pattern is left to GLib, which refuses it.
pkgvet::RegexHandle compile(const char* text, GRegexCompileFlags compileFlags,
                            GRegexMatchFlags matchFlags) {
    if (text != nullptr && !pkgvet::isUtf8(text)) {
        return compileRaw(text, compileFlags, matchFlags);
    }
    return pkgvet::RegexHandle(g_regex_new(text, compileFlags, matchFlags, nullptr));
}

// Whether regex would take subject for UTF-8 although it is not.
bool mustBeSearchedAsBytes(const GRegex* regex, const char* subject) {
    return regex != nullptr && subject != nullptr &&
           (g_regex_get_compile_flags(regex) & G_REGEX_RAW) == 0 && !pkgvet::isUtf8(subject);
}

// The same pattern, compiled for subjects that are bytes; null where it does not compile as such.
pkgvet::RegexHandle rawVersionOf(const GRegex* regex) {
    return compileRaw(g_regex_get_pattern(regex), g_regex_get_compile_flags(regex),
                      g_regex_get_match_flags(regex));
}

// Searches subject up to its first NUL. An engine that gives up reports an error beside its false;
// taking that for a plain no would let a text crafted to exhaust the engine slip by unseen.
bool search(const GRegex* regex, const char* subject, GRegexMatchFlags flags,
            pkgvet::MatchInfoHandle* result) {
    GMatchInfo* info = nullptr;
    GError* error = nullptr;
    const bool found = g_regex_match_full(regex, subject, -1, 0, flags, &info, &error) != FALSE;
    result->reset(info);
    if (error != nullptr) {
        const pkgvet::GErrorHandle owner(error);
        throw std::regex_error(std::regex_constants::error_complexity);
    }
    return found;
}

// GLib gives "" for a group that took no part; only its position, which is then negative, tells it
// from a group that matched the empty text.
std::optional<std::string> groupText(const pkgvet::GStringHandle& text, int start) {
    if (!text || start < 0) {
        return std::nullopt;
    }
    return text.get();
}

// g_regex_escape_string steps over as many bytes as the first byte of a character announces, so
// that a stray one would hide the special characters behind it. Each is therefore a piece of its
// own, as is a NUL, at which checking ends too.
std::string_view nextPiece(std::string_view text) {
    const char* end = nullptr;
    g_utf8_validate_len(text.data(), text.size(), &end);
    return text.substr(0, std::max<std::size_t>(1, static_cast<std::size_t>(end - text.data())));
}

std::string escapePiece(std::string_view text) {
    return pkgvet::GStringHandle(g_regex_escape_string(text.data(), static_cast<int>(text.size())))
        .get();
}

}  // namespace

MatchInfo::MatchInfo(std::string_view subject) : d_ptr(std::make_unique<MatchInfoPrivate>()) {
    d_ptr->subject = std::make_shared<const std::string>(subject);
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
    const char* subject = d_ptr->subject->c_str();
    if (!mustBeSearchedAsBytes(regex, subject)) {
        return search(regex, subject, flags, &d_ptr->info);
    }
    const pkgvet::RegexHandle raw = rawVersionOf(regex);  // its match keeps it alive
    return search(raw.get(), subject, flags, &d_ptr->info);
}

std::optional<std::string> MatchInfo::fetch(int matchNum) const {
    GMatchInfo* info = d_ptr->info.get();
    const pkgvet::GStringHandle text(g_match_info_fetch(info, matchNum));
    int start = 0;
    if (text) {
        g_match_info_fetch_pos(info, matchNum, &start, nullptr);
    }
    return groupText(text, start);
}

std::optional<std::string> MatchInfo::fetchNamed(std::string_view name) const {
    GMatchInfo* info = d_ptr->info.get();
    const std::string nameText(name);
    const pkgvet::GStringHandle text(g_match_info_fetch_named(info, nameText.c_str()));
    int start = 0;
    if (text) {
        g_match_info_fetch_named_pos(info, nameText.c_str(), &start, nullptr);
    }
    return groupText(text, start);
}

// A null pattern is GLib's critical message at once.
Regex::Regex(std::string_view pattern, GRegexCompileFlags compileFlags, GRegexMatchFlags matchFlags)
    : d_ptr(std::make_unique<RegexPrivate>()) {
    d_ptr->compileFlags = compileFlags;
    d_ptr->matchFlags = matchFlags;
    if (pattern.data() == nullptr) {
        d_ptr->regex = compile(nullptr, compileFlags, matchFlags);
    } else {
        d_ptr->uncompiled = pattern.data();
    }
}

Regex::~Regex() = default;

std::optional<MatchInfo> Regex::match(std::string_view subject, GRegexMatchFlags flags) const {
    MatchInfo info(subject);
    if (!info.match(regexFor(info.d_ptr->subject->c_str()), flags)) {
        return std::nullopt;
    }
    return info;
}

GRegex* Regex::regexFor(const char* subject) const {
    if (d_ptr->uncompiled) {
        d_ptr->regex = compile(d_ptr->uncompiled->c_str(), d_ptr->compileFlags, d_ptr->matchFlags);
        d_ptr->uncompiled.reset();
    }
    if (!mustBeSearchedAsBytes(d_ptr->regex.get(), subject)) {
        return d_ptr->regex.get();
    }
    if (!d_ptr->rawRegex) {
        d_ptr->rawRegex = rawVersionOf(d_ptr->regex.get());
    }
    return d_ptr->rawRegex.get();
}

bool Regex::matchSimple(std::string_view pattern, std::string_view subject,
                        GRegexCompileFlags compileFlags, GRegexMatchFlags matchFlags) {
    pkgvet::RegexHandle regex = compile(pattern.data(), compileFlags, matchFlags);
    if (mustBeSearchedAsBytes(regex.get(), subject.data())) {
        regex = rawVersionOf(regex.get());
    }
    pkgvet::MatchInfoHandle info;
    return search(regex.get(), subject.data(), matchFlags, &info);
}

std::string Regex::escape(std::string_view text) {
    if (text.empty()) {
        return escapePiece(text);  // a null text is refused by GLib, and the copy throws
    }
    std::string escaped;
    while (!text.empty()) {
        const std::string_view piece = nextPiece(text);
        escaped += escapePiece(piece);
        text.remove_prefix(piece.size());
    }
    return escaped;
}
