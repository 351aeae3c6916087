// How much heap memory a piece of work takes at its height.
#pragma once

#include <cstddef>
#include <functional>

namespace bench {

/// The most bytes in use at once while `work` runs, beyond those in use before.
std::size_t peakDuring(const std::function<void()>& work);

}  // namespace bench
