#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace kestrow {

// One file object, whatever name reaches it: the key that counts a file with several names once.
struct InodeKey {
    std::uint64_t dev;
    std::uint64_t ino;
    bool operator==(const InodeKey&) const = default;
};

struct InodeKeyHash {
    std::size_t operator()(const InodeKey& key) const noexcept
    {
        return std::hash<std::uint64_t>{}(key.ino * 0x9E3779B97F4A7C15ULL ^ key.dev);
    }
};

} // namespace kestrow
