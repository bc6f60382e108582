// To compile a bracket expression takes the engine some 100,000 instructions, and a rule tree is
// read for its faults before every run.
#include "pkgvet/pattern/sound_pattern.h"

#include <cstddef>
#include <utility>

#include "pkgvet/pattern/pattern_characters.h"

namespace pkgvet {

namespace {

// Far from all limits of the engine.
constexpr std::size_t kMostCharacters = 1024;

class SoundReader {
public:
    explicit SoundReader(std::string_view pattern) : rest_(pattern) {}

    bool read() {
        while (!rest_.empty()) {
            if (!readToken(take())) {
                return false;
            }
        }
        return !isInGroup_;
    }

private:
    char take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    bool takeIf(char c) {
        const bool isNext = rest_.starts_with(c);
        rest_.remove_prefix(isNext ? 1 : 0);
        return isNext;
    }

    bool readToken(char c) {
        switch (c) {
            case '(':
                return openGroup();
            case ')':
                isQuantifiable_ = !isLookahead_;
                return std::exchange(isInGroup_, false);
            case '|':
                isQuantifiable_ = false;
                return true;
            case '*':
            case '+':
            case '?':
                return std::exchange(isQuantifiable_, false);
            case '[':
                return isQuantifiable_ = readBracketExpression();
            case '\\':
                return isQuantifiable_ = !rest_.empty() && isEscapable(take());
            default:
                return isQuantifiable_ = c == '.' || isOrdinary(c);
        }
    }

    bool openGroup() {
        const bool isSpecial = takeIf('?');
        isLookahead_ = isSpecial && (takeIf('=') || takeIf('!'));
        isQuantifiable_ = false;
        return !std::exchange(isInGroup_, true) && (!isSpecial || isLookahead_ || takeIf(':'));
    }

    bool readBracketExpression() {
        takeIf('^');
        bool isEmpty = true;
        while (!takeIf(']')) {
            if (rest_.empty() || !readMember(take())) {
                return false;
            }
            isEmpty = false;
        }
        return !isEmpty;
    }

    // A character or a range of them. A dash that makes no range is not known.
    bool readMember(char first) {
        if (!takeIf('-')) {
            return first == '.' || (first != '-' && isOrdinary(first));
        }
        return !rest_.empty() && isAlphanumeric(first) && isAlphanumeric(rest_.front()) &&
               first <= take();
    }

    std::string_view rest_;
    bool isQuantifiable_ = false;  // whether a repeat may follow
    bool isInGroup_ = false;
    bool isLookahead_ = false;
};

}  // namespace

bool isSurelySound(std::string_view pattern) {
    return pattern.size() <= kMostCharacters && SoundReader(pattern).read();
}

}  // namespace pkgvet
