#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the run, with `words`, where a promise of the code is broken; the input is then kept as a finding.
inline void promise(bool isKept, const char *words)
{
    if (isKept)
        return;
    std::fprintf(stderr, "broken: %s\n", words);
    std::abort();
}
