#pragma once

namespace kestrow {

// The operating system this build runs on, for services whose commands and protections
// differ by system.
enum class HostSystem { macOS, gnuLinux };

[[nodiscard]] HostSystem currentHostSystem();

} // namespace kestrow
