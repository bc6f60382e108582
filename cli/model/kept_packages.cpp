// Keeps packages as bytes.
#include "cli/model/kept_packages.h"

#include <array>
#include <bit>
#include <stdexcept>
#include <string>

#include "cli/base/byte_coding.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kDamaged = "what was kept of a package on disk is damaged";

void encode(const Finding& finding, Encoder* encoder) {
    encoder->text(finding.rule);
    encoder->number(static_cast<std::size_t>(finding.severity));
    encoder->flag(finding.subject.has_value());
    encoder->text(finding.subject.value_or(std::string()));
    encoder->text(finding.message);
    encoder->number(static_cast<std::size_t>(finding.standing));
    encoder->text(finding.reason);
    encoder->wideNumber(finding.count);
}

Finding decodeFinding(Decoder* decoder) {
    Finding finding;
    finding.rule = decoder->text();
    finding.severity = static_cast<Severity>(decoder->number());
    const bool hasSubject = decoder->flag();
    const std::string_view subject = decoder->text();
    if (hasSubject) {
        finding.subject = subject;
    }
    finding.message = decoder->text();
    finding.standing = static_cast<Standing>(decoder->number());
    finding.reason = decoder->text();
    finding.count = decoder->wideNumber();
    return finding;
}

void encode(const Judgement& judgement, Encoder* encoder) {
    encoder->text(judgement.profile);
    encoder->flag(judgement.metaAccepted);
    encoder->flag(judgement.contentAccepted);
    encoder->flag(judgement.intact);
    encoder->flag(judgement.passes);
    encoder->number(judgement.findings.size());
    for (const Finding& finding : judgement.findings) {
        encode(finding, encoder);
    }
}

Judgement decodeJudgement(Decoder* decoder) {
    Judgement judgement;
    judgement.profile = decoder->text();
    judgement.metaAccepted = decoder->flag();
    judgement.contentAccepted = decoder->flag();
    judgement.intact = decoder->flag();
    judgement.passes = decoder->flag();
    const std::uint32_t count = decoder->number();
    for (std::uint32_t i = 0; i < count && decoder->isSound(); ++i) {
        judgement.findings.push_back(decodeFinding(decoder));
    }
    return judgement;
}

// The texts of a package in the order in which they are kept.
template <typename Package>
auto textsOf(Package& package) {
    return std::array{&package.path,    &package.name,          &package.version,
                      &package.release, &package.arch,          &package.sha256,
                      &package.cause,   &package.lastErrorLine, &package.incomplete,
                      &package.judgedBy};
}

std::string encode(const PackageReport& package) {
    Encoder encoder;
    for (const std::string* text : textsOf(package)) {
        encoder.text(*text);
    }
    encoder.number(static_cast<std::size_t>(package.causeCode));
    encoder.flag(package.validationEnabled);
    encoder.flag(package.seconds.has_value());
    encoder.wideNumber(std::bit_cast<std::uint64_t>(package.seconds.value_or(0)));
    encoder.wideNumber(package.position);
    encoder.number(package.judgements.size());
    for (const Judgement& judgement : package.judgements) {
        encode(judgement, &encoder);
    }
    return encoder.take();
}

PackageReport decode(std::string_view bytes) {
    Decoder decoder(bytes);
    PackageReport package;
    for (std::string* text : textsOf(package)) {
        *text = decoder.text();
    }
    package.causeCode = static_cast<CauseCode>(decoder.number());
    package.validationEnabled = decoder.flag();
    const bool hasSeconds = decoder.flag();
    const auto seconds = std::bit_cast<double>(decoder.wideNumber());
    if (hasSeconds) {
        package.seconds = seconds;
    }
    package.position = decoder.wideNumber();
    const std::uint32_t count = decoder.number();
    for (std::uint32_t i = 0; i < count && decoder.isSound(); ++i) {
        package.judgements.push_back(decodeJudgement(&decoder));
    }
    // Zeros would be a package that is accepted.
    if (!decoder.isSound() || !decoder.isAtEnd()) {
        throw std::runtime_error(kDamaged);
    }
    return package;
}

std::size_t keptCount(const RunReport& run) {
    return run.kept == nullptr ? 0 : run.kept->size();
}

}  // namespace

void KeptPackages::add(const PackageReport& package) {
    const std::string bytes = encode(package);
    spool_.write(bytes);
    ends_.push_back((ends_.empty() ? 0 : ends_.back()) + bytes.size());
}

PackageReport KeptPackages::at(std::size_t index) const {
    const std::uint64_t begin = index == 0 ? 0 : ends_[index - 1];
    return decode(spool_.part(begin, ends_[index] - begin));
}

std::size_t packageCount(const RunReport& run) {
    return keptCount(run) + run.packages.size();
}

PackageReport packageAt(const RunReport& run, std::size_t index) {
    const std::size_t kept = keptCount(run);
    return index < kept ? run.kept->at(index) : run.packages[index - kept];
}

void forEachPackage(const RunReport& run,
                    const std::function<void(const PackageReport& package)>& visit) {
    for (std::size_t i = 0; i < keptCount(run); ++i) {
        visit(run.kept->at(i));
    }
    for (const PackageReport& package : run.packages) {
        visit(package);
    }
}

}  // namespace pkgvet::cli
