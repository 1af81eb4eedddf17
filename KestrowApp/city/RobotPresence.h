#pragma once

#include <QString>

#include <map>
#include <vector>

namespace kestrow {

// How far each robot has walked on stage, 0 (off) to 1 (at its post). Robots walk on while on
// duty and off otherwise, at a steady pace that a stalled frame cannot turn into a jump.
class RobotPresence {
public:
    struct Duty {
        QString robotId;
        bool onDuty = false;
    };

    static constexpr double walkSeconds = 1.5;      // from off stage to the post
    static constexpr double longestStep = 1.0 / 30; // seconds of walking one step may cover

    // Puts every robot where its duty wants it, without walking.
    void settle(const std::vector<Duty>& duties);
    // Walks every robot towards its duty for `elapsed` seconds, at most one 1/30-second frame.
    // True when any robot moved.
    bool step(const std::vector<Duty>& duties, double elapsed);
    [[nodiscard]] bool isAtRest(const std::vector<Duty>& duties) const;
    [[nodiscard]] double presence(const QString& robotId) const;

private:
    std::map<QString, double> m_presence;
};

} // namespace kestrow
