// Owners of system handles. Each kind knows its own invalid value and how it is closed; assigning a
// new handle closes the old one. One thread at a time, as with any value.
#pragma once

#include <windows.h>

#include <utility>

namespace vantrel::platform {

template <typename Kind>
class Owner {
  public:
    using Value = typename Kind::Value;

    Owner() = default;
    explicit Owner(Value value) : value_(value) {}
    Owner(Owner&& other) noexcept : value_(std::exchange(other.value_, Kind::Invalid())) {}
    Owner& operator=(Owner&& other) noexcept {
        if (this != &other) {
            Close();
            value_ = std::exchange(other.value_, Kind::Invalid());
        }
        return *this;
    }
    ~Owner() { Close(); }

    Value Get() const { return value_; }
    bool IsValid() const { return value_ != Kind::Invalid(); }
    // Closes now; false when the system reports a failure (GetLastError). Nothing to close is fine.
    bool Close() {
        const Value value = std::exchange(value_, Kind::Invalid());
        return value == Kind::Invalid() || Kind::Close(value);
    }

  private:
    Value value_ = Kind::Invalid();
};

struct FileKind {
    using Value = HANDLE;
    static Value Invalid() { return INVALID_HANDLE_VALUE; }
    static bool Close(Value value) { return CloseHandle(value) != 0; }
};
struct SearchKind {
    using Value = HANDLE;
    static Value Invalid() { return INVALID_HANDLE_VALUE; }
    static bool Close(Value value) { return FindClose(value) != 0; }
};
struct ObjectKind {  // events, mutexes, processes
    using Value = HANDLE;
    static Value Invalid() { return nullptr; }
    static bool Close(Value value) { return CloseHandle(value) != 0; }
};
struct KeyKind {
    using Value = HKEY;
    static Value Invalid() { return nullptr; }
    static bool Close(Value value) { return RegCloseKey(value) == ERROR_SUCCESS; }
};

using FileHandle = Owner<FileKind>;
using SearchHandle = Owner<SearchKind>;
using ObjectHandle = Owner<ObjectKind>;
using KeyHandle = Owner<KeyKind>;

}  // namespace vantrel::platform
