// murv/records.h - files and streams of records, one record at a time, in constant memory.
//
// A record is the outermost field set of a layout that has leaves of its own. What is around records (batches, lists)
// has no bytes; the reader keeps track of it, so that each record comes with its path.
#ifndef MURV_RECORDS_H
#define MURV_RECORDS_H

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "murv/export.h"
#include "murv/layout.h"

namespace murv
{

/// What a record reader came to.
enum E_RecordResult : unsigned int
{
    RR_record = 0,  ///< a record was read
    RR_end,         ///< the input has ended, and nothing is missing
    RR_more,        ///< bytes are missing: put() more, or end()
    RR_fault,       ///< see getFault(); skip() may go on
};

/// A record that was read.
struct tRecordInfo
{
    unsigned int m_uiPart = CLayout::s_cuiNoPart;  ///< which part of the layout it is
    std::uint64_t m_ullNumber = 0;                 ///< from 1; damaged ones count
    std::uint64_t m_ullOffset = 0;                 ///< of its first byte in the input, after a length before it
    std::uint64_t m_ullLength = 0;                 ///< in bytes, without mark or length around it
};

/// What a record reader has seen.
struct tRecordCounts
{
    std::uint64_t m_ullRecords = 0;  ///< read without a fault
    std::uint64_t m_ullDamaged = 0;  ///< skipped after a fault
    std::uint64_t m_ullFindings = 0;
    std::uint64_t m_ullBytes = 0;  ///< of the input, up to the last record's end
};

struct tRecordOptions : tReadOptions
{
    std::uint64_t m_ullLongest = 64u << 20;  ///< bytes of the longest record; a longer one is a fault
};

/// Reads records from memory, a stream, or pieces of bytes as they come. One thread each.
class MURV_API CRecordReader
{
public:
    /// Throws CLogicError for a layout that is not compiled.
    explicit CRecordReader(const CLayout& layout, const tRecordOptions& options = {});
    CRecordReader(CRecordReader&&) noexcept;
    CRecordReader& operator=(CRecordReader&&) noexcept;
    ~CRecordReader();

    /// \name Input; each begins anew
    /// @{
    /// Bytes that the caller keeps until the reader has come to the end.
    void open(std::string_view bytes);
    /// A stream that the caller keeps open; it is read in pieces of 64 KiB. What it throws passes through.
    void open(std::istream& stream);
    /// Nothing yet: bytes come by put().
    void open();
    /// Adds bytes, which are copied. They are kept until their record has been read.
    void put(std::string_view bytes);
    /// Says that no more bytes come.
    void end();
    /// @}

    /// Reads the next record, into a tree with the record's own members, for a visitor, or only to check it.
    /// Linear in the record's bytes, whatever the size of the pieces. After an exception nothing more is read until
    /// open().
    E_RecordResult next(CFields& record);
    E_RecordResult next(IPacketVisitor& visitor);
    E_RecordResult next();

    /// Goes on after the damaged record of the last fault; it counts as the one that was due.
    /// \return false when the end of the damaged record is not known: without frames, after a bad length before a
    /// record, and when the input cannot be read; next() then gives the same fault again
    bool skip();

    /// The record of the last result; after RR_fault the damaged one, as far as it is known.
    const tRecordInfo& getRecord() const;
    /// Its path with the numbers of the elements around it, such as `batches[1].entries[2].entry`.
    std::string getPath() const;
    /// Its bytes, until the next call that reads; of a damaged one those of its frame.
    std::string_view getBytes() const;
    /// After RR_fault: why; after RR_more: what is missing.
    const tPacketFault& getFault() const;
    /// What the last call found, in the order of the input.
    const std::vector<tPacketFault>& getFindings() const;
    const tRecordCounts& getCounts() const;

private:
    struct tState;
    std::unique_ptr<tState> m_pState;
};

/// Makes records, one after the other, into a string that the caller empties as it likes. One thread each.
class MURV_API CRecordWriter
{
public:
    /// Throws CLogicError for a layout that is not compiled.
    explicit CRecordWriter(const CLayout& layout, const tMakeOptions& options = {});
    CRecordWriter(CRecordWriter&&) noexcept;
    CRecordWriter& operator=(CRecordWriter&&) noexcept;
    ~CRecordWriter();

    /// Appends a record with its mark or length. With tMakeOptions::m_bOpenEnd a mark comes with the next record, and
    /// the last one has none. Numbers about other records cannot be filled in: the data must have them.
    ///
    /// \param part    which record of the layout it is, see CLayout::findPart(); an array stands for its element
    /// \param record  its members
    /// \return false at a fault, with nothing appended; also when such a record cannot come next. A record whose end is
    /// that of the input is the last.
    bool write(unsigned int part, const CFields& record, std::string& out);
    /// Ends the file. \return false when records are missing, or the last one has neither bytes nor a mark
    bool finish();

    const tPacketFault& getFault() const;
    /// What was found, such as totals that differ, since the last call.
    const std::vector<tPacketFault>& getFindings() const;

private:
    struct tState;
    std::unique_ptr<tState> m_pState;
};

}  // namespace murv

#endif
