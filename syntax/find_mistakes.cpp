// syntax/find_mistakes.cpp - all mistakes of a text, with lines and columns.
#include "io/error_records.h"
#include "murv/syntax.h"
#include "syntax/grammar_reader.h"

namespace murv
{

namespace
{

using namespace detail;

/// Keeps the mistakes, and nothing of the text.
class CMistakeSink : public ISyntaxSink
{
public:
    explicit CMistakeSink(const char* begin) : m_pBegin(begin)
    {
    }
    void begin() override
    {
    }
    void token(E_SyntaxRole, const tTokenInfo&) override
    {
    }
    void end() override
    {
    }
    void mistake(const tMistake& mistake) override
    {
        std::optional<std::ptrdiff_t> second;
        if (mistake.m_pSecond != nullptr)
            second = mistake.m_pSecond - m_pBegin;
        m_tRecords.add(mistake.m_pMessage, mistake.m_pBegin - m_pBegin, mistake.m_pEnd - m_pBegin, second);
    }
    std::vector<tErrorPlace> places()
    {
        m_tRecords.countLines(m_pBegin);
        return m_tRecords.places();
    }

private:
    const char* m_pBegin;
    CErrorRecords m_tRecords;
};

}  // namespace

std::vector<tErrorPlace> findMistakes(std::string_view text, unsigned int config)
{
    CMistakeSink sink(text.data());
    CGrammarReader(text, config, sink).read();
    return sink.places();
}

}  // namespace murv
