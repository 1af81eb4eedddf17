#pragma once

#include <QString>

namespace kestrow {

// Shows a file in the desktop's file manager, selected where the file manager can select it.
class FileReveal {
public:
    static void show(const QString& path);
};

} // namespace kestrow
