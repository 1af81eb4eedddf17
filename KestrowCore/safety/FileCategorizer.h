#pragma once

#include "safety/FileCategory.h"

#include <QString>

namespace kestrow {

// Gives a file its coarse kind from its name alone, never from its contents: well-known
// names first, then six fixed sets of extensions, then the platform's table of file types.
// Stateless; the tables are built once.
class FileCategorizer {
public:
    [[nodiscard]] static FileCategory categorize(const QString& path);

private:
    [[nodiscard]] static FileCategory categorizeByTypeTable(const QString& extension);
};

} // namespace kestrow
