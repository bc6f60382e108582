// Takes reports in JSON and JSON Lines apart, a record at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/base/json_positions.h"
#include "cli/records/record_file.h"

namespace pkgvet::cli {

// A part of a file of records.
struct RecordPiece {
    enum class Kind {
        Member,     // a member of an object that is not in another
        Element,    // an element of such a member, where it is the array of records
        ObjectEnd,  // of an object that is not in another
        End,        // of the file
        Torn,       // the file ends in the middle of an object
    };

    Kind kind = Kind::End;
    std::string key;           // of a member
    std::string text;          // of the value, as it is written
    Position position;         // of the value
    std::uint64_t offset = 0;  // of the value, in bytes
};

// Walks through a file that is one JSON object or several, whatever its size: only one value is in
// memory at a time, and of the array of records only one element. It finds where values end, and
// leaves it to a parser to say whether they are JSON. Throws std::runtime_error with a line that
// names file, line and column.
class RecordScanner {
public:
    // The elements of the array under key are records.
    RecordScanner(std::string path, std::string key);

    RecordPiece next();

    // The number of bytes up to the end of the last object that was whole, with its line feed.
    std::uint64_t wholeSize() const { return wholeSize_; }

    // Bytes of the file, wherever the walk is.
    std::string textAt(std::uint64_t offset, std::size_t size) const {
        return file_.textAt(offset, size);
    }

private:
    static constexpr int kEnd = -1;

    enum class State { Outside, InObject, InRecords };

    RecordPiece nextOutside();
    RecordPiece nextMember();
    RecordPiece nextValue(const std::string& key);
    RecordPiece nextElement();
    RecordPiece endObject();
    RecordPiece value(RecordPiece::Kind kind);
    RecordPiece torn() const;
    bool copyValue(std::string* text);
    bool copyString(std::string* text);
    bool copyNested(std::string* text);
    void copyScalar(std::string* text);
    void append(int c, std::string* text) const;

    int peek();
    int get();
    int peekBehindBlanks();
    void passComma(const char* complaint);
    [[noreturn]] void fail(const std::string& cause) const;

    std::string path_;
    std::string recordsKey_;
    RecordFile file_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::uint64_t offset_ = 0;
    std::uint64_t wholeSize_ = 0;
    Position position_ = {1, 1};
    State state_ = State::Outside;
    bool isFirst_ = true;  // nothing of the object or array has been read yet
};

}  // namespace pkgvet::cli
