#pragma once

namespace kestrow {

// The height factors of the two towers that grow with the disk.
struct BuildingScales {
    double system = 0;
    double apps = 0;

    friend bool operator==(const BuildingScales&, const BuildingScales&) = default;
};

} // namespace kestrow
