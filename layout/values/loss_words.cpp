// layout/values/loss_words.cpp - why a value would not come back. Faults are rare, so the value is looked at again.
#include "layout/values/loss_words.h"

#include "layout/values/number_text.h"

namespace murv::detail
{

const char* explainLoss(const tItem& item, const tScalar& value)
{
    switch (item.m_eForm)
    {
    case IF_text:
    case IF_bytes:
    case IF_hexText:
        return item.m_ePadding == PAD_blanksFront ? "The value begins with padding, which would not come back"
                                                  : "The value ends in padding, which would not come back";
    case IF_float: return nullptr;
    default: break;
    }
    tWrittenNumber number;
    if (takeNumber(item, value, number) != PF_lossy)
        return nullptr;
    if (number.m_strvWhole.size() > 1 && number.m_strvWhole.front() == '0')
        return "The number has zeros in front, which would not come back";
    if (number.m_bZero && item.m_bZeroIsNull)
        return "The number is zero, which would come back as null";
    return item.m_bDecimals ? "The number has more decimals than the item"
                            : "The number has decimals, which the item does not have";
}

}  // namespace murv::detail
