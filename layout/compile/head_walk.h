// layout/compile/head_walk.h - the fixed bytes that parts can begin with.
//
// The head of a row of parts is the literals, with their offsets, among the leaves of fixed width that begin it. What
// may be absent, repeats, or is one of several gives the row several heads.
#pragma once

#include <vector>

#include "layout/compile/draft.h"

namespace murv::detail
{

class CHeadWalk
{
public:
    explicit CHeadWalk(tCompile& compile) : m_tCompile(compile)
    {
    }

    /// Finds what a part that is there can begin with; of an array, what its elements can begin with.
    void collectPart(unsigned int index);
    /// Finds what can follow a part inside of what encloses it.
    void collectFollowers(unsigned int index);

    const std::vector<tHead>& heads() const
    {
        return m_vHeads;
    }
    /// The part with which the head of that number begins.
    unsigned int origin(std::size_t head) const
    {
        return m_vOrigins[head];
    }
    /// Whether one of the heads has no bytes, and so says nothing.
    bool isAnything() const;

private:
    struct tContent
    {
        unsigned int m_uiPart;
        bool m_bFirstLeaf;  // only the first leaf counts
    };
    /// A row as far as it was walked.
    struct tRow
    {
        tHead m_tHead;
        unsigned int m_uiOffset = 0;
        unsigned int m_uiOrigin = s_cuiNone;
        unsigned int m_uiStop = s_cuiNone;  // where a part ends after which offsets are not known
        bool m_bFirstLeaf = false;
    };

    void start();
    void run();
    void addContent(const tContent& content);
    void addEndMark(const tPart& array, unsigned int index);
    bool walk(tRow& row, unsigned int first, unsigned int end, bool isThere);
    bool walkSpecial(tRow& row, unsigned int index, bool absent);
    bool walkLeaf(tRow& row, unsigned int index);
    bool followMembers(tRow& row, unsigned int at, unsigned int parent);
    void flush(tRow& row);
    static void append(tHead& head, unsigned int offset, const std::string& bytes);

    tCompile& m_tCompile;
    std::vector<tHead> m_vHeads;
    std::vector<unsigned int> m_vOrigins;
    std::vector<tContent> m_vContents;  // still to be walked
};

/// Whether each byte of a head is in the other at the same place.
bool covers(const tHead& head, const tHead& other);

}  // namespace murv::detail
