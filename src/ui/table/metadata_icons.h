#pragma once

#include <QHash>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>
#include <QUrl>
#include <QUuid>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/file_item.h"

namespace sorvik {

/// What is known of a file's metadata.
struct MetadataAnswer {
    bool hasMetadata = false;
    QMap<QString, QString> table;  ///< labels and values, as shown
};

/// Finds out for the rows that are seen, and only for those, whether they hold metadata. A row that is no longer seen
/// before its turn is not asked; an answer is kept as long as the row stands. Main thread; the files are read
/// in two threads of low priority.
class MetadataIcons final : public QObject {
    Q_OBJECT

public:
    /// Both block and run on any thread, as MetadataUtilities' operations do.
    struct Reader {
        std::function<bool(const QUrl&)> hasMetadata;
        std::function<QMap<QString, QString>(const QUrl&)> readMetadata;
    };

    explicit MetadataIcons(QObject* parent = nullptr);
    explicit MetadataIcons(Reader reader, QObject* parent = nullptr);

    /// Waits for what is being read.
    ~MetadataIcons() override;

    /// Whether a row has an icon at all.
    [[nodiscard]] static bool hasIcon(const FileItem& item);

    /// Absent until the answer is there.
    [[nodiscard]] std::optional<MetadataAnswer> answer(const QUuid& row) const;

    /// The rows that are seen now.
    void show(const std::vector<FileItem>& seen);

    /// Forgets the rows that are not among `standing`.
    void keepOnly(const QSet<QUuid>& standing);

signals:
    void answered(const QUuid& row);

private:
    using Cancelled = std::shared_ptr<std::atomic<bool>>;

    void ask(const FileItem& item);

    Reader reader_;
    QHash<QUuid, MetadataAnswer> answers_;
    QHash<QUuid, Cancelled> running_;
    QThreadPool pool_;
};

}  // namespace sorvik
