#include "core/file_item.h"

#include <array>

#include "core/vocabulary/path_names.h"

namespace sorvik {
namespace {

constexpr std::array statusNames{"waiting", "converting", "compressing", "done"};
static_assert(statusNames.size() == static_cast<std::size_t>(ConversionStatus::done) + 1);

constexpr double smallestSaving = 0.5;  // percent; what is not above it reads as none

}  // namespace

QString rawValue(ConversionStatus status) { return QString::fromLatin1(statusNames[static_cast<std::size_t>(status)]); }

QString FileItem::name() const { return fileName(url.isLocalFile() ? path() : url.path()).toString(); }

std::optional<QString> FileItem::savingsText() const {
    const std::int64_t base = convertedSize.value_or(originalSize);
    if (!outputSize || !wasCompressed || base < 1) {
        return std::nullopt;
    }
    const double percent = (1.0 - static_cast<double>(*outputSize) / static_cast<double>(base)) * 100.0;
    return percent > smallestSaving ? QString::asprintf("%.1f%%", percent) : QStringLiteral("0%");
}

}  // namespace sorvik
