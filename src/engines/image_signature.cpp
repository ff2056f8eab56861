#include "engines/image_signature.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <string_view>

#include "services/process_caches.h"

namespace sorvik {
namespace {

using namespace std::string_view_literals;

constexpr qsizetype signatureLength = 12;
constexpr qsizetype shortestFile = 4;

struct Signature {
    ImageFormat format;
    std::size_t offset;
    std::string_view bytes;
};

constexpr std::array signatures{
    Signature{ImageFormat::bmp, 0, "BM"sv},
    Signature{ImageFormat::gif, 0, "GIF8"sv},
    Signature{ImageFormat::jpeg, 0, "\xFF\xD8\xFF"sv},
    Signature{ImageFormat::png, 0, "\x89PNG"sv},
    Signature{ImageFormat::tiff, 0, "MM\0*"sv},
    Signature{ImageFormat::tiff, 0, "II*\0"sv},
    Signature{ImageFormat::webp, 8, "WEBP"sv},
};

bool matches(const QByteArray& firstBytes, const Signature& signature) {
    const std::string_view bytes(firstBytes.constData(), static_cast<std::size_t>(firstBytes.size()));
    return bytes.size() >= signature.offset && bytes.substr(signature.offset).starts_with(signature.bytes);
}

std::mutex& cacheLock() {
    static std::mutex lock;
    return lock;
}

std::map<QString, bool>& cache() {
    static auto& answers = []() -> auto& {
        registerProcessCache(&clearSignatureCache);
        return *new std::map<QString, bool>;
    }();
    return answers;
}

}  // namespace

bool hasSignature(const QByteArray& firstBytes, ImageFormat format) {
    if (firstBytes.size() < shortestFile) {
        return false;
    }
    if (format == ImageFormat::webp && !firstBytes.startsWith("RIFF")) {
        return false;
    }
    const bool known = std::ranges::find(signatures, format, &Signature::format) != signatures.end();
    return !known || std::ranges::any_of(signatures, [&](const Signature& signature) {
        return signature.format == format && matches(firstBytes, signature);
    });
}

bool isValidImageFile(const QString& path, ImageFormat format) {
    {
        const std::lock_guard guard(cacheLock());
        if (const auto known = cache().find(path); known != cache().end()) {
            return known->second;
        }
    }
    QFile file(path);
    if (!file.exists()) {
        return false;
    }
    const bool valid =
        file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) && hasSignature(file.read(signatureLength), format);
    const std::lock_guard guard(cacheLock());
    cache()[path] = valid;
    return valid;
}

void clearSignatureCache() {
    const std::lock_guard guard(cacheLock());
    cache().clear();
}

}  // namespace sorvik
