#pragma once

#include <QString>

namespace sorvik {

/// The system's words for an errno value, "No space left on device": English in every locale, since
/// failures are classified by these words. Any thread.
[[nodiscard]] QString systemWords(int errorNumber);

}  // namespace sorvik
