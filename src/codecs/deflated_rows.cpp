#include "codecs/deflated_rows.h"

#include <utility>

namespace sorvik::codecs {

DeflatedRows::DeflatedRows(const RowShape& shape, RowFiltering filtering, int level, ByteOutput output)
    : shape_(shape),
      filtering_(filtering),
      level_(level),
      output_(std::move(output)),
      counter_(shape.rows),
      filter_(shape.rowBytes, shape.bytesPerPixel) {
    if (fitsWholeBuffer(shape)) {
        filtered_ = ByteBlock(shape.filteredBytes());
    } else {
        filtered_ = ByteBlock(shape.rowBytes + 1);
        streamer_ = std::make_unique<ZlibStreamer>(output_);
    }
}

void DeflatedRows::addRow(const std::byte* row) {
    counter_.take(1);
    std::byte* filtered = filtered_.data() + filtered_.size();
    if (filtering_ == RowFiltering::byRow) {
        filter_.filter(row, filtered);
    } else {
        RowFilter::copy(row, shape_.rowBytes, filtered);
    }
    if (streamer_) {
        streamer_->write({filtered, shape_.rowBytes + 1});
    } else {
        filtered_.setSize(filtered_.size() + shape_.rowBytes + 1);
    }
}

void DeflatedRows::finish() {
    counter_.requireAll();
    if (streamer_) {
        streamer_->finish();
    } else {
        output_(zlibCompress(filtered_.bytes(), level_).bytes());
    }
}

}  // namespace sorvik::codecs
