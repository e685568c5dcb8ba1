// The names that entries of an archive have taken in their folders. Every entry asks, so this is
// one flat table: a question costs one look into far memory, where a map made of nodes takes three.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel::zip {

class TakenNames {
  public:
    // `expected` names have room before the table must grow.
    explicit TakenNames(std::size_t expected);

    struct Place {
        std::size_t number = 0;  // in the order of taking, from 0
        bool is_new = false;     // false: somebody has taken it before
    };
    // `key` is one that all spellings of the name in its folder share (KeyInFolder); it is copied.
    Place Take(std::string_view key);

  private:
    struct Slot {
        std::uint32_t mark = 0;   // of the key's hash, so that few keys are compared
        std::uint32_t taken = 0;  // the name's number and 1; 0 where the slot is free
    };
    // The slot of `key`, or the free one where it belongs.
    Slot& Find(std::string_view key, std::size_t hash);
    std::string_view KeyOf(std::size_t number) const;
    void Grow();

    std::vector<Slot> slots_;        // a power of two, half of it free at least
    std::string bytes_;              // of all keys, one behind the other
    std::vector<std::size_t> ends_;  // of each key in them
};

}  // namespace vantrel::zip
