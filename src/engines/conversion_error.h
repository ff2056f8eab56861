#pragma once

#include <QString>

#include <exception>
#include <utility>

#include "core/vocabulary/failure_messages.h"
#include "core/vocabulary/refusals.h"

namespace sorvik {

/// What the conversion of one file throws.
class ConversionError : public std::exception {
public:
    enum class Kind { conversionFailed, fileInUse };

    explicit ConversionError(Kind kind = Kind::conversionFailed) : kind_(kind) {}

    /// With the system's or a tool's own words, where they are known.
    explicit ConversionError(QString description) : description_(std::move(description)) {}

    /// With a sentence of our own, which the user reads as it stands.
    explicit ConversionError(Refusal refusal) : description_(sorvik::sentence(refusal)), readable_(true) {}

    [[nodiscard]] Kind kind() const { return kind_; }

    /// Whether it says more than that the conversion failed.
    [[nodiscard]] bool hasCause() const { return !description_.isEmpty(); }

    /// For the log. Without words of its own it holds nothing that a classification could match.
    [[nodiscard]] QString description() const;

    /// For the row.
    [[nodiscard]] QString sentence() const { return readable_ ? description_ : userMessage(description()); }

    [[nodiscard]] const char* what() const noexcept override { return "conversion error"; }

private:
    Kind kind_ = Kind::conversionFailed;
    QString description_;
    bool readable_ = false;
};

}  // namespace sorvik
