// io/load.h - the state of a load.
//
// It lives as long as its loader, so that memory is taken once and the errors stay; start() makes it ready for a
// document. Both parsers work on it. Members of text are added here: names and IDs decide whether a member is new.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "core/throw.h"
#include "io/error_records.h"
#include "io/ids/container_tree.h"
#include "io/node_stack.h"
#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/load_error.h"

namespace murv::detail
{

class CIdIndex;
class CMemberBuilder;

struct tLoad final : IPoolForecast
{
    /// What is known of the current member.
    enum E_MemberState : unsigned char
    {
        MS_added,   // it is new
        MS_placed,  // it is new and has an ID; its place is kept
        MS_reread,  // it was there before; its place is kept
    };

    static constexpr int s_cnStackDepthLimit = 1000;

    tLoad();
    /// What belongs to a load under way is not copied: the positions may refer to data that is gone.
    tLoad(const tLoad& other);
    tLoad& operator=(const tLoad& other);
    ~tLoad();

    /// Makes ready for a document; errors are forgotten separately.
    /// \param config  bits of E_LoaderConfigBit
    void start(const char* data, unsigned int size, CFields& target, unsigned int config, bool comments);
    /// Lets go of the tree. Errors and fault stay.
    void finish();

    void forgetErrors();
    /// Records an error, which makes the fault LF_text unless there is one already.
    /// \param start   offset of the first byte concerned
    /// \param end     offset after the last one
    /// \param second  offset of a further place, if there is one
    /// \return false, so that `return addError(...)` fails
    bool addError(std::string_view message, std::ptrdiff_t start, std::ptrdiff_t end,
                  std::optional<std::ptrdiff_t> second = std::nullopt);
    /// Finds the fault for the exception that is being handled.
    void noteException();

    /// Of the document's bytes.
    double partDone() const noexcept override;

    bool has(unsigned int configBit) const
    {
        return (m_uiConfig & configBit) != 0;
    }
    bool isDepthLeft() const
    {
        return m_iDepth < s_cnStackDepthLimit;
    }
    [[noreturn]] void throwTooDeep(tPlace place);

    CFields& top() const
    {
        return *m_vStack.back();
    }
    /// Gets or adds a member of the innermost open container, a field set.
    /// \return null when the member could not be added. Throws std::bad_alloc, and CLogicError for a bad ID.
    CFields* addMember(std::string_view name, unsigned int id);
    /// To be called before a node gets another value: what knows of nodes below it forgets them.
    void forgetBelow(const CFields& node);

    // The document.
    const char* m_pDataBegin = nullptr;
    const char* m_pDataEnd = nullptr;
    unsigned int m_uiConfig = 0;
    bool m_bComments = false;  // comments are kept in the tree

    // What is being read.
    std::vector<CFields*> m_vStack;  // not owned; an application's entries may be null
    int m_iDepth = 0;
    E_MemberState m_eMember = MS_added;
    tNodePlace m_tMemberPlace;             // of the current member; see E_MemberState
    CMemberBuilder* m_pBuilder = nullptr;  // of the innermost open container; lives on the parser's stack
    CNodeStack m_tNodeStack;               // its memory is kept between loads
    std::unique_ptr<CIdIndex> m_pIdIndex;  // null until a document has an ID

    // Where a comment on the same line goes, when comments are kept.
    const char* m_pLastValueEnd = nullptr;
    CFields* m_pLastValueNode = nullptr;

    CErrorRecords m_tErrors;
    E_LoadFault m_eFault = LF_none;

private:
    CFields* findKnown(std::string_view name, unsigned int id);
    CFields* addWithId(std::string_view name, unsigned int id);
};

}  // namespace murv::detail
