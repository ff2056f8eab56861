#pragma once

#include <functional>

class QWidget;

namespace sorvik {

/// Asks whether to check for updates automatically, in a sheet over `parent`, and returns at once. `answered` hears
/// true for "Check Automatically" and false for "Don't Check", at most once; closed in any other way the question stays
/// without an answer. Escape does nothing.
void askForAutomaticUpdates(QWidget& parent, std::function<void(bool automatically)> answered);

}  // namespace sorvik
