// Composes findings and keeps the verdict that follows from them.
#include "pkgvet/report/findings.h"

#include <array>
#include <cassert>

#include "pkgvet/report/log_line.h"

namespace pkgvet {

namespace {

// A rule that gives more or fewer texts than the message has places is a mistake of ours.
void write(LogLevel level, const Message& message, Findings::Texts texts) {
    std::array<std::string_view, Message::kMostPieces> line;
    std::size_t size = 0;
    const auto* text = texts.begin();
    for (const Piece& piece : message.pieces()) {
        const bool isPlace = piece.kind != Piece::Kind::Words;
        assert(!isPlace || text != texts.end());
        line.at(size++) = isPlace ? *text++ : piece.words;
    }
    assert(text == texts.end());
    writeLogLine(level, {line.data(), size});
}

}  // namespace

void Findings::violation(const Message& message, Texts texts) {
    failures_ |= kViolation;
    write(LogLevel::Error, message, texts);
}

void Findings::grave(LogLevel level, const Message& message, Texts texts) {
    failures_ |= kGraveFinding;
    write(level, message, texts);
}

void Findings::warning(const Message& message, Texts texts) {
    write(LogLevel::Warning, message, texts);
}

void Findings::info(const Message& message, Texts texts) {
    write(LogLevel::Info, message, texts);
}

bool Findings::isAccepted(bool validationEnabled) const {
    return validationEnabled ? failures_ == 0 : (failures_ & kGraveFinding) == 0;
}

}  // namespace pkgvet
