#pragma once

#include <map>
#include <optional>

#include "core/vocabulary/formats.h"
#include "platform/defaults_store.h"

namespace sorvik {

/// The user's own default targets, one a kind of input, kept in the settings store under "defaultOutputFormat_" and
/// the input's file extension. Holds nothing itself. Any thread.
class FormatMappingReader {
public:
    /// `store` must outlive the object.
    explicit FormatMappingReader(DefaultsStore& store) : store_(store) {}

    /// Absent when nothing is stored, or nothing that is on offer for the input. A file extension in place of a
    /// format's name, as older versions stored it, is read too and replaced in the store.
    [[nodiscard]] std::optional<ImageFormat> mapping(InputFormat input) const;

    /// Absent removes the default; a format that is not on offer for the input changes nothing.
    void setMapping(std::optional<ImageFormat> output, InputFormat input) const;

    [[nodiscard]] std::map<InputFormat, ImageFormat> allMappings() const;

private:
    DefaultsStore& store_;
};

}  // namespace sorvik
