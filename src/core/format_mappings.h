#pragma once

#include <QUuid>

#include <optional>
#include <vector>

#include "core/format_mapping_reader.h"

namespace sorvik {

/// A default target as a line of a list; the id is not stored.
struct FormatMapping {
    QUuid id;
    InputFormat inputFormat = InputFormat::jpeg;
    ImageFormat outputFormat = ImageFormat::png;
};

/// The default targets as a list that is edited line by line. Every change goes to the store at once. An id that is
/// not in the list changes nothing.
class FormatMappings {
public:
    /// Reads what is stored. `store` must outlive the object.
    explicit FormatMappings(DefaultsStore& store);

    /// Reads the store again; all ids are new.
    void reload();

    [[nodiscard]] const std::vector<FormatMapping>& all() const { return mappings_; }

    /// While some input has no mapping.
    [[nodiscard]] bool canAddNewMapping() const { return firstFree().has_value(); }

    /// Appends the first input without a mapping, with the first target on offer for it.
    void addNewMapping();

    /// A target that is not on offer for the input becomes the first that is; an input that another line
    /// holds changes nothing.
    void updateMapping(const QUuid& id, InputFormat input, ImageFormat output);

    void removeMapping(const QUuid& id);

    /// The line's own input and all that no other line holds, in the order of declaration.
    [[nodiscard]] std::vector<InputFormat> inputsFor(const FormatMapping& mapping) const;

    /// "1 output configured".
    [[nodiscard]] QString header() const;

private:
    [[nodiscard]] const FormatMapping* holderOf(InputFormat input) const;
    [[nodiscard]] std::optional<InputFormat> firstFree() const;
    [[nodiscard]] std::vector<FormatMapping>::iterator find(const QUuid& id);

    FormatMappingReader reader_;
    std::vector<FormatMapping> mappings_;
};

}  // namespace sorvik
