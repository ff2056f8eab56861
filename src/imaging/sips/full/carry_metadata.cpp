#include "imaging/sips/full/carry_metadata.h"

namespace sorvik::sips {

Status carryMetadata(const CarryRequest& /*request*/) {
    throw Failure(Status::failed, "metadata can't be put into this file");
}

}  // namespace sorvik::sips
