#pragma once

#include "platform/MachineFacts.h"

namespace lumaphone {

/// One thing that was looked at.
struct Finding
{
    enum class State {
        good,
        neutral, ///< neither good nor bad: something that the user does not want, as far as anybody knows
        advice, ///< the program works, but could do more
        problem, ///< something of the program cannot work
    };

    State state = State::good;
    QString text;
    QString step; ///< the one thing to do; empty where there is none

    bool operator==(const Finding &) const = default;
};

struct FindingGroup
{
    QString title;
    QList<Finding> findings;
};

/// What the program can do on this machine, what it lacks and how to get it.
struct Diagnosis
{
    QList<FindingGroup> groups;

    bool hasProblem() const;
};

Diagnosis diagnosisOf(const MachineFacts &machine);

/// All of it as plain text, for a terminal or a report: a line each, the step below what it mends.
QString diagnosisText(const Diagnosis &diagnosis);

} // namespace lumaphone
