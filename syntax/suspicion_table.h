// syntax/suspicion_table.h - what a text may hold that loads, but may be meant otherwise.
//
// Finding, the names that people give, and what is said of each all use these rows.
#pragma once

#include <cstddef>

#include "murv/syntax.h"

namespace murv::detail
{

struct tSuspicionRow
{
    E_Suspicion m_eKind;
    const char* m_pName;
    const char* m_pMessage;
    const char* m_pDescription;
};

inline constexpr tSuspicionRow s_ctSuspicions[] = {
    {SU_duplicateName, "duplicate-name", "this name is taken; the first member of that name is filled again",
     "two members of one field set have the same name"},
    {SU_similarName, "similar-name", "this name differs from another one in upper and lower case only",
     "two names of one field set differ in the case of the letters A to Z only"},
    {SU_duplicateId, "duplicate-id", "this ID is taken", "two members of the document have the same ID"},
    {SU_trailingComma, "trailing-comma", "a comma before a closing bracket adds a null",
     "a comma before a closing bracket, which adds a null"},
    {SU_emptyContainer, "empty-container", "an empty container is loaded as one that holds a null",
     "an empty container, which holds a null unless it is loaded with LCBC_LOSSLESS"},
    {SU_textAfter, "text-after", "text after the document is ignored", "text after the document, which is ignored"},
    {SU_timeLength, "time-length", "the item has not the length of its time",
     "a packet item that is not as long as its time keyword"},
    {SU_sizePartner, "size-partner", "this size keyword has no partner",
     "sizedef_N or sizeset_N without a partner: an item with a size, and after it one of run-time length (D)"},
    {SU_zeroLength, "zero-length", "an item of length 0 is left out of packets",
     "a packet item of length 0, which is left out of packets"},
    {SU_keywordOption, "keyword-option", "options of keywords are 1 to 9",
     "an option that binary files refuse: none after \"_\", or one above 9"},
};

constexpr bool isEverySuspicionAtItsBit()
{
    for (std::size_t i = 0; i != std::size(s_ctSuspicions); ++i)
    {
        if (s_ctSuspicions[i].m_eKind != 1U << i)
            return false;
    }
    return SU_all == (1U << std::size(s_ctSuspicions)) - 1;
}

static_assert(isEverySuspicionAtItsBit());

/// \param kind  one bit
inline const tSuspicionRow& row4Suspicion(E_Suspicion kind)
{
    const tSuspicionRow* row = s_ctSuspicions;
    while (row->m_eKind != kind)
        ++row;
    return *row;
}

}  // namespace murv::detail
