// bench/counted/documents.cpp - makes the documents of the counted runs.
//
// The numbers come from a generator whose output the standard lays down to the bit. Which number stands where depends
// on the order in which a compiler evaluates the operands of +.
#include "documents.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace murv_bench
{

namespace
{

/// Whole numbers below a limit; the small excess of the lower ones does not matter here.
class CNumbers
{
public:
    std::size_t below(std::size_t limit)
    {
        return m_tBits() % limit;
    }
    std::string digits(std::size_t count)
    {
        std::string text(1, static_cast<char>('1' + below(9)));
        while (text.size() < count)
            text += static_cast<char>('0' + below(10));
        return text;
    }

private:
    std::mt19937 m_tBits{20240131};
};

std::string sentence(CNumbers& numbers, std::size_t words)
{
    static const char* const s_cpWords[] = {
        "the",           "tide",      "rises",      "before",   "noon",     "we",     "measured", "it",   "again",
        "\\\"twice\\\"", "from",      "Saint-Malo", "à",        "Brest",    "über",   "das",      "Meer", "\\n",
        "a\\tb",         "and\\\\or", "海",         "風が強い", "tomorrow", "#tides", "@harbour"};
    std::string text;
    for (std::size_t i = 0; i < words; ++i)
    {
        text += i == 0 ? "" : " ";
        text += s_cpWords[numbers.below(std::size(s_cpWords))];
    }
    return text;
}

std::string message(CNumbers& numbers, std::size_t number)
{
    const std::string id = std::to_string(505874924095815681 + static_cast<std::int64_t>(number));
    const std::string author = std::to_string(numbers.below(2000000000));
    return "{\n  \"id\" = " + id + ",\n  \"created_at\" = \"Sun Aug 31 00:29:15 +0000 2014\",\n  \"text\" = \"" +
           sentence(numbers, 4 + numbers.below(24)) +
           "\",\n  \"source\" = \"<a href=\\\"http://tides.example.org\\\" rel=\\\"nofollow\\\">Tides<\\/a>\",\n" +
           "  \"truncated\" = false,\n  \"in_reply_to\" = null,\n  \"user\" = {\n    \"id\" = " + author +
           ",\n    \"name\" = \"" + sentence(numbers, 2) + "\",\n    \"description\" = \"" +
           sentence(numbers, numbers.below(16)) +
           "\",\n    \"url\" = null,\n    \"followers\" = " + std::to_string(numbers.below(100000)) +
           ",\n    \"verified\" = " + (numbers.below(9) == 0 ? "true" : "false") +
           ",\n    \"image\" = \"http://images.example.org/profiles/" + author + "/normal.jpeg\"\n  },\n" +
           "  \"entities\" = { \"marks\" = [ \"" + sentence(numbers, 1) + "\", \"" + sentence(numbers, 1) +
           "\" ], \"at\" = [ " + std::to_string(numbers.below(140)) + ", " + std::to_string(numbers.below(140)) +
           " ] }\n}";
}

std::string performance(CNumbers& numbers, std::size_t number)
{
    std::string text = "{ \"id\" = " + std::to_string(339887544 + number) + ", \"event\" = " + numbers.digits(9) +
                       ", \"logo\" = null, \"start\" = " + numbers.digits(13) + ", \"prices\" = [";
    for (std::size_t i = 0, count = 1 + numbers.below(4); i < count; ++i)
        text += std::string(i == 0 ? " " : ", ") + "{ \"amount\" = " + numbers.digits(5) +
                ", \"audience\" = 337100890, \"category\" = " + numbers.digits(9) + " }";
    text += " ], \"areas\" = [";
    for (std::size_t i = 0, count = 2 + numbers.below(8); i < count; ++i)
        text += std::string(i == 0 ? " " : ", ") + "{ \"area\" = " + numbers.digits(9) + ", \"blocks\" = null }";
    return text + " ], \"map\" = null, \"venue\" = \"PLEYEL_PLEYEL\" }";
}

/// One item after the other between an opening and a closing bracket.
template <typename tMake>
std::string list(std::size_t count, char opening, tMake&& make)
{
    CNumbers numbers;
    std::string text = {opening, '\n'};
    for (std::size_t i = 0; i < count; ++i)
        text += (i == 0 ? "" : ",\n") + make(numbers, i);
    return text + (opening == '[' ? "\n]\n" : "\n}\n");
}

}  // namespace

std::string makeConfig()
{
    return "// Settings of the gateway; the service reads them when it starts.\n" +
           list(8, '{', [](CNumbers& numbers, std::size_t i) {
               const std::string number = std::to_string(i);
               return "  /* Listener " + number + ". */\n  #" + std::to_string(i + 1) + " \"listener" + number +
                      "\" =\n  {\n    \"host\" = \"10.0.0." + number +
                      "\",  // inside only\n    \"port\" = " + std::to_string(8000 + i) +
                      ",\n    \"weight\" = " + std::to_string(numbers.below(9)) + "." + numbers.digits(2) +
                      ",\n    \"tls\" = { \"enabled\" = true, \"file\" = \"/etc/gateway/key" + number +
                      ".pem\" },\n    \"retry\" = [ 1, 2, 5, 10 ],\n    \"account\" = (ANF12) 4200\n  }";
           });
}

std::string makeCatalog()
{
    return list(500, '[', performance);
}

std::string makeCoordinates()
{
    return list(100, '[', [](CNumbers& numbers, std::size_t) {
        std::string ring = "[";
        for (std::size_t i = 0; i < 100; ++i)
            ring += std::string(i == 0 ? " " : ", ") + "[ -" + numbers.digits(2) + "." +
                    numbers.digits(6 + numbers.below(10)) + ", " + numbers.digits(2) + "." +
                    numbers.digits(6 + numbers.below(10)) + " ]";
        return ring + " ]";
    });
}

std::string makeMessages()
{
    return list(300, '[', message);
}

}  // namespace murv_bench
