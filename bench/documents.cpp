// bench/documents.cpp - the documents that the benches read and write.
#include "bench/documents.h"

#include <malloc.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>

#include "core/memory/page_block.h"
#include "tests/support/json_to_text.h"

namespace murv_bench
{

namespace
{
std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string convert(const std::string& json)
{
    return murv::tests::text4Json(json);
}

std::string record(std::size_t number)
{
    const std::string id = std::to_string(number);
    const std::size_t cents = number * 7919 % 1000000;
    return "{\"id\": " + id + ", \"account\": \"AC-" + std::to_string(number * 2654435761U % 100000000) +
           "\", \"amount\": " + std::to_string(cents / 100) + "." + std::to_string(10 + cents % 90) +
           ", \"currency\": \"EUR\", \"open\": " + (number % 3 == 0 ? "true" : "false") +
           ", \"tags\": [\"retail\", \"card\", \"p" + std::to_string(number % 17) + "\"], \"history\": [" +
           std::to_string(number % 1000) + ", " + std::to_string(number % 777) + ", " + std::to_string(number % 91) +
           "], \"note\": \"payment " + id + " received, thank you\"}";
}
}  // namespace

const std::vector<tDocument>& realDocuments()
{
    static const std::vector<tDocument> documents = [] {
        std::vector<tDocument> found;
        const char* const directory = std::getenv("MURV_CORPORA_DIR");
        if (directory == nullptr)
            return found;
        for (const char* name : {"twitter", "citm_catalog", "canada"})
        {
            std::string json = readFile(std::string(directory) + "/" + name + ".json");
            std::string text = convert(json);
            found.push_back({name, std::move(json), std::move(text)});
        }
        return found;
    }();
    return documents;
}

tDocument withoutBlanks(const tDocument& document)
{
    std::string json;
    json.reserve(document.m_strJson.size());
    bool quoted = false;
    for (std::size_t i = 0; i < document.m_strJson.size(); ++i)
    {
        const char byte = document.m_strJson[i];
        if (byte == '"')
            quoted = !quoted;
        if (!quoted && (byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t'))
            continue;
        json += byte;
        if (quoted && byte == '\\')
            json += document.m_strJson[++i];
    }
    std::string text = convert(json);
    return {document.m_strName, std::move(json), std::move(text)};
}

tDocument makeRecords(std::size_t bytes)
{
    std::string json = "[\n";
    json.reserve(bytes + 512);
    for (std::size_t number = 1; json.size() < bytes; ++number)
    {
        if (number > 1)
            json += ",\n";
        json += record(number);
    }
    json += "\n]\n";
    std::string text = convert(json);
    return {"records", std::move(json), std::move(text)};
}

void keepHeap()
{
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_MMAP_THRESHOLD, 32 * 1024 * 1024);  // more is refused
}

void giveBackHeap()
{
    murv::detail::dropKeptPages();
    malloc_trim(0);
}

std::size_t heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd + murv::detail::mappedBytes();
}

}  // namespace murv_bench
