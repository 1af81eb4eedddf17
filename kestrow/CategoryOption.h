#pragma once

#include "storage/StorageCategory.h"

#include <string>

namespace kestrow::cli {

// The category a `--category` value names, in any case, underscores optional
// ("DOCKER_VM", "docker_vm", "dockerVM"). Throws UsageError listing the accepted names.
[[nodiscard]] StorageCategory parseCategoryOption(const std::string& given);

} // namespace kestrow::cli
