#include "engines/conversion_error.h"

namespace sorvik {

QString ConversionError::description() const {
    if (!description_.isEmpty()) {
        return description_;
    }
    return kind_ == Kind::fileInUse ? QStringLiteral("ConversionError.fileInUse")
                                    : QStringLiteral("ConversionError.conversionFailed");
}

}  // namespace sorvik
