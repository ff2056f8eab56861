#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <vector>

namespace sorvik {

/// One run of the real sorvikbatch.
struct BatchRun {
    int status = -1;
    QString output;
    QString errors;

    [[nodiscard]] std::vector<QJsonObject> rows() const {
        std::vector<QJsonObject> rows;
        for (const QString& line : output.split(u'\n', Qt::SkipEmptyParts)) {
            rows.push_back(QJsonDocument::fromJson(line.toUtf8()).object());
        }
        return rows;
    }

    /// The row of a file by its name; an empty object when there is none.
    [[nodiscard]] QJsonObject row(const QString& name) const {
        for (const QJsonObject& each : rows()) {
            if (each[QStringLiteral("name")].toString() == name) {
                return each;
            }
        }
        return {};
    }
    [[nodiscard]] QString error(const QString& name) const { return row(name)[QStringLiteral("error")].toString(); }
};

/// A folder of pictures to work in, and a temporary directory of its own, so that leftovers show.
class BatchTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    /// Copies a sample picture in, under a name of its own or the sample's.
    QString bring(const QString& sample, const QString& name = {}) const {
        const QString from = QStringLiteral(SORVIK_TEST_DATA "/") + sample;
        const QString to = path(name.isEmpty() ? QFileInfo(sample).fileName() : name);
        EXPECT_TRUE(QFile::copy(from, to)) << from.toStdString();
        return to;
    }

    QString write(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path(name);
    }

    [[nodiscard]] BatchRun run(const QStringList& arguments, const QProcessEnvironment& more = {}) const {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TMPDIR"), temporary.path());
        environment.insert(more);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder.path());
        process.start(QStringLiteral(SORVIKBATCH), arguments);
        EXPECT_TRUE(process.waitForFinished(230000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(QDir(temporary.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                  QStringList())
            << "something was left in the temporary directory";
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    [[nodiscard]] BatchRun convert(const QString& format, const QStringList& arguments) const {
        return run(QStringList{QStringLiteral("convert"), QStringLiteral("--json"), QStringLiteral("--to"), format} +
                   arguments);
    }

    [[nodiscard]] QStringList filesLeft() const {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    QTemporaryDir folder;
    QTemporaryDir temporary;
};

/// What another program prints when it looks at a file; empty when it fails.
inline QString toolOutput(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(120000);
    return process.exitCode() == 0 ? QString::fromUtf8(process.readAllStandardOutput()).trimmed() : QString();
}

}  // namespace sorvik
