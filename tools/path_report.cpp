// tools/path_report.cpp - reports about the argument PATH.
#include "tools/path_report.h"

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

bool haveSameId(const CFields& a, const CFields& b)
{
    return a.getID() != 0 && a.getID() == b.getID();
}

/// The last member of a field set that has the name or the ID of this one.
const CFields* lastOf(const CFields& container, const CFields& member)
{
    const CFields* last = &member;
    for (const CFields& other : container)
    {
        if (container.isField() && (haveSameName(other, member) || haveSameId(other, member)))
            last = &other;
    }
    return last;
}

std::string shownMember(const CFields& member, const CFields& last)
{
    return haveSameName(member, last) ? "name " + pathName(nameOf(last)) : "ID " + std::to_string(last.getID());
}
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
        const CFields* const last = lastOf(*node, *next);
        if (last != next)
        {
            tDiagnostic diagnostic;
            diagnostic.m_eSeverity = SV_warning;
            diagnostic.m_strFile = input.m_strName;
            diagnostic.m_strMessage = "this later member has the " + shownMember(*next, *last) +
                                      ", too: programs that load the document take its value";
            diagnostic.m_svSource = input.text();
            diagnostic.m_tRange = {static_cast<std::size_t>(last->getOffsetStart()),
                                   static_cast<std::size_t>(last->getOffsetEnd())};
            diagnostics.report(diagnostic);
        }
        node = next;
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
