// bench/protobuf_record.cpp - fills the message of records.proto.
#include "protobuf_record.h"

namespace murv::bench
{

murv_bench::BinaryRecord protobufOf(const tBinaryRecord& by)
{
    murv_bench::BinaryRecord record;
    record.set_kind(static_cast<unsigned int>(by.m_llKind));
    record.set_locate(static_cast<unsigned int>(by.m_llLocate));
    record.set_tracking(static_cast<unsigned int>(by.m_llTracking));
    record.set_time(static_cast<unsigned long long>(by.m_llTime));
    record.set_order(static_cast<unsigned long long>(by.m_llOrder));
    record.set_side(by.m_cSide, sizeof by.m_cSide);
    record.set_shares(static_cast<unsigned int>(by.m_llShares));
    record.set_stock(by.m_cStock, sizeof by.m_cStock);
    record.set_price(static_cast<unsigned int>(by.m_llPrice));
    record.set_owner(by.m_cOwner, sizeof by.m_cOwner);
    record.set_port(static_cast<unsigned int>(by.m_llPort));
    record.set_mark(by.m_cMark, sizeof by.m_cMark);
    return record;
}

}  // namespace murv::bench
