#include "zip/reader/taken_names.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace vantrel::zip {

namespace {

constexpr std::size_t kFewestSlots = 16;

std::size_t HashOf(std::string_view key) { return std::hash<std::string_view>()(key); }
// Of the bits that do not choose the slot.
std::uint32_t MarkOf(std::size_t hash) {
    return static_cast<std::uint32_t>(hash >> (8 * (sizeof hash - sizeof(std::uint32_t))));
}

}  // namespace

TakenNames::TakenNames(std::size_t expected)
    : slots_(std::bit_ceil(std::max(2 * (expected + 1), kFewestSlots))) {}

TakenNames::Place TakenNames::Take(std::string_view key) {
    if (2 * (ends_.size() + 1) > slots_.size()) {
        Grow();
    }
    const std::size_t hash = HashOf(key);
    Slot& slot = Find(key, hash);
    if (slot.taken != 0) {
        return {slot.taken - 1, false};
    }
    bytes_ += key;
    ends_.push_back(bytes_.size());
    slot = {MarkOf(hash), static_cast<std::uint32_t>(ends_.size())};
    return {ends_.size() - 1, true};
}

TakenNames::Slot& TakenNames::Find(std::string_view key, std::size_t hash) {
    const std::uint32_t mark = MarkOf(hash);
    for (std::size_t i = hash;; ++i) {
        Slot& slot = slots_[i & (slots_.size() - 1)];
        if (slot.taken == 0 || (slot.mark == mark && KeyOf(slot.taken - 1) == key)) {
            return slot;
        }
    }
}

std::string_view TakenNames::KeyOf(std::size_t number) const {
    const std::size_t start = number == 0 ? 0 : ends_[number - 1];
    return std::string_view(bytes_).substr(start, ends_[number] - start);
}

void TakenNames::Grow() {
    slots_.assign(2 * slots_.size(), Slot{});
    for (std::size_t number = 0; number < ends_.size(); ++number) {
        const std::string_view key = KeyOf(number);
        const std::size_t hash = HashOf(key);
        Find(key, hash) = {MarkOf(hash), static_cast<std::uint32_t>(number + 1)};
    }
}

}  // namespace vantrel::zip
