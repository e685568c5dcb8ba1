#include "common/dos_mask.h"

#include <vector>

#include "common/utf.h"

namespace vantrel {

namespace {

// Wildcards with the extended meaning that they get in Translate, as characters that no name can
// hold.
constexpr char32_t kStarToLastDot = U'<';
constexpr char32_t kOneOrNone = U'>';
constexpr char32_t kDotOrEnd = U'"';

std::u32string CodePoints(std::string_view utf8) {
    std::u32string points;
    for (std::size_t position = 0; position < utf8.size();) {
        points.push_back(utf::Next(utf8, position));
    }
    return points;
}

// Gives the wildcards their exact meaning, as the directory search of Windows does.
std::u32string Translate(std::u32string mask) {
    if (mask == U"*.*") {
        return U"*";
    }
    if (mask.size() >= 2 && mask.ends_with(U"*.")) {
        mask.pop_back();
        mask.back() = kStarToLastDot;
    }
    // Elsewhere a dot at the end means nothing, because no name ends in one.
    while (mask.size() >= 2 && mask.back() == U'.') {
        mask.pop_back();
    }
    for (std::size_t i = 0; i < mask.size(); ++i) {
        const bool wild = mask[i] == U'?' || mask[i] == U'*' || mask[i] == kStarToLastDot;
        if (i > 0 && mask[i] == U'.' && mask[i - 1] == U'*') {
            mask[i - 1] = kStarToLastDot;
        }
        if (i > 0 && wild && mask[i - 1] == U'.') {
            mask[i - 1] = kDotOrEnd;
        }
        if (mask[i] == U'?') {
            mask[i] = kOneOrNone;
        }
    }
    return mask;
}

// Backtracking with memory: whether pattern[p..] matches name[n..], where `failed_` holds every
// pair that did not, so that the work is bounded by the product of both lengths.
class Matcher {
  public:
    Matcher(const std::u32string& pattern, const std::u32string& name)
        : pattern_(pattern),
          name_(name),
          last_dot_(name.rfind(U'.')),
          failed_((pattern.size() + 1) * (name.size() + 1)) {}

    bool Match(std::size_t p, std::size_t n) {
        if (p == pattern_.size()) {
            return n == name_.size();
        }
        const std::size_t state = p * (name_.size() + 1) + n;
        if (failed_[state]) {
            return false;
        }
        const bool matched = Step(p, n);
        failed_[state] = !matched;
        return matched;
    }

  private:
    bool Step(std::size_t p, std::size_t n) {
        const bool at_end = n == name_.size();
        switch (pattern_[p]) {
            case U'*':
                return Match(p + 1, n) || (!at_end && Match(p, n + 1));
            case kStarToLastDot:
                return Match(p + 1, n) || (!at_end && n != last_dot_ && Match(p, n + 1));
            case kOneOrNone:
                return at_end || name_[n] == U'.' ? Match(p + 1, n) : Match(p + 1, n + 1);
            case kDotOrEnd:
                return at_end ? Match(p + 1, n) : name_[n] == U'.' && Match(p + 1, n + 1);
            default:
                return !at_end && name_[n] == pattern_[p] && Match(p + 1, n + 1);
        }
    }

    const std::u32string& pattern_;
    const std::u32string& name_;
    std::size_t last_dot_;
    std::vector<bool> failed_;
};

}  // namespace

DosMask::DosMask(std::string_view folded_mask)
    : pattern_(Translate(CodePoints(folded_mask))), everything_(pattern_ == U"*") {}

bool DosMask::Matches(std::string_view folded_name) const {
    return everything_ || Matcher(pattern_, CodePoints(folded_name)).Match(0, 0);
}

}  // namespace vantrel
