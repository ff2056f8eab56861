#pragma once

#include <QFuture>
#include <QString>
#include <QThreadPool>
#include <QtConcurrent>

#include <exception>
#include <new>
#include <type_traits>
#include <utility>
#include <variant>

#include "engines/conversion_error.h"
#include "services/temporary_files.h"

namespace sorvik {

/// The result of work in the pool: a value, or what the work has thrown.
template <typename T>
using Attempt = std::variant<T, ConversionError>;

/// Runs work in a pool. What it throws, whatever it is, comes back as a value: it has to cross threads, and a row
/// has to end.
template <typename Work>
[[nodiscard]] QFuture<Attempt<std::invoke_result_t<Work>>> inPool(QThreadPool& pool, Work work) {
    using Result = Attempt<std::invoke_result_t<Work>>;
    return QtConcurrent::run(&pool, [work = std::move(work)]() -> Result {
        try {
            return work();
        } catch (const ConversionError& error) {
            return error;
        } catch (const TemporaryFileError& error) {
            return ConversionError(QString::fromUtf8(error.what()));
        } catch (const std::bad_alloc&) {
            return ConversionError(QStringLiteral("Cannot allocate memory"));
        } catch (const std::exception& error) {
            return ConversionError(QString::fromUtf8(error.what()));
        }
    });
}

}  // namespace sorvik
