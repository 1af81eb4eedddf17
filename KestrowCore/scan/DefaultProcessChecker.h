#pragma once

#include <QString>

namespace kestrow {

// True when a running process has a name containing `name`, ignoring case.
[[nodiscard]] bool defaultProcessChecker(const QString& name);

} // namespace kestrow
