// records.cpp - writes a document of any size to the standard output: records [BYTES].
//
// Each record is built as a tree, saved on one line and forgotten, so the memory needed does not grow with the
// document. The records look random, and are the same in every run.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "murv/murv.h"

namespace
{
/// Numbers that look random (xorshift64*), the same on every machine.
class CNumbers
{
public:
    std::uint64_t below(std::uint64_t limit)
    {
        m_ullState ^= m_ullState >> 12U;
        m_ullState ^= m_ullState << 25U;
        m_ullState ^= m_ullState >> 27U;
        return (m_ullState * 2685821657736338717ULL >> 16U) % limit;
    }
    int number(int limit)
    {
        return static_cast<int>(below(static_cast<std::uint64_t>(limit)));
    }

private:
    std::uint64_t m_ullState = 88172645463325252ULL;
};

const char* const s_cpGoods[] = {"lamp", "desk", "chair", "shelf", "cable tray", "monitor arm", "rug \"Oslo\""};
const char* const s_cpTags[] = {"new", "sale", "outdoor", "kids", "returned"};

murv::CFields makeRecord(int number, CNumbers& numbers)
{
    murv::CFields record;
    record.addChildRef("id") = number;
    record.addChildRef("name") = std::string(s_cpGoods[numbers.number(7)]) + " no. " + std::to_string(number);
    record.addChildRef("price") = numbers.number(400000) / 64.0;
    record.addChildRef("stock") = numbers.number(1000);
    record.addChildRef("available") = numbers.number(4) != 0;
    murv::CFields& position = record.addChildRef("position");
    position.addArrayAt(murv::CFields(numbers.number(180 * 1024) / 1024.0 - 90));
    position.addArrayAt(murv::CFields(numbers.number(360 * 1024) / 1024.0 - 180));
    murv::CFields& tags = record.addChildRef("tags");
    for (int i = numbers.number(4); i >= 0; --i)
        tags.addArrayAt(murv::CFields(s_cpTags[numbers.number(5)]));
    murv::CFields& boxes = record.addChildRef("boxes");
    for (int i = 0; i < 2; ++i)
    {
        murv::CFields& box = boxes.addArrayAt(murv::CFields());
        for (int side = 0; side < 3; ++side)
            box.addArrayAt(murv::CFields(20 + numbers.number(200)));
    }
    return record;
}
}  // namespace

int main(int argc, char** argv)
{
    const unsigned long long wanted = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 500;
    std::ios::sync_with_stdio(false);
    murv::CSaver4SER_PKT saver;
    CNumbers numbers;
    unsigned long long written = 0;
    for (int number = 1; written < wanted; ++number)
    {
        const std::string text = saver.saving(makeRecord(number, numbers));
        std::cout << (number == 1 ? "[\n" : ",\n") << text;
        written += text.size() + 2;
    }
    std::cout << "\n]\n" << std::flush;
    return std::cout ? 0 : 1;
}
