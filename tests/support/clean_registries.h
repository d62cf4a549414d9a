// tests/support/clean_registries.h - takes the callbacks of keywords out again when a test ends.
//
// They are registered for the whole process, and no test may lean on those of another.
#pragma once

#include "murv/fields.h"

namespace murv::tests
{

struct tCleanRegistries
{
    tCleanRegistries() = default;
    tCleanRegistries(const tCleanRegistries&) = delete;
    tCleanRegistries& operator=(const tCleanRegistries&) = delete;
    ~tCleanRegistries()
    {
        for (unsigned char kind = 1; kind <= 15; ++kind)
        {
            CFields::setCheckIdxFP4ESK(kind, nullptr);
            CFields::setGetIdxFP4ESK(kind, nullptr);
            CFields::setGetTxtFP4ESK(kind, nullptr);
            CFields::setAllotPktFP4ESK(kind, nullptr);
            CFields::setParsePktFP4ESK(kind, nullptr);
            CFields::setCheckPktFP4ESK(kind, nullptr);
        }
    }
};

}  // namespace murv::tests
