#pragma once

#include <QFuture>
#include <QString>

#include <cstdint>
#include <optional>

#include "core/batch.h"
#include "core/compress_file.h"
#include "core/pool_work.h"

namespace sorvik {

/// The closing sentence of a compression; absent when there is nothing to say.
[[nodiscard]] std::optional<QString> compressionSummary(int succeeded, int failed, bool cancelled);

/// Shrinks every row that is not processed and whose format has a recipe. Formats stay as they are.
class CompressionBatch final : public Batch {
public:
    CompressionBatch(FileProcessingViewModel& model, bool removeMetadata);

protected:
    [[nodiscard]] bool takes(const FileItem& item) const override;
    [[nodiscard]] std::optional<QString> skipReason(const FileItem& item) const override;
    QCoro::Task<std::optional<ConversionError>> process(WorkItem work) override;
    [[nodiscard]] std::optional<QString> summary(int succeeded, int failed, bool cancelled) const override;

private:
    [[nodiscard]] std::optional<CompressJob> makeJob(const FileItem& item) const;
    [[nodiscard]] QFuture<Attempt<QString>> startChecking(const CompressJob& job) const;
    [[nodiscard]] QFuture<Attempt<std::int64_t>> startCompressing(const CompressJob& job) const;
    void showFinished(const WorkItem& work, std::int64_t size);
};

}  // namespace sorvik
