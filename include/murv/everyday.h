// murv/everyday.h - shorthands for everyday work with trees: all headers of docs/everyday.md.
//
// Apart from murv.h, because some names are those of the standard library.
#ifndef MURV_EVERYDAY_H
#define MURV_EVERYDAY_H

#include "murv/convert.h"
#include "murv/edit.h"
#include "murv/get.h"
#include "murv/items.h"
#include "murv/make.h"
#include "murv/path.h"
#include "murv/walk.h"

#endif
