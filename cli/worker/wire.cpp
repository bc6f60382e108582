// Turns reports into bytes and back.
#include "cli/worker/wire.h"

#include <algorithm>
#include <cstdint>

#include "cli/base/byte_coding.h"
#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

namespace {

// Grows with each change of what a message holds.
constexpr std::uint32_t kVersion = 4;

// Few bytes make a finding that is large in memory, so that the size alone does not bound it.
constexpr std::uint32_t kMaxFindings = 1'000'000;

constexpr const char* kTooMuch = "there is more to say about it than --max-report allows";

void encode(const Finding& finding, Encoder* encoder) {
    encoder->text(finding.rule);
    encoder->number(static_cast<std::size_t>(finding.severity));
    encoder->flag(finding.subject.has_value());
    encoder->text(finding.subject.value_or(std::string()));
    encoder->text(finding.message);
    encoder->number(finding.count);
}

Finding decodeFinding(Decoder* decoder) {
    Finding finding;
    finding.rule = decoder->text();
    const std::uint32_t severity = decoder->number();
    // Reports print ids as they stand.
    if (severity > static_cast<std::uint32_t>(Severity::Critical) ||
        findEntry(finding.rule) == nullptr) {
        decoder->fail();
        return finding;
    }
    finding.severity = static_cast<Severity>(severity);
    const bool hasSubject = decoder->flag();
    const std::string_view subject = decoder->text();
    if (hasSubject) {
        finding.subject = subject;
    } else if (!subject.empty()) {
        decoder->fail();
    }
    finding.message = decoder->text();
    finding.count = decoder->number();
    if (finding.count == 0) {
        decoder->fail();
    }
    return finding;
}

void encode(const Judgement& judgement, Encoder* encoder) {
    encoder->flag(judgement.metaAccepted);
    encoder->flag(judgement.contentAccepted);
    encoder->flag(judgement.intact);
    encoder->number(judgement.findings.size());
    for (const Finding& finding : judgement.findings) {
        encode(finding, encoder);
    }
}

Judgement decodeJudgement(const std::string& profile, Decoder* decoder) {
    Judgement judgement;
    judgement.profile = profile;
    judgement.metaAccepted = decoder->flag();
    judgement.contentAccepted = decoder->flag();
    judgement.intact = decoder->flag();
    judgement.passes = judgement.accepted() && judgement.intact;
    const std::uint32_t count = decoder->number();
    if (count > kMaxFindings) {
        decoder->fail();
    }
    for (std::uint32_t i = 0; i < count && decoder->isSound(); ++i) {
        judgement.findings.push_back(decodeFinding(decoder));
    }
    return judgement;
}

std::string encode(const PackageReport& report) {
    Encoder encoder;
    encoder.number(kVersion);
    for (const std::string* text : {&report.name, &report.version, &report.release, &report.arch,
                                    &report.sha256, &report.cause, &report.incomplete}) {
        encoder.text(*text);
    }
    encoder.number(static_cast<std::size_t>(report.causeCode));
    encoder.flag(report.validationEnabled);
    encoder.number(report.judgements.size());
    for (const Judgement& judgement : report.judgements) {
        encode(judgement, &encoder);
    }
    return encoder.take();
}

// A package is judged under every profile or not at all.
bool isWhole(const PackageReport& report, const std::vector<std::string>& profiles) {
    return report.judgements.size() == (report.judged() ? profiles.size() : 0) &&
           report.judged() == (report.causeCode == CauseCode::None);
}

CauseCode decodeCauseCode(Decoder* decoder) {
    const std::uint32_t code = decoder->number();
    if (code > static_cast<std::uint32_t>(CauseCode::Interrupted)) {
        decoder->fail();
        return CauseCode::None;
    }
    return static_cast<CauseCode>(code);
}

}  // namespace

std::string reportMessage(const PackageReport& report, std::size_t mostBytes) {
    std::size_t findings = 0;
    for (const Judgement& judgement : report.judgements) {
        findings = std::max(findings, judgement.findings.size());
    }
    std::string bytes;
    if (findings <= kMaxFindings) {
        bytes = encode(report);
    }
    if (findings > kMaxFindings || bytes.size() > mostBytes) {
        PackageReport failure;
        failure.setCause({CauseCode::TooLarge, kTooMuch});
        bytes = encode(failure);
    }
    return bytes;
}

std::optional<PackageReport> decodeReport(std::string_view bytes,
                                          const std::vector<std::string>& profiles) {
    Decoder decoder(bytes);
    if (decoder.number() != kVersion) {
        return std::nullopt;
    }
    PackageReport report;
    for (std::string* text : {&report.name, &report.version, &report.release, &report.arch,
                              &report.sha256, &report.cause, &report.incomplete}) {
        *text = decoder.text();
    }
    report.setCause({decodeCauseCode(&decoder), report.cause});
    report.validationEnabled = decoder.flag();
    const std::uint32_t count = decoder.number();
    if (count > profiles.size()) {
        return std::nullopt;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        report.judgements.push_back(decodeJudgement(profiles[i], &decoder));
    }
    if (!decoder.isSound() || !decoder.isAtEnd() || !isWhole(report, profiles)) {
        return std::nullopt;
    }
    return report;
}

}  // namespace pkgvet::cli
