// bench/protobuf_record.h - the binary record as a protobuf message, for the benches of packets and layouts.
#pragma once

#include "hand_records.h"
#include "records.pb.h"

namespace murv::bench
{

murv_bench::BinaryRecord protobufOf(const tBinaryRecord& by);

}  // namespace murv::bench
