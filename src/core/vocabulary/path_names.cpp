#include "core/vocabulary/path_names.h"

namespace sorvik {

QStringView fileName(QStringView path) { return path.mid(path.lastIndexOf(u'/') + 1); }

QStringView pathExtension(QStringView path) {
    const QStringView name = fileName(path);
    const auto dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.mid(dot + 1) : QStringView();
}

QStringView stem(QStringView path) {
    const QStringView extension = pathExtension(path);
    const QStringView name = fileName(path);
    return extension.isEmpty() ? name : name.chopped(extension.size() + 1);
}

QString replacingExtension(QStringView path, QStringView extension) {
    const QStringView base = path.chopped(fileName(path).size() - stem(path).size());
    return base.toString().append(u'.').append(extension);
}

QString parentDirectory(QStringView path) {
    const auto slash = path.lastIndexOf(u'/');
    return slash > 0 ? path.left(slash).toString() : path.left(slash + 1).toString();
}

}  // namespace sorvik
