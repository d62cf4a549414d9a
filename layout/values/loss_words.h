// layout/values/loss_words.h - why a value would not come back.
#pragma once

#include "layout/values/item.h"

namespace murv::detail
{

/// One sentence about a value for which making has said PF_lossy; null when there is no more to say than the reason.
/// Static text.
const char* explainLoss(const tItem& item, const tScalar& value);

}  // namespace murv::detail
