#pragma once

#include <QString>

#include <exception>
#include <string>

namespace kestrow {

// Base of the typed errors. Each subsystem's error enumerates its cases and gives each one
// description text; `what()` carries the same text for diagnostics.
class KestrowError : public std::exception {
public:
    [[nodiscard]] virtual QString description() const = 0;
    [[nodiscard]] const char* what() const noexcept override;

private:
    mutable std::string m_what;
};

// A scan or task that was asked to stop. Never reported to the user as a failure.
class CancellationError : public KestrowError {
public:
    [[nodiscard]] QString description() const override;
};

} // namespace kestrow
