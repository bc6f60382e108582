// Tells what the guard noted in the words of the catalogue.
#include "cli/integrity/payload_irregularity.h"

#include <algorithm>
#include <array>
#include <string>

#include "cli/catalogue/payload_messages.h"
#include "cli/integrity/integrity_findings.h"

namespace pkgvet::cli {

namespace {

// In the order of the irregularities.
constexpr std::array kMessages = {
    &kPayloadForeignBytes,    &kPayloadForeignFormat,     &kPayloadFieldsInvalid,
    &kPayloadPaddingNotEmpty, &kPayloadTrailerHasData,    &kPayloadGoesOn,
    &kPayloadNameSize,        &kPayloadNameEnd,           &kPayloadNameAbsolute,
    &kPayloadNameLeadsUp,     &kPayloadNameNotNormal,     &kPayloadNameTwice,
    &kPayloadNameIsDirectory, &kPayloadBelowNonDirectory, &kPayloadSpecialFile,
    &kPayloadUnknownType,     &kPayloadDirectoryHasData,  &kPayloadRootDirectory,
    &kPayloadLinkTarget,      &kPayloadHardLink,          &kPayloadSetId,
};
static_assert(kMessages.size() == static_cast<std::size_t>(Irregularity::Last) + 1);

bool hasSubject(const Message& message) {
    return std::any_of(message.pieces().begin(), message.pieces().end(),
                       [](const Piece& piece) { return piece.kind == Piece::Kind::Subject; });
}

}  // namespace

Finding irregularityFinding(const GuardNote& note) {
    const Message& message = *kMessages.at(static_cast<std::size_t>(note.irregularity));
    const std::string place = std::to_string(note.offset);
    return integrityFinding(message, {hasSubject(message) ? note.name : place});
}

}  // namespace pkgvet::cli
