// Searching text with GLib's regular expressions.
#pragma once

#include <glib.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "pkgvet/export.h"

struct MatchInfoPrivate;
struct RegexPrivate;

// One match attempt and what came out of it. It keeps its subject alive, so that it may outlive the
// text that it was made from. Copies share subject and result, and so belong to one thread at a
// time. A moved-from object can only be destroyed or assigned to.
class PKGVET_EXPORT MatchInfo {
public:
    // Takes a copy of subject, which is searched up to its first NUL.
    explicit MatchInfo(std::string_view subject);
    MatchInfo(const MatchInfo& other);
    MatchInfo(MatchInfo&& other) noexcept;
    MatchInfo& operator=(const MatchInfo& other);
    MatchInfo& operator=(MatchInfo&& other) noexcept;
    ~MatchInfo();

    // Searches the subject for regex, which stays the caller's, and tells whether it was found.
    // An object can be tried once: a second call, whatever the first gave, is GLib's critical
    // message and false. A subject that is not UTF-8 is searched byte by byte, with the pattern
    // compiled anew for that purpose. Throws std::regex_error (error_complexity) when the engine
    // gave up, since that is not an answer.
    bool match(GRegex* regex, GRegexMatchFlags flags);

    // The text of a capture group, 0 being the whole match, with its bytes as they stand in the
    // subject. Empty when the group did not take part, does not exist or nothing matched; a value
    // of "" is a group that matched the empty text. Before a match has been tried, and for a
    // negative number, GLib's critical message comes with the empty result.
    std::optional<std::string> fetch(int matchNum) const;
    std::optional<std::string> fetchNamed(std::string_view name) const;

private:
    friend class Regex;

    std::unique_ptr<MatchInfoPrivate> d_ptr;
};

// One pattern, made once at the start of a rule and tried on many texts. It matches anywhere in a
// text unless it anchors itself. It is compiled when it is first tried, which many a pattern of a
// rule never is. One that does not compile is kept as none: nothing is thrown, and every match
// fails with GLib's critical message.
//
// Where pattern and subject are valid UTF-8, a character is one of theirs. Where either is not,
// both are taken as bytes, so that texts that differ in a byte are never taken for each other. An
// object belongs to one thread at a time, since what it needs is made with the first subject.
//
// All texts that go in as patterns are read up to their terminating NUL.
class PKGVET_EXPORT Regex {
public:
    Regex(std::string_view pattern, GRegexCompileFlags compileFlags, GRegexMatchFlags matchFlags);
    Regex(const Regex&) = delete;
    Regex(Regex&&) = delete;
    Regex& operator=(const Regex&) = delete;
    Regex& operator=(Regex&&) = delete;
    ~Regex();

    // A value when the pattern was found in subject, up to its first NUL. Throws as
    // MatchInfo::match does.
    std::optional<MatchInfo> match(std::string_view subject,
                                   GRegexMatchFlags flags = static_cast<GRegexMatchFlags>(0)) const;

    // Compiles and searches in one go; subject, too, is read up to its terminating NUL, and a null
    // one is GLib's critical message and false. Throws as MatchInfo::match does.
    static bool matchSimple(std::string_view pattern, std::string_view subject,
                            GRegexCompileFlags compileFlags, GRegexMatchFlags matchFlags);

    // text with each special character quoted, a NUL as "\0", so that it stands for itself in a
    // pattern. All other bytes stay as they are. Throws std::logic_error for a null text.
    static std::string escape(std::string_view text);

private:
    GRegex* regexFor(const char* subject) const;

    std::unique_ptr<RegexPrivate> d_ptr;
};
