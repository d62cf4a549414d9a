// tools/path_report.cpp - reports about the argument PATH.
#include "tools/path_report.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>
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

using tNames = std::unordered_set<std::string_view>;

/// Finds the last member of a field set that has the name or the ID of another one.
class CLastMembers
{
public:
    /// \param ignored  names of members that do not count
    explicit CLastMembers(const CFields& container, const tNames& ignored = {}) : m_tContainer(container)
    {
        for (unsigned int i = 0; container.isField() && i < container.getChildCount(); ++i)
        {
            const CFields& member = container.getChildAt(i);
            if (ignored.count(nameOf(member)) != 0)
                continue;
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
    std::map<unsigned int, unsigned int> m_mId;  // a document could choose IDs that share a place in a hash table
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

using tPatches = std::vector<const CFields*>;

/// A member that a patch changes. Field sets are merged into it, in turn, unless something replaces it.
struct tChanged
{
    const CFields* m_pMember;
    tPatches m_vPatch;
    bool m_bReplaced = false;
};

/// Names that are null in any of the patches: of members of those names nothing stays.
tNames namesRemovedBy(const tPatches& patches)
{
    tNames names;
    for (const CFields* const patch : patches)
    {
        for (const CFields& member : *patch)
        {
            if (member.isNull())
                names.insert(nameOf(member));
        }
    }
    return names;
}

/// The members of a field set that patches change and do not remove, each once.
std::vector<tChanged> changedBy(const tPatches& patches, const CFields& container, const tNames& removed)
{
    std::vector<tChanged> all;
    std::unordered_map<const CFields*, std::size_t> known;
    for (const CFields* const patch : patches)
    {
        for (const CFields& change : *patch)
        {
            const CFields* const member = container.findChildAt(change.getName(), change.getNameLen());
            if (member == nullptr || removed.count(nameOf(change)) != 0)
                continue;
            const auto [at, isNew] = known.try_emplace(member, all.size());
            if (isNew)
                all.push_back({member, {}});
            tChanged& changed = all[at->second];
            changed.m_bReplaced = changed.m_bReplaced || !change.isField() || !member->isField();
            if (changed.m_bReplaced)
                changed.m_vPatch.clear();
            else
                changed.m_vPatch.push_back(&change);
        }
    }
    return all;
}

/// Warns of what a merge patch changes in vain.
///
/// Field sets that go into the same one are looked at together: that one is then looked at once, whatever the patch
/// repeats.
class CMergeWarnings
{
public:
    CMergeWarnings(const tInput& input, std::optional<std::string_view> source, CDiagnostics& diagnostics)
        : m_tInput(input), m_svSource(source), m_tDiagnostics(diagnostics)
    {
    }

    void run(const CFields& root, const CFields& patch)
    {
        m_vOpen.push_back({&root, {&patch}, s_cnRoot});
        while (!m_vOpen.empty())
        {
            const tOpen next = std::move(m_vOpen.back());
            m_vOpen.pop_back();
            lookAt(next);
        }
    }

private:
    static constexpr std::size_t s_cnRoot = static_cast<std::size_t>(-1);

    /// A field set of the document, and those of the patch that are merged into it.
    struct tOpen
    {
        const CFields* m_pTarget;
        tPatches m_vPatch;
        std::size_t m_nPlace;
    };
    /// Where a field set is. Paths are composed for warnings only: those of all nodes of a deep document are too long.
    struct tPlace
    {
        const CFields* m_pNode;
        std::size_t m_nOuter;  // s_cnRoot: below the root
    };

    void lookAt(const tOpen& open)
    {
        const tNames removed = namesRemovedBy(open.m_vPatch);
        std::vector<tChanged> all = changedBy(open.m_vPatch, *open.m_pTarget, removed);
        if (all.empty())
            return;
        const CLastMembers lasts(*open.m_pTarget, removed);
        for (const tChanged& changed : all)
            warn(*changed.m_pMember, lasts.of(*changed.m_pMember), open.m_nPlace);
        // The first one is opened first, as it is taken from the end.
        for (auto changed = all.rbegin(); changed != all.rend(); ++changed)
        {
            if (changed->m_vPatch.empty())
                continue;
            m_vOpen.push_back({changed->m_pMember, std::move(changed->m_vPatch), m_vPlace.size()});
            m_vPlace.push_back({changed->m_pMember, open.m_nPlace});
        }
    }

    void warn(const CFields& member, const CFields& last, std::size_t place)
    {
        if (&last == &member)
            return;
        m_tDiagnostics.report(m_svSource ? warningAt(member, last, m_tInput, *m_svSource)
                                         : warningAbout(pathOf(member, place), member, last, m_tInput));
    }

    std::string pathOf(const CFields& member, std::size_t place) const
    {
        std::vector<const CFields*> outward{&member};
        for (; place != s_cnRoot; place = m_vPlace[place].m_nOuter)
            outward.push_back(m_vPlace[place].m_pNode);
        std::string path;
        for (auto node = outward.rbegin(); node != outward.rend(); ++node)
            path += (path.empty() ? "" : ".") + pathName(nameOf(**node));
        return path;
    }

    const tInput& m_tInput;
    const std::optional<std::string_view> m_svSource;
    CDiagnostics& m_tDiagnostics;
    std::vector<tOpen> m_vOpen;
    std::vector<tPlace> m_vPlace;
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
    if (patch.isField() && root.isField())
        CMergeWarnings(input, source, diagnostics).run(root, patch);
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
