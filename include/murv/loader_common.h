// murv/loader_common.h - what a loader of a single encoding rule is built on.
//
// An application that reads a notation of its own derives its loader from this one.
#ifndef MURV_LOADER_COMMON_H
#define MURV_LOADER_COMMON_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "murv/export.h"
#include "murv/fields.h"
#include "murv/load_error.h"
#include "murv/loader_base.h"
#include "murv/token.h"

namespace murv
{

namespace detail
{
struct tLoad;  // io/load.h
}

/// What the loaders of single rules share: the nodes that are being read, and the errors with their places.
///
/// An application's own loader calls startLoad, adds members to the node on top of the stack, records errors, calls
/// composeErrors when there are any, and ends with finishLoad.
class MURV_API ILoaderCommon : public ILoaderBase
{
public:
    explicit ILoaderCommon(unsigned int flags);
    /// A copy has configuration and errors of the other, but no part in a load that is under way.
    ILoaderCommon(const ILoaderCommon& other);
    ILoaderCommon& operator=(const ILoaderCommon& other);
    ~ILoaderCommon() override;

    bool getStatus() const override;
    E_LoadFault getLoadFault() const override;
    /// The errors of the last load, in the order in which they were met.
    std::vector<tErrorRange> getErrorRanges() const;
    std::vector<tErrorPlace> getErrorPlaces() const override;

protected:
    void forgetErrors() override;
    /// Empties all state of the last load and pushes the target.
    /// \param data  not null; stays the caller's
    void startLoad(const char* data, unsigned int size, CFields& target, bool comments);
    /// Empties the stack; after a failure also empties a target that is a container.
    void finishLoad(CFields& target, bool done);

    CFields* getStackTopField() const;
    /// Gets or adds a member of the container on top of the stack.
    /// \param name  empty for none; may hold any bytes
    /// \return null when the member could not be added
    CFields* addChild2StackTop(std::string_view name, unsigned int id);
    CFields* addChild2StackTop(const char* name, unsigned int id)
    {
        return addChild2StackTop(name == nullptr ? std::string_view() : std::string_view(name), id);
    }
    /// The node that a look back from the stack top meets first, third, or first with a comment; or null.
    CFields* getLastField4Stack() const;
    CFields* getLastThirdField4Stack() const;
    CFields* getLastCommentField4Stack() const;

    /// Records an error at a place in the data, and the fault LF_text unless there is one already.
    /// \param second  a further place in the data, or null
    /// \return false
    bool addRecord(std::string_view message, const tTokenInfo& token, const char* second = nullptr);
    /// As above, at the source offsets of nodes; \return false, with nothing recorded, when these are not in the data.
    bool pushError(const CFields& node, const std::string& message);
    bool pushError(const CFields& node, const std::string& message, const CFields& second);
    std::vector<tErrorRange> getLoadErrors() const;
    /// Writes all records into the error message. With `lines` places are lines and columns, which are counted now,
    /// while the data is there, in one walk over it; else they are offsets.
    void composeErrors(bool lines);

    std::unique_ptr<detail::tLoad> m_pLoad;  // never null
};

}  // namespace murv

#endif
