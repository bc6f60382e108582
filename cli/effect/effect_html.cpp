// Writes an effect as a page.
#include <array>
#include <set>
#include <string>
#include <string_view>

#include "cli/base/text.h"
#include "cli/base/version.h"
#include "cli/catalogue/catalogue.h"
#include "cli/effect/effect_formats.h"
#include "cli/page/document.h"
#include "cli/page/html.h"
#include "cli/page/static_parts.h"

namespace pkgvet::cli {

namespace {

// Indexed by Verdict: the classes that colour it.
constexpr std::array<std::string_view, 3> kClasses = {"accepted", "rejected", "unjudged"};

// A section of the page, known by its address.
struct Section {
    std::string_view id;
    std::string_view title;
    std::string_view caption = {};  // of its table
    std::string_view nothing = {};  // what stands there in its place when it has no rows
};

constexpr Section kTurned = {
    .id = "turned",
    .title = "Verdicts that turn",
    .caption = "Packages whose verdict under a profile is another than it was.",
    .nothing = "No verdict turns."};
constexpr Section kAppeared = {
    .id = "appeared",
    .title = "Findings that appear",
    .caption =
        "Rules whose findings appear, those with most findings first. Below each rule stand "
        "the cause and the first packages.",
    .nothing = "No finding appears."};
constexpr Section kVanished = {
    .id = "vanished",
    .title = "Findings that vanish",
    .caption =
        "Rules whose findings vanish, those with most findings first. Below each rule stand "
        "the cause and the first packages.",
    .nothing = "No finding vanishes."};
constexpr Section kUnjudged = {
    .id = "unjudged",
    .title = "Not judged",
    .caption = "Packages that could not be judged, with the cause on each side."};
constexpr Section kAdded = {.id = "added", .title = "Packages added"};
constexpr Section kRemoved = {.id = "removed", .title = "Packages removed"};

// A name of a package can have its own direction of writing, which must not reach what is beside.
std::string isolated(std::string_view text) {
    return "<bdi>" + htmlText(text) + "</bdi>";
}

std::string headlineOf(const Effect& effect) {
    const std::size_t turned = effect.turned.size();
    return turned == 0 ? "No verdict turns"
                       : grouped(turned) + (turned == 1 ? " verdict turns" : " verdicts turn");
}

void writeHeader(const Effect& effect, std::ostream& stream) {
    stream << "<body>\n<header>\n<p class=\"wordmark\">pkgvet</p>\n<h1>" << headlineOf(effect)
           << "</h1>\n<p class=\"lead\">" << grouped(effect.compared)
           << (effect.compared == 1 ? " package" : " packages") << " compared</p>\n";
    if (effect.partial) {
        stream << "<p class=\"notice grave\">" << kPartialEffect << "</p>\n";
    }
    stream << "</header>\n";
}

void writeSide(std::string_view label, const EffectSide& side, std::ostream& stream) {
    stream << "<dt>" << label << "</dt><dd>" << isolated(side.path) << ", by pkgvet "
           << isolated(side.version) << (side.partial ? ", interrupted" : "") << "</dd>\n";
    for (const ProfileRules& profile : side.profiles) {
        stream << "<dt>Its rules of " << isolated(profile.name) << "</dt><dd>"
               << (profile.digest.empty() ? std::string("not known")
                                          : "SHA-256 " + isolated(profile.digest))
               << "</dd>\n";
    }
}

void writeSides(const Effect& effect, std::ostream& stream) {
    if (effect.before.path.empty()) {
        return;
    }
    stream << "<section class=\"panel\" aria-labelledby=\"sides-title\">\n"
              "<h2 id=\"sides-title\">What was compared</h2>\n<dl class=\"facts\">\n";
    writeSide("Before", effect.before, stream);
    writeSide("Now", effect.after, stream);
    stream << "</dl>\n</section>\n";
}

// A package turns once in a direction, under however many profiles.
std::size_t packagesTurned(const Effect& effect, Verdict before, Verdict after) {
    std::set<std::string_view> paths;
    for (const TurnedVerdict& turned : effect.turned) {
        if (turned.before == before && turned.after == after) {
            paths.insert(turned.path);
        }
    }
    return paths.size();
}

void writeFigure(std::string_view kind, std::string_view label, std::size_t number,
                 std::ostream& stream) {
    stream << "<div class=\"figure " << kind << "\"><dt class=\"figure-label\">" << label
           << "</dt><dd class=\"figure-number\">" << grouped(number) << "</dd></div>\n";
}

void writeTotals(const Effect& effect, std::ostream& stream) {
    stream << "<section class=\"panel\" aria-labelledby=\"totals-title\">\n"
              "<h2 id=\"totals-title\">Totals</h2>\n<dl class=\"figures\">\n";
    writeFigure("rejected", "packages accepted before, rejected now",
                packagesTurned(effect, Verdict::Accepted, Verdict::Rejected), stream);
    writeFigure("accepted", "packages rejected before, accepted now",
                packagesTurned(effect, Verdict::Rejected, Verdict::Accepted), stream);
    writeFigure("unjudged", "packages not judged", effect.notJudged.size(), stream);
    writeFigure("", "findings that appear", findingsOf(effect.appeared), stream);
    writeFigure("", "findings that vanish", findingsOf(effect.vanished), stream);
    stream << "</dl>\n</section>\n";
}

void beginSection(const Section& section, std::size_t count, std::ostream& stream) {
    stream << "<section id=\"" << section.id << "\" aria-labelledby=\"" << section.id
           << "-title\">\n<h2 id=\"" << section.id << "-title\">" << section.title
           << " <span class=\"times\">" << grouped(count) << "</span></h2>\n";
}

void beginTable(const Section& section, std::string_view headings, std::ostream& stream) {
    stream << "<div class=\"frame\">\n<table>\n<caption class=\"unseen\">" << section.caption
           << "</caption>\n<thead><tr>" << headings << "</tr></thead>\n";
}

// Whether there is anything to show of the section that begins.
bool hasRows(const Section& section, std::size_t count, std::ostream& stream) {
    beginSection(section, count, stream);
    if (count == 0) {
        stream << "<p class=\"hint\">" << section.nothing << "</p>\n</section>\n";
    }
    return count > 0;
}

std::string pillOf(Verdict verdict) {
    return "<span class=\"pill " + std::string(kClasses[static_cast<std::size_t>(verdict)]) +
           "\">" + std::string(verdictName(verdict)) + "</span>";
}

void writeTurned(const Effect& effect, std::ostream& stream) {
    if (!hasRows(kTurned, effect.turned.size(), stream)) {
        return;
    }
    beginTable(kTurned,
               "<th scope=\"col\">Package</th><th scope=\"col\">Profile</th>"
               "<th scope=\"col\">Before</th><th scope=\"col\">Now</th>",
               stream);
    stream << "<tbody>\n";
    for (const TurnedVerdict& turned : effect.turned) {
        stream << "<tr><th scope=\"row\">";
        if (!turned.name.empty()) {
            stream << "<b>" << isolated(turned.name) << "</b> ";
        }
        stream << "<span class=\"place\">" << isolated(turned.path) << "</span></th><td>"
               << isolated(turned.profile) << "</td><td>" << pillOf(turned.before) << "</td><td>"
               << pillOf(turned.after) << "</td></tr>\n";
    }
    stream << "</tbody>\n</table>\n</div>\n</section>\n";
}

void writeCauses(const RuleChange& rule, std::ostream& stream) {
    if (rule.causes.empty()) {
        return;
    }
    stream << "<dt>Because of</dt><dd><ul>\n";
    for (const auto& [cause, findings] : rule.causes) {
        stream << "<li>" << isolated(cause) << " <span class=\"times\">" << grouped(findings)
               << (findings == 1 ? " finding" : " findings") << "</span></li>\n";
    }
    stream << "</ul></dd>\n";
}

void writePlaces(const RuleChange& rule, std::ostream& stream) {
    stream << "<dt>" << (rule.packages > rule.first.size() ? "First packages" : "Packages")
           << "</dt><dd><ul>\n";
    for (const RuleChange::Place& place : rule.first) {
        stream << "<li>" << isolated(place.path);
        if (place.subject) {
            stream << " <span class=\"subject\">" << isolated(*place.subject) << "</span>";
        }
        stream << "</li>\n";
    }
    if (rule.packages > rule.first.size()) {
        stream << "<li class=\"note\">and " << grouped(rule.packages - rule.first.size())
               << " more</li>\n";
    }
    stream << "</ul></dd>\n";
}

void writeRule(const RuleChange& rule, std::ostream& stream) {
    const std::string_view severity = severityName(rule.worst);
    const Entry* entry = findEntry(rule.rule);
    stream << "<tbody>\n<tr><th scope=\"rowgroup\"><span class=\"severity " << severity << "\">"
           << severity << "</span> ";
    if (entry != nullptr) {
        stream << "<b>" << htmlProse(entry->title) << "</b> ";
    }
    stream << "<code class=\"rule-id\">" << isolated(rule.rule)
           << "</code></th><td class=\"count\">" << grouped(rule.findings)
           << "</td><td class=\"count\">" << grouped(rule.packages)
           << "</td></tr>\n<tr><td colspan=\"3\"><dl class=\"facts\">\n";
    writeCauses(rule, stream);
    writePlaces(rule, stream);
    stream << "</dl></td></tr>\n</tbody>\n";
}

void writeRules(const Section& section, const std::vector<RuleChange>& rules,
                std::ostream& stream) {
    if (!hasRows(section, findingsOf(rules), stream)) {
        return;
    }
    beginTable(section,
               "<th scope=\"col\">Rule</th><th scope=\"col\" class=\"count\">Findings</th>"
               "<th scope=\"col\" class=\"count\">Packages</th>",
               stream);
    for (const RuleChange& rule : rules) {
        writeRule(rule, stream);
    }
    stream << "</table>\n</div>\n</section>\n";
}

// The sections below stand there only when they hold something.
void writeUnjudged(const Effect& effect, std::ostream& stream) {
    if (effect.notJudged.empty()) {
        return;
    }
    beginSection(kUnjudged, effect.notJudged.size(), stream);
    stream << "<p class=\"hint\">Of these packages no finding appears or vanishes: what they hold "
              "is not known.</p>\n";
    beginTable(kUnjudged,
               "<th scope=\"col\">Package</th><th scope=\"col\">Before</th>"
               "<th scope=\"col\">Now</th>",
               stream);
    stream << "<tbody>\n";
    for (const UnjudgedPackage& package : effect.notJudged) {
        stream << "<tr><th scope=\"row\">" << isolated(package.path) << "</th><td>"
               << isolated(package.before) << "</td><td>" << isolated(package.after)
               << "</td></tr>\n";
    }
    stream << "</tbody>\n</table>\n</div>\n</section>\n";
}

void writePaths(const Section& section, const std::vector<std::string>& paths,
                std::ostream& stream) {
    if (paths.empty()) {
        return;
    }
    beginSection(section, paths.size(), stream);
    stream << "<ul class=\"panel\">\n";
    for (const std::string& path : paths) {
        stream << "<li>" << isolated(path) << "</li>\n";
    }
    stream << "</ul>\n</section>\n";
}

}  // namespace

void writeEffectHtml(const Effect& effect, std::ostream& stream) {
    writePageHead(headlineOf(effect), {}, stream);
    writeHeader(effect, stream);
    stream << "<main class=\"effect\">\n";
    writeTotals(effect, stream);
    writeSides(effect, stream);
    writeUnjudged(effect, stream);
    writeTurned(effect, stream);
    writeRules(kAppeared, effect.appeared, stream);
    writeRules(kVanished, effect.vanished, stream);
    writePaths(kAdded, effect.added, stream);
    writePaths(kRemoved, effect.removed, stream);
    stream << "</main>\n<footer>\n<p>pkgvet " << htmlText(programVersion())
           << "</p>\n</footer>\n</body>\n</html>\n";
}

}  // namespace pkgvet::cli
