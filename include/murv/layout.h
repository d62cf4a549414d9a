// murv/layout.h - layouts: what whole messages and files look like, and the strict codec that makes and reads them.
//
// A layout is a document that shows a message by example; docs/layouts.md is its manual. It is compiled once; then any
// number of threads make and read packets by it, each with a reader and a maker of its own.
#ifndef MURV_LAYOUT_H
#define MURV_LAYOUT_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "murv/export.h"
#include "murv/fields.h"
#include "murv/packet_fault.h"

namespace murv
{

namespace detail
{
struct tPlan;
}

/// A mistake in a layout, with its place.
struct tLayoutMistake
{
    unsigned int m_uiOffset = 0;  ///< where the layout says it, in bytes of the document; 0 for one made by hand
    std::string m_strPath;        ///< of the part or rule, such as `batches.header.company`
    std::string m_strMessage;     ///< one plain sentence
};

/// A compiled layout. Copies share what was compiled, which never changes; threads may, too.
class MURV_API CLayout
{
public:
    CLayout();
    CLayout(const CLayout&);
    CLayout(CLayout&&) noexcept;
    CLayout& operator=(const CLayout&);
    CLayout& operator=(CLayout&&) noexcept;
    ~CLayout();

    /// Compiles a document. It is best loaded with LCBC_DUPLICATE, so that repeated names are seen, and with comments,
    /// which document the layout; it is not kept.
    ///
    /// \return false, with all mistakes in getMistakes() and nothing compiled, when there are any
    /// Linear in the document but for references between parts, which are found by name.
    bool compile(const CFields& document);
    /// Loads a text and compiles it; a text that does not load is one mistake.
    bool compile(std::string_view text);

    /// The mistakes of the last compilation, in the order of the document.
    const std::vector<tLayoutMistake>& getMistakes() const;
    bool isCompiled() const;

    /// For the codec's own classes; null before a compilation.
    const std::shared_ptr<const detail::tPlan>& getPlan() const;

private:
    std::shared_ptr<const detail::tPlan> m_pPlan;
    std::vector<tLayoutMistake> m_vMistakes;
};

}  // namespace murv

#endif
