#pragma once

#include <QString>

namespace sorvik {

/// Turns the raw description of any failure into one of nine sentences that a user understands.
/// Plain containment, whatever the letter case; never fails.
[[nodiscard]] QString userMessage(const QString& raw);

}  // namespace sorvik
