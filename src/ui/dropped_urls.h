#pragma once

#include <QList>
#include <QMimeData>
#include <QUrl>

namespace sorvik {

/// The files among what was dropped or pasted; what is no local file is left out.
[[nodiscard]] QList<QUrl> droppedFiles(const QMimeData* data);

}  // namespace sorvik
