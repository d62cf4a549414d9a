// tests/layout/property/random_layout.cpp - random layouts and data.
#include "tests/layout/property/random_layout.h"

#include <algorithm>
#include <cmath>

namespace murv::tests
{

namespace
{

std::string letters(tRandom& random, unsigned int length, std::string_view alphabet = "abcXYZ019.- ,")
{
    std::string text;
    for (unsigned int i = 0; i < length; ++i)
        text += alphabet[below(random, static_cast<unsigned int>(alphabet.size()))];
    return text;
}

/// Does not begin or end with a blank.
std::string word(tRandom& random, unsigned int most)
{
    std::string text = letters(random, below(random, most + 1));
    if (!text.empty())
        text.front() = 'w';
    if (!text.empty())
        text.back() = 'e';
    return text;
}

std::string bytes(tRandom& random, unsigned int length)
{
    std::string text(length, '\0');
    for (char& c : text)
        c = static_cast<char>(below(random, 256));
    return text;
}

long long integer(tRandom& random, unsigned int digits, bool negative)
{
    long long number = 0;
    for (unsigned int i = below(random, digits + 1); i != 0; --i)
        number = number * 10 + below(random, 10);
    return negative && below(random, 2) == 0 ? -number : number;
}

/// Text of a number with that many decimals, as reading gives it.
std::string decimal(tRandom& random, unsigned int digits, unsigned int decimals, bool negative)
{
    const long long number = integer(random, digits, negative);
    std::string text = std::to_string(std::abs(number));
    if (text.size() <= decimals)
        text.insert(0, decimals + 1 - text.size(), '0');
    text.insert(text.size() - decimals, ".");
    return (number < 0 ? "-" : "") + text;
}

struct tLeafKind
{
    std::string m_strExpression;  // % is a random digit from 2 on
    std::string m_strRules;
    CFields (*m_pValue)(tRandom& random, unsigned int digit);
    bool m_bVaries = false;
};

const std::vector<tLeafKind>& leafKinds()
{
    static const std::vector<tLeafKind> s_vKinds = {
        {"ACF%", "", [](tRandom& r, unsigned int n) { return CFields(word(r, n)); }},
        {"ACF%", "keep", [](tRandom& r, unsigned int n) { return CFields(letters(r, n)); }},
        {"ACF%", "right", [](tRandom& r, unsigned int n) { return CFields(word(r, n)); }},
        {"ACF%", "pad zero", [](tRandom& r, unsigned int n) { return CFields(word(r, n)); }},
        {"ACF%", "cp037", [](tRandom& r, unsigned int n) { return CFields(word(r, n)); }},
        {"ACV2+2", "", [](tRandom& r, unsigned int n) { return CFields(letters(r, below(r, n + 1))); }, true},
        {"BCF%", "", [](tRandom& r, unsigned int n) { return CFields(bytes(r, n)); }},
        {"BCV1+1", "", [](tRandom& r, unsigned int n) { return CFields(bytes(r, below(r, n * 3))); }, true},
        {"BCV2", "little", [](tRandom& r, unsigned int n) { return CFields(bytes(r, below(r, n * 3))); }, true},
        {"ACF8", "hex", [](tRandom& r, unsigned int) { return CFields(bytes(r, 4)); }},
        {"ANF%", "", [](tRandom& r, unsigned int n) { return CFields(integer(r, n - 1, true)); }},
        {"ANF%", "blank is null",
         [](tRandom& r, unsigned int n) { return below(r, 3) == 0 ? CFields() : CFields(integer(r, n, false)); }},
        {"ANF%", "pad blank", [](tRandom& r, unsigned int n) { return CFields(integer(r, n - 1, true)); }},
        {"ANF%", "left", [](tRandom& r, unsigned int n) { return CFields(integer(r, n - 1, true)); }},
        {"ANF9", "decimals 2", [](tRandom& r, unsigned int) { return CFields(decimal(r, 8, 2, true)); }},
        {"ANF8", "octal", [](tRandom& r, unsigned int) { return CFields(static_cast<long long>(below(r, 1U << 24))); }},
        {"ANF6", "hex", [](tRandom& r, unsigned int) { return CFields(static_cast<long long>(below(r, 1U << 24))); }},
        {"ANF7", "zoned; signed", [](tRandom& r, unsigned int) { return CFields(integer(r, 7, true)); }},
        {"ANV1+1", "", [](tRandom& r, unsigned int) { return CFields(integer(r, 7, true)); }, true},
        {"BNF4", "packed; signed", [](tRandom& r, unsigned int) { return CFields(integer(r, 7, true)); }},
        {"BNF3", "bcd", [](tRandom& r, unsigned int) { return CFields(integer(r, 6, false)); }},
        {"BNF2", "", [](tRandom& r, unsigned int) { return CFields(static_cast<long long>(below(r, 65536))); }},
        {"BNF3", "little",
         [](tRandom& r, unsigned int) { return CFields(static_cast<long long>(below(r, 1U << 24))); }},
        {"BNF8", "signed; little",
         [](tRandom& r, unsigned int) { return CFields(static_cast<long long>(r()) - 2147483648LL); }},
        {"BNF8", "float",
         [](tRandom& r, unsigned int) { return CFields(static_cast<double>(integer(r, 9, true)) / 8); }},
        {"BNF1", "bits 1 high, 3 mid, 4 low",
         [](tRandom& r, unsigned int) {
             CFields bits(DT_fields);
             bits.addChildRef("high") = static_cast<long long>(below(r, 2));
             bits.addChildRef("mid") = static_cast<long long>(below(r, 8));
             bits.addChildRef("low") = static_cast<long long>(below(r, 16));
             return bits;
         }},
        {"ACF0", "ends \\\";\\\"", [](tRandom& r, unsigned int n) { return CFields(letters(r, below(r, n + 1))); },
         true},
    };
    return s_vKinds;
}

class CSketcher
{
public:
    explicit CSketcher(tRandom& random) : m_tRandom(random)
    {
    }
    tSketch root()
    {
        tSketch sketch = set("", 0);
        sketch.m_strOwnRules = below(m_tRandom, 2) == 0 ? "layout 1" : "layout 1; little";
        return sketch;
    }

    /// A file of records: a head, items of several kinds, an end.
    tSketch file()
    {
        static const char* const s_acpFrames[] = {"lines", "prefixed BNF2", "prefixed BNF4 + 4; little",
                                                  "prefixed ANF4", "lines \\\"~\\\""};
        const unsigned int frame = pick(5);
        m_bTextOnly = frame == 0 || frame == 4;
        tSketch file;
        file.m_eKind = tSketch::SK_set;
        file.m_strOwnRules = std::string("layout 1; ") + s_acpFrames[frame];
        tSketch item;
        item.m_eKind = tSketch::SK_set;
        item.m_strOwnRules = "one of";
        item.m_bChoice = true;
        for (const char kind : {'A', 'B'})
            item.m_vMembers.push_back(record(kind));
        file.m_vMembers.push_back(record('H'));
        file.m_vMembers.push_back(array(std::move(item)));
        file.m_vMembers.push_back(record('Z'));
        return file;
    }

private:
    tSketch record(char kind)
    {
        tSketch sketch = set(name(), m_bTextOnly ? 3 : 2);
        sketch.m_vMembers.insert(sketch.m_vMembers.begin(), literal(kind));
        return sketch;
    }
    std::string name()
    {
        return "n" + std::to_string(++m_uiNames);
    }
    unsigned int pick(unsigned int bound)
    {
        return below(m_tRandom, bound);
    }

    tSketch leaf()
    {
        const tLeafKind* chosen = nullptr;
        do
            chosen = &leafKinds()[pick(static_cast<unsigned int>(leafKinds().size()))];
        while (m_bTextOnly && chosen->m_strExpression[0] != 'A');
        const tLeafKind& kind = *chosen;
        const unsigned int digit = 2 + pick(8);
        tSketch sketch;
        sketch.m_strName = name();
        sketch.m_strExpression = kind.m_strExpression;
        std::replace(sketch.m_strExpression.begin(), sketch.m_strExpression.end(), '%', static_cast<char>('0' + digit));
        sketch.m_strRules = kind.m_strRules;
        sketch.m_strValue = kind.m_strExpression[1] == 'N' ? "0" : "\"\"";
        sketch.m_tValue = [value = kind.m_pValue, digit](tRandom& random) { return value(random, digit); };
        return sketch;
    }
    tSketch literal(char byte)
    {
        tSketch sketch;
        sketch.m_strName = name();
        sketch.m_strExpression = "ACF1fix";
        sketch.m_strValue = std::string("\"") + byte + "\"";
        return sketch;
    }
    static tSketch number(const std::string& name, const std::string& rules)
    {
        tSketch sketch;
        sketch.m_strName = name;
        sketch.m_strExpression = "BNF4";
        sketch.m_strValue = "0";
        sketch.m_strRules = rules;
        return sketch;
    }
    tSketch set(const std::string& name, unsigned int depth)
    {
        tSketch sketch;
        sketch.m_eKind = tSketch::SK_set;
        sketch.m_strName = name;
        sketch.m_vMembers.push_back(leaf());
        for (unsigned int i = pick(5); i != 0; --i)
            addMember(sketch, depth);
        return sketch;
    }
    tSketch array(tSketch element)
    {
        tSketch sketch;
        sketch.m_eKind = tSketch::SK_array;
        sketch.m_strName = name();
        element.m_strName.clear();
        sketch.m_vMembers.push_back(std::move(element));
        return sketch;
    }

    void addMember(tSketch& set, unsigned int depth)
    {
        switch (depth >= 3 ? 0 : pick(16))
        {
        case 9: return addBetween(set);
        case 10: return addUntil(set, depth);
        case 11: return addEnded(set, depth);
        case 12: return addAligned(set, depth);
        case 13: return addBitmap(set, depth);
        case 14: return addTotal(set);
        case 15: return addVaryingSize(set, depth);
        case 1: return addCounted(set, depth);
        case 2: return addSized(set, depth);
        case 3: return addChoice(set, depth);
        case 4: return addOptional(set, depth);
        case 5: return addConditional(set, depth);
        case 6: set.m_vMembers.push_back(this->set(name(), depth + 1)); return;
        case 7: return addLiteralArray(set, depth);
        case 8: return addChecked(set);
        default: set.m_vMembers.push_back(leaf());
        }
    }
    void addCounted(tSketch& set, unsigned int depth)
    {
        tSketch elements = array(this->set("", depth + 1));
        set.m_vMembers.push_back(number(name(), "count of " + elements.m_strName));
        set.m_vMembers.push_back(std::move(elements));
    }
    void addSized(tSketch& set, unsigned int depth)
    {
        tSketch sized = pick(2) == 0 ? this->set(name(), depth + 1) : leaf();
        const char* const more = pick(2) == 0 ? "" : "; little";
        set.m_vMembers.push_back(number(name(), "size of " + sized.m_strName + (pick(2) == 0 ? "" : " + 4") + more));
        set.m_vMembers.push_back(std::move(sized));
    }
    void addChoice(tSketch& set, unsigned int depth)
    {
        tSketch choice;
        choice.m_eKind = tSketch::SK_set;
        choice.m_strName = name();
        choice.m_bChoice = true;
        const bool byValue = pick(2) == 0;
        const std::string chooser = name();
        for (unsigned int i = 0; i < 3; ++i)
        {
            tSketch alternative = this->set(name(), depth + 1);
            alternative.m_uiID = byValue ? i + 1 : 0;
            if (!byValue)
                alternative.m_vMembers.insert(alternative.m_vMembers.begin(), literal(static_cast<char>('P' + i)));
            choice.m_vMembers.push_back(std::move(alternative));
        }
        choice.m_strOwnRules = byValue ? "one of by " + chooser : "one of";
        if (byValue)
            set.m_vMembers.push_back(number(chooser, ""));
        set.m_vMembers.push_back(std::move(choice));
    }
    /// The literal after it tells whether it is there.
    void addOptional(tSketch& set, unsigned int depth)
    {
        tSketch optional = this->set(name(), depth + 1);
        optional.m_vMembers.insert(optional.m_vMembers.begin(), literal('O'));
        optional.m_strRules = "optional";
        optional.m_bMayBeAbsent = true;
        set.m_vMembers.push_back(std::move(optional));
        set.m_vMembers.push_back(literal('N'));
    }
    void addConditional(tSketch& set, unsigned int depth)
    {
        tSketch flags = number(name(), "bits 1 there, 31 rest");
        tSketch part = this->set(name(), depth + 1);
        part.m_strOwnRules = "if " + flags.m_strName + ".there = " + (pick(2) == 0 ? "1" : "0");
        part.m_bMayBeAbsent = true;
        set.m_vMembers.push_back(std::move(flags));
        set.m_vMembers.push_back(std::move(part));
    }
    void addLiteralArray(tSketch& set, unsigned int depth)
    {
        tSketch element = this->set("", depth + 1);
        element.m_vMembers.insert(element.m_vMembers.begin(), literal('E'));
        set.m_vMembers.push_back(array(std::move(element)));
        set.m_vMembers.push_back(literal('F'));
    }
    /// Texts of varying width, and a last array that takes the rest.
    void addBetween(tSketch& set)
    {
        tSketch row;
        row.m_eKind = tSketch::SK_set;
        row.m_strName = name();
        row.m_strOwnRules = "between \\\"|\\\"";
        for (unsigned int i = 1 + pick(3); i != 0; --i)
            row.m_vMembers.push_back(text("ACF0"));
        if (pick(2) == 0)
            row.m_vMembers.push_back(array(text("ACF0")));
        // Its last part ends where it does, so a number says its size.
        set.m_vMembers.push_back(number(name(), "size of " + row.m_strName));
        set.m_vMembers.push_back(std::move(row));
    }
    tSketch text(const std::string& expression)
    {
        tSketch sketch;
        sketch.m_strName = name();
        sketch.m_strExpression = expression;
        sketch.m_strValue = "\"\"";
        sketch.m_tValue = [](tRandom& random) { return CFields("x" + letters(random, below(random, 6))); };
        return sketch;
    }
    void addUntil(tSketch& set, unsigned int depth)
    {
        tSketch element = this->set("", depth + 1);
        tSketch last = number(name(), "");
        element.m_vMembers.insert(element.m_vMembers.begin(), last);
        tSketch elements = array(std::move(element));
        elements.m_strRules = "until " + last.m_strName + " = 1";
        elements.m_strUntil = last.m_strName;
        elements.m_uiLeast = 1;
        set.m_vMembers.push_back(std::move(elements));
    }
    void addEnded(tSketch& set, unsigned int depth)
    {
        tSketch element = this->set("", depth + 1);
        element.m_vMembers.insert(element.m_vMembers.begin(), literal('E'));
        tSketch elements = array(std::move(element));
        elements.m_strRules = "ends \\\"\\x00\\\"";
        set.m_vMembers.push_back(std::move(elements));
    }
    void addAligned(tSketch& set, unsigned int depth)
    {
        tSketch part = pick(2) == 0 ? leaf() : this->set(name(), depth + 1);
        const char* const align = pick(2) == 0 ? "align 4" : "align 8";
        part.m_strRules += (part.m_strRules.empty() ? "" : "; ") + std::string(align);
        set.m_vMembers.push_back(std::move(part));
    }
    void addBitmap(tSketch& set, unsigned int depth)
    {
        tSketch data;
        data.m_eKind = tSketch::SK_set;
        data.m_strName = name();
        for (unsigned int id = 1; id <= 16; id += 1 + pick(6))
        {
            tSketch part = pick(4) == 0 ? this->set(name(), depth + 1) : leaf();
            part.m_uiID = id;
            part.m_bMayBeAbsent = true;
            data.m_vMembers.push_back(std::move(part));
        }
        tSketch bitmap;
        bitmap.m_strName = name();
        bitmap.m_strExpression = pick(2) == 0 ? "BCF2" : "ACF4";
        bitmap.m_strValue = "\"\"";
        bitmap.m_strRules = (bitmap.m_strExpression == "ACF4" ? "hex; bits of " : "bits of ") + data.m_strName;
        set.m_vMembers.push_back(std::move(bitmap));
        set.m_vMembers.push_back(std::move(data));
    }
    void addTotal(tSketch& set)
    {
        tSketch amount;
        amount.m_strName = name();
        amount.m_strExpression = "ANF7";
        amount.m_strValue = "0";
        amount.m_tValue = [](tRandom& random) { return CFields(integer(random, 6, false)); };
        tSketch element;
        element.m_eKind = tSketch::SK_set;
        element.m_vMembers = {literal('T'), amount};
        tSketch elements = array(std::move(element));
        const std::string path = elements.m_strName + "." + amount.m_strName;
        const bool isBefore = pick(2) == 0;
        tSketch sum = number(name(), "sum of " + path);
        tSketch count = number(name(), "count of " + elements.m_strName);
        if (isBefore)
            set.m_vMembers.push_back(sum);
        set.m_vMembers.push_back(std::move(elements));
        set.m_vMembers.push_back(literal('U'));
        if (!isBefore)
            set.m_vMembers.push_back(sum);
        set.m_vMembers.push_back(std::move(count));
    }
    /// The number that says the size has another width when the size is large.
    void addVaryingSize(tSketch& set, unsigned int depth)
    {
        tSketch sized = this->set(name(), depth + 1);
        tSketch size = number(name(), "size of " + sized.m_strName);
        size.m_strExpression = "ANV1+1";
        set.m_vMembers.push_back(std::move(size));
        set.m_vMembers.push_back(std::move(sized));
    }
    void addChecked(tSketch& set)
    {
        set.m_vMembers.push_back(leaf());
        const std::string checked = set.m_vMembers.back().m_strName;
        set.m_vMembers.push_back(number(name(), "crc32 of " + checked));
    }

    tRandom& m_tRandom;
    unsigned int m_uiNames = 0;
    bool m_bTextOnly = false;
};

void appendPart(std::string& text, const tSketch& sketch)
{
    if (sketch.m_uiID != 0)
        text += "#" + std::to_string(sketch.m_uiID) + " ";
    if (!sketch.m_strName.empty())
        text += "\"" + sketch.m_strName + "\" = ";
    if (sketch.m_eKind == tSketch::SK_leaf)
    {
        text += "(" + sketch.m_strExpression + ") " + sketch.m_strValue;
        return;
    }
    const bool isSet = sketch.m_eKind == tSketch::SK_set;
    text += isSet ? "{ " : "[ ";
    bool isFirst = true;
    const auto separate = [&] {
        text += isFirst ? "" : ",\n";
        isFirst = false;
    };
    if (!sketch.m_strOwnRules.empty())
    {
        separate();
        text += "\"@\" = \"" + sketch.m_strOwnRules + "\"";
    }
    for (const tSketch& member : sketch.m_vMembers)
    {
        separate();
        appendPart(text, member);
        if (isSet && !member.m_strRules.empty())
            text += ", \"@" + member.m_strName + "\" = \"" + member.m_strRules + "\"";
    }
    text += isSet ? " }" : " ]";
}

}  // namespace

unsigned int below(tRandom& random, unsigned int bound)
{
    return static_cast<unsigned int>(random() % bound);
}

tSketch makeSketch(tRandom& random)
{
    CSketcher sketcher(random);
    return below(random, 3) == 0 ? sketcher.file() : sketcher.root();
}

std::string text4Sketch(const tSketch& sketch)
{
    std::string text;
    appendPart(text, sketch);
    return text;
}

CFields data4Sketch(const tSketch& sketch, tRandom& random)
{
    if (sketch.m_eKind == tSketch::SK_leaf)
        return sketch.m_tValue(random);
    CFields data(sketch.m_eKind == tSketch::SK_set ? DT_fields : DT_array);
    if (sketch.m_eKind == tSketch::SK_array)
    {
        for (unsigned int i = sketch.m_uiLeast + below(random, 4); i != 0; --i)
        {
            CFields element = data4Sketch(sketch.m_vMembers.front(), random);
            if (!sketch.m_strUntil.empty())
                element.addChildRef(sketch.m_strUntil.c_str()) = i == 1 ? 1 : 2;
            data.addArrayAt(std::move(element));
        }
        return data;
    }
    const unsigned int chosen =
        sketch.m_bChoice ? below(random, static_cast<unsigned int>(sketch.m_vMembers.size())) : 0;
    for (unsigned int i = 0; i < sketch.m_vMembers.size(); ++i)
    {
        const tSketch& member = sketch.m_vMembers[i];
        const bool hasValue = member.m_eKind != tSketch::SK_leaf || member.m_tValue != nullptr;
        const bool isLeftOut = sketch.m_bChoice ? i != chosen : member.m_bMayBeAbsent && below(random, 2) == 0;
        // What depends on a condition is tried with and without; the caller counts what does not fit.
        if (hasValue && !isLeftOut)
            data.addChildRef(member.m_strName.c_str()).setValue(data4Sketch(member, random));
    }
    return data;
}

bool isWithin(const CFields& data, const CFields& read)
{
    if (!data.isField() && !data.isArray())
        return data == read;
    if (data.isArray())
    {
        if (!read.isArray() || data.getChildCount() != read.getChildCount())
            return false;
        for (unsigned int i = 0; i < data.getChildCount(); ++i)
        {
            if (!isWithin(data[i], read[i]))
                return false;
        }
        return true;
    }
    if (!read.isField())
        return false;
    for (const CFields& member : data)
    {
        const CFields* const found = read.findChildAt(member.getName(), member.getNameLen());
        if (found == nullptr || !isWithin(member, *found))
            return false;
    }
    return true;
}

}  // namespace murv::tests
