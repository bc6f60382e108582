// Walks a pattern with the recursion of libstdc++'s compiler in mind: it recurses for each term of
// a row, and comes back at the end of the row, that is at "|", ")" or the end of the pattern.
#include "pkgvet/pattern/pattern_shape.h"

#include <algorithm>
#include <regex>
#include <vector>

namespace pkgvet {

namespace {

// Measured with libstdc++ 12 on x86-64, in bytes for each:
//
//                                 -O3    -O0    -O3 hardened    -O1 with sanitizers
//   term to compile                96    144             144                    800
//   group to compile              560    528             704                  3,408
//   alternative to match          113    113             128                    672
//
// With -O3, a stack of 8 MiB overflows at 87,000 terms in a row or 15,000 groups in one another.
// clang takes less than three quarters of the last.
#if defined(__SANITIZE_ADDRESS__) || defined(__clang__)
constexpr EngineFrames kFrames = {832, 3456, 704};
#elif !defined(__OPTIMIZE__) || defined(__SSP_STRONG__) || defined(_FORTIFY_SOURCE)
constexpr EngineFrames kFrames = {160, 768, 256};
#else
constexpr EngineFrames kFrames = {100, 576, 144};
#endif

constexpr std::size_t kMaxStates = _GLIBCXX_REGEX_STATE_LIMIT;
// An alternative is a state with a beginning and an end.
constexpr std::size_t kMaxAlternatives = kMaxStates / 3;
constexpr std::size_t kStatesOfACharacter = 3;

// For a bracket expression the compiler tries all characters, and for a counted repeat it copies
// what it has made.
constexpr std::size_t kStepsOfATerm = 10;
constexpr std::size_t kStepsOfABracketExpression = 600;
constexpr std::size_t kStepsOfACopiedState = 300;
// What the matcher keeps of each state of the whole pattern, anew in each lookahead.
constexpr std::size_t kMemoryOfAState = 32;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

class ShapeReader {
public:
    explicit ShapeReader(std::string_view pattern) : rest_(pattern), size_(pattern.size()) {}

    PatternShape read() {
        while (!rest_.empty() && !stopped_ && states_ <= kMaxStates) {
            readToken(take());
        }
        shape_.alternatives = std::min(shape_.alternatives * copies_, kMaxAlternatives);
        shape_.states = std::min(size_ * kStatesOfACharacter * copies_, kMaxStates);
        shape_.compilerSteps += copies_ > 1 ? shape_.states * kStepsOfACopiedState : 0;
        if (shape_.lookaheadDepth > 0) {
            shape_.lookaheadMemory = kMemoryOfAState * shape_.states;
        }
        return shape_;
    }

private:
    // What is open: the pattern itself, then one for each group around the current place.
    struct Group {
        std::size_t terms = 0;  // in the current row
        bool isLookahead = false;
    };

    char take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    bool takeIf(char c) {
        const bool isNext = !rest_.empty() && rest_.front() == c;
        rest_.remove_prefix(isNext ? 1 : 0);
        return isNext;
    }

    void readToken(char c) {
        switch (c) {
            case '(':
                return openGroup();
            case ')':
                return closeGroup();
            case '|':
                return readAlternative();
            case '*':
            case '+':
            case '?':
            case '{':
                return readQuantifier(c);
            case '[':
                skipBracketExpression();
                shape_.compilerSteps += kStepsOfABracketExpression;
                return addTerm(true);
            case '\\':
                return readEscape();
            default:
                return addTerm(c != '^' && c != '$');
        }
    }

    void addTerm(bool isQuantifiable) {
        isQuantifiable_ = isQuantifiable;
        ++states_;
        ++groups_.back().terms;
        shape_.compilerSteps += kStepsOfATerm;
        grow(kFrames.term);
    }

    void openGroup() {
        const bool isSpecial = takeIf('?');
        const bool isPlain = isSpecial && takeIf(':');
        const bool isLookahead = isSpecial && !isPlain && (takeIf('=') || takeIf('!'));
        stopped_ = isSpecial && !isPlain && !isLookahead;
        isQuantifiable_ = false;
        groups_.push_back({0, isLookahead});
        lookaheads_ += isLookahead ? 1 : 0;
        shape_.lookaheadDepth = std::max(shape_.lookaheadDepth, lookaheads_);
        ++states_;
        grow(kFrames.group);
    }

    void closeGroup() {
        if (groups_.size() == 1) {
            stopped_ = true;
            return;
        }
        endRow();
        const bool isLookahead = groups_.back().isLookahead;
        lookaheads_ -= isLookahead ? 1 : 0;
        groups_.pop_back();
        stack_ -= kFrames.group;
        addTerm(!isLookahead);
    }

    void readAlternative() {
        endRow();
        isQuantifiable_ = false;
        ++shape_.alternatives;
        states_ += 2;
    }

    void endRow() {
        stack_ -= groups_.back().terms * kFrames.term;
        groups_.back().terms = 0;
    }

    void grow(std::size_t bytes) {
        stack_ += bytes;
        shape_.compilerStack = std::max(shape_.compilerStack, stack_);
    }

    void readQuantifier(char c) {
        if (!isQuantifiable_) {
            stopped_ = true;
            return;
        }
        states_ += c == '?' ? 2 : 1;
        if (c == '{') {
            readCounts();
        }
        shape_.alternatives += takeIf('?') ? 1 : 0;  // lazy: what follows is tried first
    }

    void readCounts() {
        std::size_t count = readNumber(0);
        if (takeIf(',')) {
            count = std::max(count + 1, readNumber(0));
        }
        copies_ = std::min(kMaxStates, copies_ * std::max<std::size_t>(count, 1));
        stopped_ = !takeIf('}');
    }

    // The digits that follow number, in the type that the engine reads them into.
    std::size_t readNumber(long number) {
        while (!rest_.empty() && isDigit(rest_.front())) {
            const long digit = take() - '0';
            shape_.hasHugeNumber = shape_.hasHugeNumber ||
                                   __builtin_mul_overflow(number, 10L, &number) ||
                                   __builtin_add_overflow(number, digit, &number);
        }
        return shape_.hasHugeNumber ? kMaxStates
                                    : std::min(kMaxStates, static_cast<std::size_t>(number));
    }

    // Backslash and what belongs to it are one term, whatever its length.
    void readEscape() {
        if (rest_.empty()) {
            stopped_ = true;
            return;
        }
        const char c = rest_.front();
        skipEscape();
        addTerm(c != 'b' && c != 'B');
    }

    void skipEscape() {
        const char c = take();
        if (c != '0' && isDigit(c)) {
            readNumber(c - '0');  // of a back-reference
            return;
        }
        const std::size_t operands = c == 'c' ? 1 : c == 'x' ? 2 : c == 'u' ? 4 : 0;
        rest_.remove_prefix(std::min(operands, rest_.size()));
    }

    // Unlike in POSIX, "]" always ends the expression, and a backslash escapes.
    void skipBracketExpression() {
        takeIf('^');
        while (!takeIf(']')) {
            if (rest_.empty()) {
                stopped_ = true;
                return;
            }
            skipInBracketExpression(take());
        }
    }

    void skipInBracketExpression(char c) {
        if (rest_.empty()) {
            return;
        }
        const char next = rest_.front();
        if (c == '\\') {
            skipEscape();
        } else if (c == '[' && (next == ':' || next == '.' || next == '=')) {
            rest_.remove_prefix(1);  // "[:alpha:]", which ends with the same character and "]"
            rest_.remove_prefix(std::min(rest_.find(next), rest_.size()));
            takeIf(next);
            takeIf(']');
        }
    }

    std::string_view rest_;
    PatternShape shape_;
    std::vector<Group> groups_ = std::vector<Group>(1);
    std::size_t size_;
    std::size_t states_ = 0;  // at least so many, with which the engine may have given up by now
    std::size_t lookaheads_ = 0;  // open ones
    std::size_t stack_ = 0;       // of the compiler at the current place
    std::size_t copies_ = 1;      // that counted repeats make of one state, at most
    bool isQuantifiable_ = false;
    bool stopped_ = false;
};

}  // namespace

EngineFrames engineFrames() {
    return kFrames;
}

PatternShape shapeOf(std::string_view pattern) {
    return ShapeReader(pattern).read();
}

}  // namespace pkgvet
