#pragma once

#include <QMap>
#include <QString>

#include <cstdio>

#include "apps/sorvikbatch/metadata_options.h"

namespace sorvik {

/// What is known of one file.
struct MetadataRecord {
    QString path;
    QMap<QString, QString> table;  ///< from labels to values
    QString error;                 ///< why the file was not read; else empty
};

/// Looks at a file through `identify`. Blocks.
[[nodiscard]] MetadataRecord readRecord(const QString& path);

/// The table in two columns, or "No metadata". Control characters are shown escaped.
[[nodiscard]] QString tableText(const MetadataRecord& record);

/// The record as a JSON object on one line.
[[nodiscard]] QString jsonLine(const MetadataRecord& record);

/// Reads the files, two at a time, and prints them in their order: entries to `output`, sentences about files that
/// were not read to `errors`. Blocks; gives the exit status.
[[nodiscard]] int showMetadata(const MetadataOptions& options, std::FILE* output, std::FILE* errors);

}  // namespace sorvik
