#pragma once

#include "simulator/random.h"

/// Random numbers that depend on the seed and the number of the action alone: a seed gives the same actions
/// again, however the threads ran.
class Chance
{
public:
    Chance(quint64 seed, int action) : m_state(simulator::mixed(seed, static_cast<quint64>(action))) {}

    /// lowest <= result <= highest
    [[nodiscard]] int between(int lowest, int highest)
    {
        m_state = simulator::mixed(m_state);
        const auto choices = static_cast<quint64>(highest) - static_cast<quint64>(lowest) + 1;
        return lowest + static_cast<int>(m_state % choices);
    }
    [[nodiscard]] bool oneIn(int times) { return between(1, times) == 1; }

    template <typename List>
    [[nodiscard]] const auto &of(const List &list)
    {
        return list[static_cast<decltype(list.size())>(between(0, static_cast<int>(list.size()) - 1))];
    }

private:
    quint64 m_state;
};
