#include "ui/table/metadata_icons.h"

#include <QtConcurrent>

#include <algorithm>
#include <utility>

#include "metadata/metadata_utilities.h"

namespace sorvik {
namespace {

constexpr int readers = 2;

MetadataIcons::Reader systemReader() { return {&MetadataUtilities::hasMetadata, &MetadataUtilities::readMetadata}; }

/// Absent when nobody waits for the answer any more.
std::optional<MetadataAnswer> read(const MetadataIcons::Reader& reader, const QUrl& url,
                                   const std::atomic<bool>& cancelled) {
    if (cancelled) {
        return std::nullopt;
    }
    MetadataAnswer answer{reader.hasMetadata(url), {}};
    if (cancelled) {
        return std::nullopt;
    }
    if (answer.hasMetadata) {
        answer.table = reader.readMetadata(url);
    }
    return answer;
}

}  // namespace

MetadataIcons::MetadataIcons(QObject* parent) : MetadataIcons(systemReader(), parent) {}

MetadataIcons::MetadataIcons(Reader reader, QObject* parent) : QObject(parent), reader_(std::move(reader)) {
    pool_.setMaxThreadCount(readers);
    pool_.setThreadPriority(QThread::LowPriority);
}

MetadataIcons::~MetadataIcons() {
    show({});
    pool_.waitForDone();
}

bool MetadataIcons::hasIcon(const FileItem& item) { return item.inputFormat && isMetadataCapable(*item.inputFormat); }

std::optional<MetadataAnswer> MetadataIcons::answer(const QUuid& row) const {
    const auto found = answers_.find(row);
    return found == answers_.end() ? std::nullopt : std::optional(*found);
}

void MetadataIcons::show(const std::vector<FileItem>& seen) {
    QSet<QUuid> ids;
    for (const FileItem& item : seen) {
        ids.insert(item.id);
    }
    running_.removeIf([&](const auto& entry) {
        const bool left = !ids.contains(entry.key());
        if (left) {
            *entry.value() = true;
        }
        return left;
    });
    for (const FileItem& item : seen) {
        if (hasIcon(item) && !answers_.contains(item.id) && !running_.contains(item.id)) {
            ask(item);
        }
    }
}

void MetadataIcons::ask(const FileItem& item) {
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    running_.insert(item.id, cancelled);
    QtConcurrent::run(&pool_, [reader = reader_, url = item.url, cancelled] {
        return read(reader, url, *cancelled);
    }).then(this, [this, id = item.id, cancelled](const std::optional<MetadataAnswer>& answer) {
        if (answer && !*cancelled) {
            running_.remove(id);
            answers_.insert(id, *answer);
            emit answered(id);
        }
    });
}

void MetadataIcons::keepOnly(const QSet<QUuid>& standing) {
    answers_.removeIf([&](const auto& entry) { return !standing.contains(entry.key()); });
}

}  // namespace sorvik
