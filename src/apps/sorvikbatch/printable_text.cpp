#include "apps/sorvikbatch/printable_text.h"

namespace sorvik {

QString printable(const QString& text) {
    QString result;
    for (const QChar character : text) {
        if (character.category() == QChar::Other_Control) {
            result += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        } else {
            result += character;
        }
    }
    return result;
}

void print(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

}  // namespace sorvik
