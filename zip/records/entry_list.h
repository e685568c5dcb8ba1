// The entries of an archive, packed: a million of them take 60 to 70 MB, where objects with their
// strings take 160.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "zip/records/record_parser.h"

namespace vantrel::zip {

// Append-only, with random access. An entry is stored as numbers of variable length; the folder of
// its name is stored once for all entries of that folder that follow each other. Reading is safe
// from any number of threads, but not while an entry is appended.
class EntryList {
  public:
    // At most 2^32 - 1 entries, which is more than any memory holds.
    void Append(const StoredEntry& entry);

    std::size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }
    // `index` is below size(). Decodes the entry, which costs about as much as copying it.
    StoredEntry operator[](std::size_t index) const;
    StoredEntry back() const { return (*this)[count_ - 1]; }

    // Where an entry lies in the archive. Does not decode its name and times.
    struct Extent {
        std::uint64_t offset = 0;  // of the local header
        std::uint64_t packed_size = 0;
        // Of the fixed part and the name; 0 when the entry has no local header.
        std::size_t header_length = 0;
    };
    Extent ExtentOf(std::size_t index) const;

    class Iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = StoredEntry;
        using difference_type = std::ptrdiff_t;
        using pointer = const StoredEntry*;
        using reference = StoredEntry;

        Iterator() = default;
        Iterator(const EntryList& list, std::size_t index) : list_(&list), index_(index) {}
        StoredEntry operator*() const { return (*list_)[index_]; }
        Iterator& operator++() {
            ++index_;
            return *this;
        }
        Iterator operator++(int) {
            const Iterator before = *this;
            ++index_;
            return before;
        }
        bool operator==(const Iterator& other) const { return index_ == other.index_; }

      private:
        const EntryList* list_ = nullptr;
        std::size_t index_ = 0;
    };
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, count_}; }

  private:
    // Entries are kept in blocks, so that growing copies little and wastes little. A block's bytes
    // fit 32 bits: names have at most 65,535 bytes, three times as many in UTF-8.
    static constexpr std::size_t kBlockEntries = 4096;
    struct Block {
        std::string bytes;
        std::vector<std::uint32_t> starts;  // of each entry in `bytes`
    };

    std::string_view BytesFrom(std::size_t index) const;
    std::uint64_t FolderOf(std::string_view name, std::size_t length);

    std::vector<Block> blocks_;
    std::size_t count_ = 0;
    std::vector<std::string> folders_;  // with their last slash; [0] is ""
};

}  // namespace vantrel::zip
