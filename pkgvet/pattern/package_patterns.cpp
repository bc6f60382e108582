// Walks patterns from the outside: each of them once, and in it the texts that are still open. The
// answers are those of a walk over the texts, since a text is closed by the first pattern that
// matches it or throws.
#include "pkgvet/pattern/package_patterns.h"

#include <algorithm>
#include <map>
#include <regex>
#include <unordered_map>
#include <utility>

#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/pattern_shape.h"

namespace pkgvet {

namespace {

// In units of a step, as a look at the text is one.
constexpr std::size_t kStepsOfAMatch = 50;
constexpr std::size_t kMarksOfAStep = 64;
constexpr std::size_t kStepsOfAnAlternative = 20;
// So many cost no more than the looks at the text that are counted anyway.
constexpr std::size_t kFreeAlternatives = 50;

// What a match costs beside the steps that it counts. It begins by clearing a mark of each state,
// and may try each alternative at each place in the text, without a look at it.
std::size_t uncountedSteps(const PatternShape& shape, std::size_t textSize) {
    const std::size_t free = std::min(shape.alternatives, kFreeAlternatives);
    return kStepsOfAMatch + shape.states / kMarksOfAStep +
           (shape.alternatives - free) * kStepsOfAnAlternative * (textSize + 1);
}

using Numbers = std::vector<std::size_t>;  // of texts

// Texts by what a plain pattern of one shape sees of them. The shape is the pattern's length and
// the places of its characters that stand for any. Most patterns of a list share few shapes.
class ShapeIndex {
public:
    // candidates are the texts of the shape's length.
    ShapeIndex(const std::string& shape, const std::vector<std::string>& texts,
               const Numbers& candidates) {
        for (const std::size_t number : candidates) {
            add(shape, texts[number], number);
        }
    }

    // The numbers of the texts that the pattern matches.
    const Numbers& find(const std::string& plainText) const {
        static const Numbers none;
        const auto found = numbers_.find(plainText);
        return found == numbers_.end() ? none : found->second;
    }

private:
    void add(const std::string& shape, std::string text, std::size_t number) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (isLineEnd(text[i])) {
                return;  // which no plain pattern matches
            }
            text[i] = shape[i] == kAnyCharacter ? kAnyCharacter : text[i];
        }
        numbers_[std::move(text)].push_back(number);
    }

    std::unordered_map<std::string, Numbers> numbers_;
};

std::string shapeOfText(std::string plainText) {
    std::replace_if(
        plainText.begin(), plainText.end(), [](char c) { return c != kAnyCharacter; }, 'x');
    return plainText;
}

class PatternWalk {
public:
    explicit PatternWalk(const std::vector<std::string>& texts)
        : texts_(texts), answers_(texts.size()), isOpen_(texts.size(), true) {
        for (std::size_t i = 0; i < texts.size(); ++i) {
            numbersBySize_[texts[i].size()].push_back(i);
        }
    }

    std::vector<PatternAnswer> walk(const std::vector<std::string>& patterns) {
        openCount_ = texts_.size();
        for (std::size_t i = 0; i < patterns.size() && openCount_ > 0; ++i) {
            WholePattern pattern(patterns[i]);
            if (const std::string* plainText = pattern.plainText()) {
                tryPlain(*plainText);
            } else {
                tryEngine(shapeOf(patterns[i]), &pattern);
            }
        }
        return std::move(answers_);
    }

private:
    void tryPlain(const std::string& plainText) {
        const auto candidates = numbersBySize_.find(plainText.size());
        if (candidates == numbersBySize_.end()) {
            return;
        }
        const std::string shape = shapeOfText(plainText);
        auto index = shapes_.find(shape);
        if (index == shapes_.end()) {
            if (!spend(candidates->second.size() * shape.size())) {
                return;
            }
            index = shapes_.try_emplace(shape, shape, texts_, candidates->second).first;
        }
        for (const std::size_t number : index->second.find(plainText)) {
            if (isOpen_[number]) {
                answers_[number].isMatched = true;
                close(number);
            }
        }
    }

    // A pattern that does not compile closes every text that gets to it.
    void tryEngine(const PatternShape& shape, WholePattern* pattern) {
        if (!spend(shape.compilerSteps)) {
            return;
        }
        for (std::size_t i = 0; i < texts_.size() && openCount_ > 0; ++i) {
            if (isOpen_[i] && spend(uncountedSteps(shape, texts_[i].size()))) {
                tryOn(i, pattern);
            }
        }
    }

    void tryOn(std::size_t number, WholePattern* pattern) {
        try {
            answers_[number].isMatched = pattern->matches(texts_[number], &steps_);
        } catch (const std::regex_error&) {
            answers_[number].error = std::current_exception();
        }
        if (answers_[number].isMatched || answers_[number].error) {
            close(number);
        }
    }

    // False once there are not enough steps left, when nothing is open any more.
    bool spend(std::size_t steps) {
        if (steps <= steps_) {
            steps_ -= steps;
            return true;
        }
        steps_ = 0;
        const std::exception_ptr error =
            std::make_exception_ptr(std::regex_error(std::regex_constants::error_complexity));
        for (std::size_t i = 0; i < texts_.size(); ++i) {
            if (isOpen_[i]) {
                answers_[i].error = error;
                close(i);
            }
        }
        return false;
    }

    void close(std::size_t number) {
        isOpen_[number] = false;
        --openCount_;
    }

    const std::vector<std::string>& texts_;
    std::vector<PatternAnswer> answers_;
    std::vector<bool> isOpen_;
    std::size_t openCount_ = 0;
    std::unordered_map<std::size_t, Numbers> numbersBySize_;
    std::size_t steps_ = kMaxListSteps;
    std::map<std::string, ShapeIndex> shapes_;
};

}  // namespace

bool PatternAnswer::get() const {
    if (error) {
        std::rethrow_exception(error);
    }
    return isMatched;
}

std::vector<PatternAnswer> matchPackagePatterns(const std::vector<std::string>& patterns,
                                                const std::vector<std::string>& texts) {
    return PatternWalk(texts).walk(patterns);
}

}  // namespace pkgvet
