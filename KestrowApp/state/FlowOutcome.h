#pragma once

#include "support/KestrowError.h"

#include <QString>

#include <exception>
#include <optional>

namespace kestrow {

// How the work of one flow step ended: a value, an error's description, or a stop.
template <typename T> struct FlowOutcome {
    std::optional<T> value;
    QString error;
    bool cancelled = false;

    template <typename Work> [[nodiscard]] static FlowOutcome attempt(Work&& work)
    {
        try {
            return {.value = work()};
        } catch (const CancellationError&) {
            return {.cancelled = true};
        } catch (const KestrowError& error) {
            return {.error = error.description()};
        } catch (const std::exception& error) {
            return {.error = QString::fromLocal8Bit(error.what())};
        }
    }
};

} // namespace kestrow
