// murv/packet_expression.h - the packet expression that every node carries.
//
// It says how a leaf's value lies in a packet. The ten bytes are written to binary files as they are, so each field has
// its bits on every machine. Compilers fill a byte with bit-fields from the end where the machine's numbers begin: the
// fields that share a byte are therefore declared in the opposite order for big-endian machines.
#ifndef MURV_PACKET_EXPRESSION_H
#define MURV_PACKET_EXPRESSION_H

#include <string>
#include <vector>

namespace murv
{

/// Form of an item: letter "A" or "B".
enum E_PacketExpCode : unsigned int
{
    PEC_A = 0,  ///< ASCII: numbers as decimal text, byte strings as they are
    PEC_B = 1,  ///< binary: numbers as big-endian integers or IEEE 754 doubles
};

/// What a parsed item becomes: letter "C" or "N".
enum E_RuntimeExpCode : unsigned int
{
    REC_C = 0,  ///< the raw bytes
    REC_N = 1,  ///< a number
};

/// How long an item is: letter "F", "V" or "D".
enum E_LengthExpCode : unsigned int
{
    LEC_F = 0,  ///< fixed
    LEC_V = 1,  ///< announced by a length prefix
    LEC_D = 2,  ///< decided at run time by a size keyword
};

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
#define MURV_BIG_ENDIAN 1
#else
#define MURV_BIG_ENDIAN 0
#endif

#pragma pack(push, 1)

/// Packet expression (PEI) of a node: ten bytes without padding, all zero for "none".
struct tPacketExpInfo
{
#if MURV_BIG_ENDIAN
    unsigned int m_uiReserved : 4;
    E_LengthExpCode m_eLengthExp : 2;
    E_RuntimeExpCode m_eRuntimeExp : 1;
    E_PacketExpCode m_ePacketExp : 1;
#else
    E_PacketExpCode m_ePacketExp : 1;    ///< bit 0: ASCII or binary
    E_RuntimeExpCode m_eRuntimeExp : 1;  ///< bit 1: bytes or number when parsed
    E_LengthExpCode m_eLengthExp : 2;    ///< bits 2 and 3: fixed, variable, run time; 3 is invalid
    unsigned int m_uiReserved : 4;       ///< always 0
#endif
    unsigned char m_ucPrefixSize;  ///< variable item: width of the prefix in digits or bytes, 0..9
    signed char m_cCalibration;    ///< variable item: added to the prefix's number to give the total length
#if MURV_BIG_ENDIAN
    unsigned char m_ucSkOption : 4;
    unsigned char m_ucSkKind : 4;
#else
    unsigned char m_ucSkKind : 4;        ///< bits 0 to 3: supporting keyword: 0 internal, 1..15 external kind
    unsigned char m_ucSkOption : 4;      ///< bits 4 to 7: supporting keyword: option, 0..9
#endif
    unsigned short m_usSkIndex;  ///< supporting keyword: index, 0 for none
    unsigned int m_uiLength;     ///< length in bytes; of a variable item the total last made or parsed
};

#pragma pack(pop)

/// One entry of the list of sizes that size keywords keep, during one run, for later items.
struct tMemoFieldInfo;

static_assert(sizeof(tPacketExpInfo) == 10, "a packet expression is ten bytes");

/// A packet length with a flag: the word is length * 2 + flag.
union uPacketLengthExpression
{
    unsigned int m_uiValue;  ///< the whole word
    __extension__ struct
    {
#if MURV_BIG_ENDIAN
        unsigned int m_uiLength31 : 31;
        unsigned int m_bVariable : 1;
#else
        unsigned int m_bVariable : 1;    ///< some item in it is of variable length
        unsigned int m_uiLength31 : 31;  ///< length in bytes
#endif
    };
};

static_assert(sizeof(uPacketLengthExpression) == 4, "a packet length is one word");

#undef MURV_BIG_ENDIAN

/// What a callback of an external supporting keyword sees of the packet around its node; zero at all other times.
struct tInnerSupportedArgs4ESK
{
    const void* m_pPacket;                 ///< see madePacket() and givenPacket()
    unsigned int m_uiPacketLen;            ///< bytes of the given packet; 0 while making
    unsigned int m_uiOffset;               ///< where the item begins in the given packet; 0 while making
    std::vector<tMemoFieldInfo>* m_pMemo;  ///< memo list of the run; not owned

    /// While making (AllotPkt callbacks): the packet built so far.
    const std::string* madePacket() const
    {
        return static_cast<const std::string*>(m_pPacket);
    }
    /// While parsing and checking (ParsePkt, CheckPkt callbacks): the first byte of the given packet.
    const char* givenPacket() const
    {
        return static_cast<const char*>(m_pPacket);
    }
};

}  // namespace murv

#endif
