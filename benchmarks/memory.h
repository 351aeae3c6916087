// How much heap memory a piece of work takes at its height.
#pragma once

#include <cstddef>
#include <functional>

namespace bench {

/// The most bytes in use at once while `work` runs, beyond those in use before.
std::size_t peakDuring(const std::function<void()>& work);
/// The bytes that `work` leaves in use, beyond those before.
std::size_t keptBy(const std::function<void()>& work);

}  // namespace bench
