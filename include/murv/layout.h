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
#include "murv/packet_value.h"

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

/// What a part of a layout is.
enum E_LayoutPart : unsigned int
{
    LP_leaf = 0,    ///< a value
    LP_fields = 1,  ///< a row of parts, or one of several
    LP_array = 2,   ///< repeats its one member
};

/// A part of a compiled layout, as it is seen from outside. Parts are numbered in the order of the packet, each before
/// its members; the root is part 0.
struct tLayoutPart
{
    E_LayoutPart m_eKind;
    std::string_view m_strvName;        ///< as in the data; empty: none
    unsigned int m_uiID;                ///< 0 for none
    unsigned int m_uiParent;            ///< number of the part around it; of the root, CLayout::s_cuiNoPart
    std::string_view m_strvExpression;  ///< packet expression, such as `ANF10`; of leaves
    std::string_view m_strvRules;       ///< the rules about it, as the layout states them
    std::string_view m_strvComment;     ///< the comment before it, without its slashes
    bool m_bRecord;                     ///< a record: the outermost field set with leaves of its own
    bool m_bLiteral;                    ///< its bytes are always the same
    bool m_bComputed;                   ///< making fills it in
    bool m_bMasked;                     ///< people see stars
    unsigned int m_uiShown;             ///< bytes at the end of a masked value that people see nevertheless
    std::string_view m_strvLiteral;     ///< the bytes of a literal, prefix and end mark included; else empty
    bool m_bChoice;                     ///< a field set of which one member is there
    bool m_bOptional;                   ///< it may be absent: by a condition, a bitmap, or the rule `optional`
    unsigned int m_uiBase;              ///< the part from whose first byte m_ullOffset counts; see CLayout::getPart()
    std::uint64_t m_ullOffset;          ///< in bytes, the same in every packet; 0 without a base
    std::uint64_t m_ullLeast;           ///< bytes that it has at least when it is there, prefix and end mark included
    std::uint64_t m_ullMost;            ///< bytes that it has at most; CLayout::s_cullNoBound when nothing bounds it
};

/// A rule or value word of a part.
struct tLayoutRule
{
    std::string_view m_strvRule;      ///< as the layout states it
    std::string_view m_strvSentence;  ///< what rules of its name mean, without a full stop
};

/// One of the small numbers that share a number by the rule `bits`.
struct tLayoutBits
{
    std::string_view m_strvName;
    unsigned int m_uiWidth;  ///< in bits
    unsigned int m_uiShift;  ///< of its lowest bit
};

/// A compiled layout. Copies share what was compiled, which never changes; threads may, too.
class MURV_API CLayout
{
public:
    static constexpr unsigned int s_cuiNoPart = 0xFFFFFFFF;
    static constexpr std::uint64_t s_cullNoBound = 0xFFFFFFFFFFFFFFFF;

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
    bool compile(const std::string& text)
    {
        return compile(std::string_view(text));
    }
    bool compile(const char* text)
    {
        return compile(std::string_view(text));
    }

    /// The mistakes of the last compilation, in the order of the document.
    const std::vector<tLayoutMistake>& getMistakes() const;
    bool isCompiled() const;

    /// Number of parts; 0 before a compilation.
    unsigned int getPartCount() const;
    /// A part; its texts live as long as the layout or a copy of it. Throws CLogicError for a number that is none.
    ///
    /// Where it lies is said from its base: the record around it; in an array, the element; after something whose
    /// length varies, the field set or array that is the first there, which is its own base. A leaf of which even that
    /// varies, and parts outside records, have no base.
    tLayoutPart getPart(unsigned int number) const;
    /// The number of the part at a path, such as `batches.entries.entry.amount`, or s_cuiNoPart.
    unsigned int findPart(std::string_view path) const;
    /// What a number consists of by the rule `bits`, the highest first; empty for other parts. Visitors get the number,
    /// trees have a field set. Throws CLogicError as getPart() does.
    std::vector<tLayoutBits> getBits(unsigned int number) const;
    /// The rules of a part, first those that a keyword of its packet expression stands for. Texts live as long as the
    /// layout or a copy of it. Throws CLogicError as getPart() does.
    std::vector<tLayoutRule> getRules(unsigned int number) const;
    /// The path of a part, such as `batches.entries.entry.amount`; elements of arrays add nothing.
    std::string getPath(unsigned int number) const;

    /// Describes the whole layout as a tree: what each part is, how its value is read, where it ends, when it is there,
    /// and what numbers say about other parts. It is for programs that make programs, which read packets without this
    /// library; docs/layout-description.md lists all members.
    ///
    /// \param description  is replaced
    /// Throws CLogicError for a layout that is not compiled. Linear in the layout.
    void describe(CFields& description) const;

    /// For the codec's own classes; null before a compilation.
    const std::shared_ptr<const detail::tPlan>& getPlan() const;

private:
    std::shared_ptr<const detail::tPlan> m_pPlan;
    std::vector<tLayoutMistake> m_vMistakes;
};

/// Registers the value words of layouts as external keywords of kind 15, so that packet expressions can say them:
/// `(ANF10dec_2)`, `(BNF4le)`, `(BNF2int)`, `(BNF5packed_2)`, `(ANF9zoned_2)`, `(ANF8oct)`, `(ACF20right)`. Only
/// layouts understand them; `pkt_` members that make, parse or check such an item throw. Call it before other threads
/// work with trees.
MURV_API void registerStandardKeywords();

/// How packets are read.
struct tReadOptions
{
    bool m_bUnscaled = false;  ///< numbers with decimals as integers, in units of the last decimal
};

/// How packets are made.
struct tMakeOptions
{
    bool m_bNow = false;      ///< dates and times become the present one, but for those with the rule "keep"
    bool m_bAgree = false;    ///< data for a number that is filled in must agree with it
    bool m_bReturns = false;  ///< lines end with carriage return and line feed
    bool m_bOpenEnd = false;  ///< no line end after the last line
};

/// Where something lies in the input, in bytes.
struct tByteRange
{
    std::uint64_t m_ullOffset;
    std::uint64_t m_ullLength;
};

/// Sees the parts of a packet in their order, while it is read. Parts are told by their numbers in the layout. Override
/// what you want to know; the functions do nothing by themselves.
class MURV_API IPacketVisitor
{
public:
    virtual ~IPacketVisitor();
    virtual void onFields(unsigned int part);
    virtual void onFieldsEnd(unsigned int part);
    virtual void onArray(unsigned int part);
    virtual void onElement(unsigned int part, std::uint64_t index);
    virtual void onArrayEnd(unsigned int part);
    /// A record begins at that offset of the input; numbers count from 1.
    virtual void onRecord(unsigned int part, std::uint64_t number, std::uint64_t offset);
    virtual void onRecordEnd(unsigned int part);
    /// A value, with the place of its bytes, without length prefix and end mark.
    virtual void onLeaf(unsigned int part, const tPacketValue& value, const tByteRange& place);
};

/// Reads packets and files that are wholly in memory. One thread each.
class MURV_API CPacketReader
{
public:
    /// Throws CLogicError for a layout that is not compiled.
    explicit CPacketReader(const CLayout& layout, const tReadOptions& options = {});
    CPacketReader(CPacketReader&&) noexcept;
    CPacketReader& operator=(CPacketReader&&) noexcept;
    ~CPacketReader();

    /// Reads all bytes into a tree, which is emptied first.
    ///
    /// \param tree  has the names and IDs of the layout, and only what was read; after a fault, what was read before it
    /// \return false at a fault, see getFault(); findings do not matter here
    /// What callbacks of an application's keywords throw passes through.
    /// Linear in the bytes. Memory: the tree, and some 24 bytes for each row of fixed items.
    bool read(std::string_view bytes, CFields& tree);
    /// The same for a visitor, which sees records up to the fault.
    bool visit(std::string_view bytes, IPacketVisitor& visitor);
    /// The same without keeping any value.
    bool check(std::string_view bytes);

    /// Why the last call failed; PF_none when it did not.
    const tPacketFault& getFault() const;
    /// What the last call found beside it, in the order of the input.
    const std::vector<tPacketFault>& getFindings() const;
    /// The options with which making gives the same line ends as the last call met.
    tMakeOptions getMakeOptions() const;

private:
    struct tState;
    std::unique_ptr<tState> m_pState;
};

/// Reads single values straight from a packet, without a tree: one scan finds all parts, and a value is read when it is
/// asked for. One thread each; the bytes must live as long as they are looked at.
///
/// Parts are asked for by their numbers, see CLayout::findPart(). A part in an array is there once for each element:
/// getElement() gives a scope in which it is asked for.
class MURV_API CPacketView
{
public:
    /// A packet, or one element of an array in it. Scopes are valid until the view opens other bytes.
    struct tScope
    {
        std::size_t m_nBegin = 0;  ///< for the view's own use
        std::size_t m_nEnd = 0;
    };

    /// Throws CLogicError for a layout that is not compiled.
    explicit CPacketView(const CLayout& layout);
    CPacketView(CPacketView&&) noexcept;
    CPacketView& operator=(CPacketView&&) noexcept;
    ~CPacketView();

    /// Finds the parts of a packet. Values are not read yet, but for those on which others depend.
    /// \return false at a fault, see getFault()
    bool open(std::string_view bytes);

    /// The whole packet.
    tScope getAll() const;
    /// How many elements an array has; 0 when it is not there.
    std::uint64_t getCount(unsigned int array, const tScope& scope) const;
    /// One of its elements; an empty scope when there is none. Cost: the parts before it in the array.
    tScope getElement(unsigned int array, std::uint64_t index, const tScope& scope) const;
    /// The alternative that is there of a field set with "one of", or CLayout::s_cuiNoPart.
    unsigned int getAlternative(unsigned int set, const tScope& scope) const;

    /// \name Leaves
    /// Constant cost for a part outside arrays; in an element, the cost of its parts.
    /// @{
    /// Whether the part is there.
    bool has(unsigned int part) const;
    bool has(unsigned int part, const tScope& scope) const;
    /// The place of its value in the packet; without length for a part that is not there.
    tByteRange getPlace(unsigned int part) const;
    tByteRange getPlace(unsigned int part, const tScope& scope) const;
    /// Its value. The text is valid until the next value is asked for.
    /// \return PF_none; PF_missing for a part that is not there; a finding, with the value; or a fault
    E_PacketFault getValue(unsigned int part, tPacketValue& value, bool unscaled = false) const;
    E_PacketFault getValue(unsigned int part, const tScope& scope, tPacketValue& value, bool unscaled = false) const;
    /// Its value as an integer, numbers with decimals in units of the last decimal. \return false for anything else
    bool getSint64(unsigned int part, long long& number) const;
    /// Its value as a text; digits for numbers. \return false for anything else
    bool getText(unsigned int part, std::string_view& text) const;
    /// @}

    const tPacketFault& getFault() const;

private:
    struct tState;
    std::unique_ptr<tState> m_pState;
};

/// Makes packets and files from trees. One thread each.
class MURV_API CPacketMaker
{
public:
    /// Throws CLogicError for a layout that is not compiled.
    explicit CPacketMaker(const CLayout& layout, const tMakeOptions& options = {});
    CPacketMaker(CPacketMaker&&) noexcept;
    CPacketMaker& operator=(CPacketMaker&&) noexcept;
    ~CPacketMaker();

    /// Makes the packet of a tree. What the tree lacks takes the layout's value; what the layout does not know is a
    /// fault. Reading the packet gives the same tree, with defaults and numbers filled in; nothing is ever cut.
    ///
    /// \param packet  replaced; empty after a fault or an exception, such as one from the callback of a keyword
    /// \return false at a fault, see getFault()
    /// Linear in the packet, and once more for each level of nested numbers whose own width varies.
    bool make(const CFields& tree, std::string& packet);

    const tPacketFault& getFault() const;
    const std::vector<tPacketFault>& getFindings() const;

private:
    struct tState;
    std::unique_ptr<tState> m_pState;
};

}  // namespace murv

#endif
