#pragma once

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QString>

#include <limits>

#include "batch_run.h"

// What other programs see in a picture.

namespace sorvik {

/// "width height" of the canvas by another program's reading; of a PDF in points.
inline QString sizeOf(const QString& path) {
    if (path.endsWith(QStringLiteral(".pdf"))) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        static const QRegularExpression mediaBox(QStringLiteral("/MediaBox \\[0 0 (\\d+) (\\d+)\\]"));
        const auto match = mediaBox.match(QString::fromLatin1(file.readAll()));
        return match.captured(1) + u' ' + match.captured(2);
    }
    return toolOutput(QStringLiteral("/usr/bin/identify"),
                      {QStringLiteral("-format"), QStringLiteral("%W %H"), path + QStringLiteral("[0]")});
}

/// Peak signal to noise of two files in dB, transparency on white; above 200 for equal pixels.
inline double likeness(const QString& path, const QString& reference) {
    const auto flat = [](const QString& each) {
        return QStringList{QStringLiteral("("),           each,
                           QStringLiteral("-background"), QStringLiteral("white"),
                           QStringLiteral("-flatten"),    QStringLiteral("-alpha"),
                           QStringLiteral("off"),         QStringLiteral("-colorspace"),
                           QStringLiteral("sRGB"),        QStringLiteral("-depth"),
                           QStringLiteral("8"),           QStringLiteral(")")};
    };
    QProcess compare;
    compare.start(QStringLiteral("/usr/bin/compare"), QStringList{QStringLiteral("-metric"), QStringLiteral("PSNR")} +
                                                          flat(path) + flat(reference) +
                                                          QStringList{QStringLiteral("null:")});
    compare.waitForFinished(60000);
    // Warnings about tags come before the figure.
    const QString figure = QString::fromUtf8(compare.readAllStandardError()).trimmed().section(u'\n', -1);
    static const QRegularExpression number(QStringLiteral("(inf|[0-9.]+)$"));
    const QString decibels = number.match(figure).captured(1);
    return decibels == QStringLiteral("inf") ? std::numeric_limits<double>::infinity() : decibels.toDouble();
}

}  // namespace sorvik
