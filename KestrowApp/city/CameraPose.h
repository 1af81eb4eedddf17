#pragma once

namespace kestrow {

// Where the stage's camera stands: turned by `yaw` and `pitch` (radians) about the stage's
// centre, zoomed by `scale`, and panned to `x`, `y`, `z`.
struct CameraPose {
    double yaw = 0;
    double pitch = 0;
    double scale = 1;
    double x = 0;
    double y = 0;
    double z = 0;

    friend bool operator==(const CameraPose&, const CameraPose&) = default;
};

} // namespace kestrow
