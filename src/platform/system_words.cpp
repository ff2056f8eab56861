#include "platform/system_words.h"

#include <cstring>

namespace sorvik {

QString systemWords(int errorNumber) {
    const char* words = strerrordesc_np(errorNumber);
    return words != nullptr ? QString::fromLatin1(words) : QStringLiteral("Unknown error %1").arg(errorNumber);
}

}  // namespace sorvik
