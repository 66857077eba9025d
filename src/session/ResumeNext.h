#pragma once

#include <exception>

namespace corvane {

// The connect sequence and the dispatch ignore run-time errors and go on with their next step.
template <typename Step> void resumeNext(Step&& step) noexcept
{
    try {
        step();
    } catch (const std::exception&) {
    }
}

} // namespace corvane
