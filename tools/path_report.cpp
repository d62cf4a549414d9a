// tools/path_report.cpp - reports about the argument PATH.
#include "tools/path_report.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

namespace murv::tool
{

namespace
{
std::string_view nameOf(const CFields& node)
{
    return {node.getName(), node.getNameLen()};
}

bool haveSameName(const CFields& a, const CFields& b)
{
    return a.getNameLen() != 0 && nameOf(a) == nameOf(b);
}

/// Finds the last member of a field set that has the name or the ID of another one.
class CLastMembers
{
public:
    explicit CLastMembers(const CFields& container) : m_tContainer(container)
    {
        for (unsigned int i = 0; container.isField() && i < container.getChildCount(); ++i)
        {
            const CFields& member = container.getChildAt(i);
            if (member.getNameLen() != 0)
                m_mName[nameOf(member)] = i;
            if (member.getID() != 0)
                m_mId[member.getID()] = i;
        }
    }
    /// \return the member itself when it is the last one
    const CFields& of(const CFields& member) const
    {
        const auto name = m_mName.find(nameOf(member));
        const auto id = m_mId.find(member.getID());
        if (name == m_mName.end() && id == m_mId.end())
            return member;
        const unsigned int ofName = name == m_mName.end() ? 0 : name->second;
        return m_tContainer.getChildAt(id == m_mId.end() ? ofName : std::max(ofName, id->second));
    }

private:
    const CFields& m_tContainer;
    std::unordered_map<std::string_view, unsigned int> m_mName;
    std::unordered_map<unsigned int, unsigned int> m_mId;
};

constexpr const char* s_cpTaken = ", too: programs that load the document take its value";

std::string shownMember(const CFields& member, const CFields& last)
{
    return haveSameName(member, last) ? "name " + pathName(nameOf(last)) : "ID " + std::to_string(last.getID());
}

tDiagnostic warningAt(const CFields& member, const CFields& last, const tInput& input, std::string_view source)
{
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = SV_warning;
    diagnostic.m_strFile = input.m_strName;
    diagnostic.m_strMessage = "this later member has the " + shownMember(member, last) + s_cpTaken;
    diagnostic.m_svSource = source;
    diagnostic.m_tRange = {static_cast<std::size_t>(last.getOffsetStart()),
                           static_cast<std::size_t>(last.getOffsetEnd())};
    return diagnostic;
}

tDiagnostic warningAbout(const std::string& path, const CFields& member, const CFields& last, const tInput& input)
{
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = SV_warning;
    diagnostic.m_strFile = input.m_strName;
    diagnostic.m_strSubject = path;
    diagnostic.m_strMessage = "a later member has the " + shownMember(member, last) + s_cpTaken;
    return diagnostic;
}

/// A field set of a patch, with the one that it changes.
struct tPatched
{
    const CFields* m_pPatch;
    const CFields* m_pTarget;
    std::string m_strPrefix;  // of the paths of its members
};
}  // namespace

E_ExitCode checkPath(const std::string& text, const tNodePath& path, CDiagnostics& diagnostics)
{
    if (path.m_pError == nullptr)
        return EC_done;
    return diagnostics.failAt("PATH", text, {path.m_nErrorAt, path.m_nErrorAt + 1}, path.m_pError, EC_wrongCall);
}

void warnOfRepeatedNames(const tNodePath& path, const tInput& input, const CFields& root, CDiagnostics& diagnostics)
{
    const CFields* node = &root;
    for (const tPathPart& step : path.m_vStep)
    {
        tNodePath way;
        way.m_vStep.push_back(step);
        const CFields* const next = find(*node, way);
        if (next == nullptr)
            return;
        const CFields& last = CLastMembers(*node).of(*next);
        if (&last != next)
            diagnostics.report(warningAt(*next, last, input, input.text()));
        node = next;
    }
}

void warnOfRepeatedNames(const CFields& patch, const tInput& input, std::optional<std::string_view> source,
                         const CFields& root, CDiagnostics& diagnostics)
{
    std::vector<tPatched> open{{&patch, &root, {}}};
    while (!open.empty())
    {
        const tPatched pair = std::move(open.back());
        open.pop_back();
        if (!pair.m_pPatch->isField() || !pair.m_pTarget->isField())
            continue;
        const CLastMembers lasts(*pair.m_pTarget);
        for (const CFields& member : *pair.m_pPatch)
        {
            const CFields* const target = pair.m_pTarget->findChildAt(member.getName(), member.getNameLen());
            if (target == nullptr || member.isNull())
                continue;
            std::string path = pair.m_strPrefix + pathName(nameOf(member));
            const CFields& last = lasts.of(*target);
            if (&last != target)
                diagnostics.report(source ? warningAt(*target, last, input, *source)
                                          : warningAbout(path, *target, last, input));
            open.push_back({&member, target, std::move(path) + "."});
        }
    }
}

E_ExitCode reportNothingAt(std::string_view path, const tInput& input, CDiagnostics& diagnostics)
{
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = SV_note;
    diagnostic.m_strFile = input.m_strName;
    diagnostic.m_strMessage = "nothing at " + std::string(path);
    diagnostics.report(diagnostic);
    return EC_no;
}

}  // namespace murv::tool
