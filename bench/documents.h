// bench/documents.h - what the benches measure on: real documents and a large one made of records.
//
// Real documents are JSON files named on the command line of the machine that measures: the environment variable
// MURV_CORPORA_DIR says where they are. Each is held as JSON for the other libraries and as text for murv.
#pragma once

#include <string>
#include <vector>

namespace murv_bench
{

struct tDocument
{
    std::string m_strName;
    std::string m_strJson;
    std::string m_strText;  // the same document in murv's notation, as a person would write it: bytes as they are
};

/// Loaded once. Empty when MURV_CORPORA_DIR is not set.
const std::vector<tDocument>& realDocuments();

/// The same document without blanks and line breaks, under the same name.
tDocument withoutBlanks(const tDocument& document);

/// Records with names, numbers, texts and small arrays, of about that many bytes of JSON.
tDocument makeRecords(std::size_t bytes);

/// From now on the heap keeps what is freed, up to blocks of 32 MB, instead of giving some of it back to the system
/// when it thinks fit. Fetching a page anew costs more than most of what is measured.
void keepHeap();

/// Gives all free pages of the heap back to the system, so that what comes next fetches them anew.
void giveBackHeap();

/// Bytes of the heap that are in use.
std::size_t heapInUse();

}  // namespace murv_bench
