#pragma once

#include <QString>

#include <ostream>

/// What a rule has against a place in the sources.
struct Finding
{
    QString file; ///< path from the project's root
    int line = 1;
    QString sentence; ///< the rule, and how it is broken

    friend bool operator==(const Finding &, const Finding &) = default;
    friend std::ostream &operator<<(std::ostream &out, const Finding &finding)
    {
        return out << qPrintable(finding.file) << ':' << finding.line << ": " << qPrintable(finding.sentence);
    }
};
