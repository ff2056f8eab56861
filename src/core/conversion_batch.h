#pragma once

#include <QFuture>
#include <QString>

#include <optional>

#include "core/batch.h"
#include "core/finish_conversion.h"
#include "core/pool_work.h"
#include "platform/files.h"

namespace sorvik {

/// The closing sentence of a conversion; absent when there is nothing to say.
[[nodiscard]] std::optional<QString> conversionSummary(int succeeded, int failed, bool cancelled);

/// Converts every row that is not processed to its own target, and compresses what the settings say.
class ConversionBatch final : public Batch {
public:
    ConversionBatch(FileProcessingViewModel& model, bool removeMetadata);

protected:
    [[nodiscard]] bool takes(const FileItem&) const override { return true; }
    [[nodiscard]] std::optional<QString> skipReason(const FileItem& item) const override;
    QCoro::Task<std::optional<ConversionError>> process(WorkItem work) override;
    [[nodiscard]] std::optional<QString> summary(int succeeded, int failed, bool cancelled) const override;

private:
    struct Converted {
        QByteArray bytes;
        FileIdentity source;
        QString folder;  // the output's, without links, for the order of equal outputs
    };

    [[nodiscard]] QFuture<Attempt<Converted>> startConverting(const WorkItem& work);
    [[nodiscard]] QFuture<Attempt<FinishedFile>> startFinishing(const FinishJob& job) const;
    [[nodiscard]] FinishJob makeFinishJob(const WorkItem& work, const Converted& converted) const;
    void showFinished(const WorkItem& work, const FinishedFile& finished);
    [[nodiscard]] Converted convert(const FileItem& item, const QString& output) const;
};

}  // namespace sorvik
