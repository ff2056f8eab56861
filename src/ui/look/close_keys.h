#pragma once

class QWidget;

namespace sorvik {

/// Escape and Ctrl+W close the window.
void closeByKeys(QWidget& window);

}  // namespace sorvik
