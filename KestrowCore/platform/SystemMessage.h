#pragma once

#include <QString>

#include <string>
#include <system_error>

namespace kestrow {

// The system's text for an errno value ("No such file or directory"), as messages quote it.
class SystemMessage {
public:
    [[nodiscard]] static QString of(int errorCode)
    {
        return QString::fromStdString(std::generic_category().message(errorCode));
    }
};

} // namespace kestrow
