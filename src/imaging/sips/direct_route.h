#pragma once

#include <memory>
#include <optional>

#include "codecs/byte_sink.h"
#include "imaging/sips/arguments.h"
#include "imaging/sips/failure.h"
#include "imaging/sips/files.h"
#include "imaging/sips/picture_source.h"

namespace sorvik::sips {

/// Does the job when it takes nothing but our own codecs, libjpeg and libpng: an upright JPEG, PNG or
/// intermediate whose colours the target holds as they are. Absent when it takes more; nothing has
/// been written then. Such a process starts in a tenth of the time that the whole library takes.
[[nodiscard]] std::optional<Status> convertDirectly(const ConvertRequest& request, const InputFile& input);

/// A writer of pixels that the target holds as they are: jpeg, png, tiff, bmp and pdf; null for the
/// others. `sink` writes to `descriptor`.
[[nodiscard]] std::unique_ptr<codecs::RowWriter> makeDirectWriter(const ConvertRequest& request,
                                                                  const PictureSource& source, codecs::ByteSink& sink,
                                                                  int descriptor);

/// Says on standard output what an intermediate carries that not every encoder takes over. `transparent`:
/// not opaque everywhere.
void announceContents(const codecs::PictureMetadata& metadata, bool transparent);

/// Empties what `-s stripMetadata yes` takes away.
void strip(codecs::PictureMetadata& metadata);

}  // namespace sorvik::sips
