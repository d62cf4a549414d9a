// tests/support/processor_seconds.h - what an action costs, for tests that compare costs.
//
// Counted is the time of the processor, as other programs on the machine would disturb the time on the wall; and the
// best of several runs, as what disturbs a run only makes it slower.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

namespace murv::tests
{

/// The least seconds that `action(subject)` takes in that many runs, each with a subject made by `prepare()`. Making
/// and destroying the subject does not count. At least half a millisecond, as less says little.
template <typename tPrepare, typename tAction>
double processorSeconds(int runs, tPrepare&& prepare, tAction&& action)
{
    double best = 1e9;
    for (int run = 0; run < runs; ++run)
    {
        auto subject = prepare();
        const std::clock_t begin = std::clock();
        action(subject);
        best = std::min(best, static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    return std::max(best, 0.0005);
}

/// The same for an action without a subject.
template <typename tAction>
double processorSeconds(int runs, tAction&& action)
{
    return processorSeconds(
        runs, [] { return 0; }, [&](int) { action(); });
}

/// Passes when the large case takes less than `bound` times the seconds of the small one; both are functions that
/// measure. While the large one seems to take more, both are measured again, five times in all: other work on the
/// machine spoils single runs, and a cost that really grows too fast is too high in every one of them.
template <typename tSmall, typename tLarge>
testing::AssertionResult costsLessThan(double bound, tSmall&& small, tLarge&& large)
{
    double least = 0;
    double most = 0;
    for (int attempt = 0; attempt < 5; ++attempt)
    {
        least = small();
        most = large();
        if (most < least * bound)
            return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << most << " s are not less than " << bound << " times " << least << " s";
}

}  // namespace murv::tests
