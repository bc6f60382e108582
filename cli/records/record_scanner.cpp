// Finds the ends of JSON values without reading them.
#include "cli/records/record_scanner.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "cli/base/fault.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16U;
// More than --max-report lets a package have by far, so that a file cannot fill the memory.
constexpr std::size_t kLargestValue = std::size_t{1} << 30U;
// No report goes deeper than a few levels.
constexpr std::size_t kMostLevels = 64;

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kEndsOfScalars = ",:]}[{\" \t\r\n";

bool isAmong(int c, std::string_view characters) {
    return c >= 0 && characters.find(static_cast<char>(c)) != std::string_view::npos;
}

// Columns count characters, of which these bytes are not the first.
bool isContinuation(int c) {
    return (static_cast<unsigned>(c) & 0xc0U) == 0x80U;
}

}  // namespace

RecordScanner::RecordScanner(std::string path, std::string key)
    : path_(std::move(path)), recordsKey_(std::move(key)), file_(path_), buffer_(kBufferSize) {}

RecordPiece RecordScanner::next() {
    switch (state_) {
        case State::Outside:
            return nextOutside();
        case State::InObject:
            return nextMember();
        case State::InRecords:
            break;
    }
    return nextElement();
}

RecordPiece RecordScanner::nextOutside() {
    const int c = peekBehindBlanks();
    if (c == kEnd) {
        return {};
    }
    if (c != '{') {
        fail("an object should stand here");
    }
    get();
    state_ = State::InObject;
    isFirst_ = true;
    return nextMember();
}

RecordPiece RecordScanner::nextMember() {
    if (peekBehindBlanks() == '}') {
        return endObject();
    }
    if (!std::exchange(isFirst_, false)) {
        passComma("a comma or the end of the object should stand here");
    }
    if (peekBehindBlanks() == kEnd) {
        return torn();
    }
    if (peek() != '"') {
        fail("a key should stand here");
    }
    std::string key;
    if (!copyValue(&key) || peekBehindBlanks() == kEnd) {
        return torn();
    }
    if (get() != ':') {
        fail("a colon should stand here");
    }
    return nextValue(key.substr(1, key.size() - 2));
}

// Of the member whose key is key.
RecordPiece RecordScanner::nextValue(const std::string& key) {
    if (key == recordsKey_ && peekBehindBlanks() == '[') {
        get();
        state_ = State::InRecords;
        isFirst_ = true;
        return nextElement();
    }
    RecordPiece piece = value(RecordPiece::Kind::Member);
    piece.key = key;
    return piece;
}

RecordPiece RecordScanner::endObject() {
    get();
    state_ = State::Outside;
    // A line that is not ended may be one that is still written to.
    if (peek() == '\n') {
        get();
    }
    wholeSize_ = offset_;
    RecordPiece end;
    end.kind = RecordPiece::Kind::ObjectEnd;
    return end;
}

RecordPiece RecordScanner::nextElement() {
    const int c = peekBehindBlanks();
    if (c == ']') {
        get();
        state_ = State::InObject;
        isFirst_ = false;
        return nextMember();
    }
    if (!std::exchange(isFirst_, false)) {
        passComma("a comma or the end of the array should stand here");
    }
    return value(RecordPiece::Kind::Element);
}

RecordPiece RecordScanner::value(RecordPiece::Kind kind) {
    peekBehindBlanks();
    RecordPiece piece;
    piece.kind = kind;
    piece.position = position_;
    piece.offset = offset_;
    return copyValue(&piece.text) ? piece : torn();
}

RecordPiece RecordScanner::torn() const {
    RecordPiece piece;
    piece.kind = RecordPiece::Kind::Torn;
    piece.position = position_;
    return piece;
}

// False where the file ends before the value does.
bool RecordScanner::copyValue(std::string* text) {
    const int c = peek();
    if (c == '"') {
        return copyString(text);
    }
    if (c == '{' || c == '[') {
        return copyNested(text);
    }
    copyScalar(text);
    if (text->empty() && peek() != kEnd) {
        fail("a value should stand here");
    }
    return peek() != kEnd;
}

bool RecordScanner::copyString(std::string* text) {
    append(get(), text);
    while (true) {
        const int c = get();
        if (c == kEnd) {
            return false;
        }
        append(c, text);
        if (c == '"') {
            return true;
        }
        if (c == '\\') {
            append(get(), text);
        }
    }
}

bool RecordScanner::copyNested(std::string* text) {
    std::size_t depth = 0;
    do {
        const int c = peek();
        if (c == kEnd) {
            return false;
        }
        if (c == '"') {
            if (!copyString(text)) {
                return false;
            }
            continue;
        }
        depth += c == '{' || c == '[' ? 1 : 0;
        depth -= c == '}' || c == ']' ? 1 : 0;
        if (depth > kMostLevels) {
            fail("is nested too deeply");
        }
        append(get(), text);
    } while (depth > 0);
    return true;
}

void RecordScanner::copyScalar(std::string* text) {
    while (peek() != kEnd && !isAmong(peek(), kEndsOfScalars)) {
        append(get(), text);
    }
}

void RecordScanner::append(int c, std::string* text) const {
    if (text->size() >= kLargestValue) {
        fail("is too large");
    }
    if (c != kEnd) {
        *text += static_cast<char>(c);
    }
}

int RecordScanner::peek() {
    while (begin_ == end_) {
        begin_ = 0;
        end_ = file_.read(&buffer_);
        if (end_ == 0) {
            buffer_ = {};  // there may be thousands of reports to come back to
            return kEnd;
        }
    }
    return static_cast<unsigned char>(buffer_[begin_]);
}

int RecordScanner::get() {
    const int c = peek();
    if (c == kEnd) {
        return c;
    }
    ++begin_;
    ++offset_;
    if (c == '\n') {
        position_ = {position_.line + 1, 1};
    } else if (!isContinuation(c)) {
        ++position_.column;
    }
    return c;
}

// The end of the file is for whoever reads on.
void RecordScanner::passComma(const char* complaint) {
    const int c = peekBehindBlanks();
    if (c != ',' && c != kEnd) {
        fail(complaint);
    }
    get();
}

int RecordScanner::peekBehindBlanks() {
    while (isAmong(peek(), kBlanks)) {
        get();
    }
    return peek();
}

void RecordScanner::fail(const std::string& cause) const {
    throw std::runtime_error(describe({path_, std::string(), cause, position_}));
}

}  // namespace pkgvet::cli
