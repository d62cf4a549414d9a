// murv/murv.h - the whole interface of murv, but for the shorthands of everyday.h.
//
// Each header may also be included alone: fields.h to build trees, loader.h to read them, saver.h to write them.
#ifndef MURV_MURV_H
#define MURV_MURV_H

#include "murv/error.h"
#include "murv/export.h"
#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/layout.h"
#include "murv/load_error.h"
#include "murv/loader.h"
#include "murv/loader_base.h"
#include "murv/loader_common.h"
#include "murv/member_iterator.h"
#include "murv/packet_expression.h"
#include "murv/packet_fault.h"
#include "murv/packet_value.h"
#include "murv/records.h"
#include "murv/saver.h"
#include "murv/strings.h"
#include "murv/syntax.h"
#include "murv/text.h"
#include "murv/token.h"
#include "murv/types.h"

#endif
