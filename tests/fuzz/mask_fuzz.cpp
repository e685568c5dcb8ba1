// Any mask and any name (the first two lines of the input), against a matcher that tries every way.
#include <cstdint>
#include <string>
#include <string_view>

#include "common/dos_mask.h"
#include "common/utf.h"
#include "platform/host/host_code_page.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

using vantrel::test::Demand;

// Characters. The matcher below tries every way, which takes too long for longer texts.
constexpr std::size_t kMaxLength = 12;

std::u32string Characters(std::string_view utf8) {
    std::u32string text;
    for (std::size_t at = 0; at < utf8.size();) {
        text += vantrel::utf::Next(utf8, at);
    }
    return text;
}

// A mask as its user reads it: the meaning of each character depends on its neighbours.
class SlowDosMask {
  public:
    explicit SlowDosMask(std::u32string mask) : mask_(std::move(mask)) {
        without_dot_ = mask_.ends_with(U"*.");
        if (mask_ == U"*.*") {
            mask_ = U"*";
        }
        // No name ends in a dot.
        while (mask_.size() > 1 && mask_.back() == U'.') {
            mask_.pop_back();
        }
    }

    bool Matches(std::u32string_view name) const { return From(0, name, name.rfind(U'.')); }

  private:
    // `last_dot` is where the last dot stands in `rest`, beyond its size when there is none left.
    bool From(std::size_t at, std::u32string_view rest, std::size_t last_dot) const {
        if (at == mask_.size()) {
            return rest.empty();
        }
        const auto behind = [&](std::size_t count) {
            return From(at + 1, rest.substr(count), last_dot - count);
        };
        if (mask_[at] == U'*') {
            std::size_t longest = rest.size();
            if (StopsAtLastDot(at) && last_dot < rest.size()) {
                longest = last_dot;
            }
            for (std::size_t count = 0; count <= longest; ++count) {
                if (behind(count)) {
                    return true;
                }
            }
            return false;
        }
        if (mask_[at] == U'?') {
            return behind(rest.empty() || rest.front() == U'.' ? 0 : 1);
        }
        if (mask_[at] == U'.' && IsWild(at + 1) && rest.empty()) {
            return behind(0);
        }
        return !rest.empty() && rest.front() == mask_[at] && behind(1);
    }
    bool StopsAtLastDot(std::size_t at) const {
        const bool is_last = at + 1 == mask_.size();
        return is_last ? without_dot_ : mask_[at + 1] == U'.';
    }
    bool IsWild(std::size_t at) const {
        return at < mask_.size() && (mask_[at] == U'*' || mask_[at] == U'?');
    }

    std::u32string mask_;
    bool without_dot_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static vantrel::platform::HostCodePage letters;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    // Round trips make both texts well-formed UTF-8, as all text inside the program is.
    const auto well_formed = [](std::string_view text) {
        return vantrel::utf::ToUtf8(vantrel::utf::ToUtf16(text));
    };
    const std::string mask = well_formed(vantrel::test::TakeLine(input));
    const std::string name = well_formed(vantrel::test::TakeLine(input));

    const std::u32string mask_characters = Characters(letters.Fold(mask));
    const std::u32string name_characters = Characters(letters.Fold(name));
    // Neither a name nor a mask can hold these.
    const bool has_forbidden = mask.find_first_of("<>\"") != std::string::npos;
    const bool is_long = mask_characters.size() > kMaxLength || name_characters.size() > kMaxLength;

    const bool matches = vantrel::DosMask(letters.Fold(mask)).Matches(letters.Fold(name));
    if (has_forbidden || is_long) {
        return 0;
    }
    Demand(matches == SlowDosMask(mask_characters).Matches(name_characters));
    return 0;
}
