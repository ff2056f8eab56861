#include "imaging/picture_facts.h"

#include <QRegularExpression>

namespace sorvik::imaging {

QStringList describeArguments(const QString& path) { return {QStringLiteral("--describe"), path}; }

std::optional<PictureFacts> parsePictureFacts(const QString& line) {
    static const QRegularExpression form(QStringLiteral(
        "\\Akind=(jpeg|png|gif|webp|tiff|heic|avif|pdf) width=([1-9][0-9]{0,8}) height=([1-9][0-9]{0,8}) "
        "pages=([1-9][0-9]{0,8}) orientation=([1-8]) alpha=(yes|no) extras=(yes|no) whole=(yes|no)\\z"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const auto number = [&](int group) { return match.capturedView(group).toInt(); };
    const auto truth = [&](int group) { return match.capturedView(group) == u"yes"; };
    return PictureFacts{match.captured(1), number(2), number(3), number(4), number(5), truth(6), truth(7), truth(8)};
}

PictureDescription describePicture(const ImagingClient& client, const QString& path) {
    const JobOutcome outcome = client.run(describeArguments(path));
    if (!outcome.finished()) {
        return {outcome.status, outcome.message, std::nullopt};
    }
    const auto facts = parsePictureFacts(outcome.message);
    return {facts ? outcome.status : codecs::SipsStatus::failed, outcome.message, facts};
}

}  // namespace sorvik::imaging
