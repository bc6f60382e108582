// Effects as plain data.
#pragma once

#include "cli/effect/effect.h"
#include "tests/support/program/sample_runs.h"

// One of everything.
inline pkgvet::cli::Effect sampleEffect() {
    using namespace pkgvet::cli;
    Effect effect;
    effect.before = {"old.json", "1.0.0", {{"mdm", std::string(64, 'a')}, {"auth", ""}}, true};
    effect.after = {"new.json", "1.1.0", {{"mdm", std::string(64, 'b')}}};
    effect.partial = true;
    effect.compared = 3;
    effect.notJudged = {{"e.rpm", "", "it took too long"}};
    effect.turned = {{"a.rpm", "org.example.a", "mdm", Verdict::Accepted, Verdict::Rejected}};
    RuleChange rule;
    rule.rule = "library-not-allowed";
    rule.worst = Severity::Error;
    rule.findings = 12;
    rule.packages = 3;
    rule.first = {{"a.rpm", "libx.so.1"}, {"b.rpm", std::nullopt}};
    rule.causes = {{"lost libx.so.1", 2}};
    effect.appeared = {rule};
    effect.added = {"c.rpm"};
    effect.removed = {"d.rpm"};
    return effect;
}

// One whose texts are all made of bytes, which a package can choose.
inline pkgvet::cli::Effect effectOfTexts(const std::string& bytes) {
    using namespace pkgvet::cli;
    Effect effect = sampleEffect();
    effect.before = {bytes, bytes, {{bytes, bytes}}};
    effect.notJudged = {{bytes, bytes, bytes}};
    effect.turned = {{bytes, bytes, bytes, Verdict::NotJudged, Verdict::Accepted}};
    effect.vanished = {{bytes, Severity::Critical, 1, 1, {{bytes, bytes}}, {{bytes, 1}}}};
    effect.added = {bytes};
    return effect;
}
