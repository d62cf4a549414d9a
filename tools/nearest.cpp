// tools/nearest.cpp - counts the slips between two words: letters left out, added, changed or swapped.
#include "tools/nearest.h"

#include <algorithm>
#include <cstddef>

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostSlips = 2;
constexpr std::size_t s_cnLongestWord = 64;  // arguments may be of any length; words are short

std::size_t slips(const std::string& a, const std::string& b)
{
    // Of the table of all beginnings of `a` against all of `b`, three rows are needed at a time.
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i)
    {
        before.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j)
        {
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
    }
    return row[b.size()];
}
}  // namespace

std::string nearest(const std::string& typed, const std::vector<std::string>& words)
{
    std::string best;
    std::size_t fewest = s_cnMostSlips + 1;
    if (typed.size() < 2 || typed.size() > s_cnLongestWord)
        return best;
    for (const std::string& word : words)
    {
        const std::size_t count = word.rfind(typed, 0) == 0 ? 1 : slips(typed, word);
        if (count >= fewest || count >= std::min(typed.size(), word.size()))
            continue;
        fewest = count;
        best = word;
    }
    return best;
}

std::string hint4(const std::string& typed, const std::vector<std::string>& words)
{
    const std::string word = nearest(typed, words);
    return word.empty() ? std::string() : "; did you mean " + word + "?";
}

}  // namespace murv::tool
