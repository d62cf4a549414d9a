// tools/reference/completion_bash.cpp - tables of verbs and options, and a function that follows the call by them.
//
// The file works without bash-completion. Names of layouts are compared, never expanded: compgen -W would run what
// looks like a command in them.
#include "tools/reference/completion.h"

namespace murv::tool
{

namespace
{
constexpr const char* s_cpFollow = R"bash(
# _murv_follow - reads the words before the cursor: sets call, expected (what comes next), place (how many arguments
# came before).
_murv_follow()
{
    local index word verbs
    call= expected= place=0
    for ((index = 1; index < COMP_CWORD; index++)); do
        word=${COMP_WORDS[index]}
        if [[ $word == = ]]; then  # bash makes three words of --option=value
            continue
        elif [[ -n $expected ]]; then
            expected=
        elif [[ $word == -* ]]; then
            _murv_value "$call" "$word"
        else
            verbs=" $(_murv_verbs "$call") "
            if [[ $place == 0 && $verbs == *" $word "* ]]; then
                call=${call:+$call }$word
            else
                place=$((place + 1))
            fi
        fi
    done
}

# _murv_offer CURRENT WORD... - adds the words that begin with CURRENT.
_murv_offer()
{
    local current=$1 word
    shift
    for word in "$@"; do
        [[ $word == "$current"* ]] && COMPREPLY+=("$word")
    done
}

# _murv_offer_files CURRENT [-d] - adds the files, or with -d the directories, that begin with CURRENT.
_murv_offer_files()
{
    local name
    compopt -o filenames 2>/dev/null
    while IFS= read -r name; do
        COMPREPLY+=("$name")
    done < <(compgen "${2:--f}" -- "$1")
}

_murv()
{
    local call expected place name current=${COMP_WORDS[COMP_CWORD]} names=()
    COMPREPLY=()
    _murv_follow
    [[ $current == = ]] && current=
    if [[ -z $expected && $current == -* ]]; then
        read -ra names <<<"$(_murv_options "$call")"
        _murv_offer "$current" "${names[@]}"
        return
    fi
    if [[ -z $expected && $place == 0 ]]; then
        read -ra names <<<"$(_murv_verbs "$call")"
        _murv_offer "$current" "${names[@]}"
    fi
    [[ -n $expected ]] || _murv_argument "$call" "$place"
    case $expected in
    layout)
        while IFS= read -r name; do
            names+=("${name%%  *}")  # its purpose follows
        done < <("${COMP_WORDS[0]/#\~/$HOME}" layouts 2>/dev/null)
        _murv_offer "$current" "${names[@]}"
        _murv_offer_files "$current"
        ;;
    file) _murv_offer_files "$current" ;;
    directory) _murv_offer_files "$current" -d ;;
    words\ *)
        read -ra names <<<"${expected#words }"
        _murv_offer "$current" "${names[@]}"
        ;;
    esac
}

complete -F _murv murv
)bash";

/// What the function does about a value.
std::string expectation(const tReferenceVerb& program, const tReferenceOption& option)
{
    const std::vector<std::string> words = valueWords(program, option);
    if (!words.empty())
        return "words " + joined(words, " ");
    switch (option.m_eKind)
    {
    case VK_layout: return "layout";
    case VK_file: return "file";
    case VK_directory: return "directory";
    default: return "free";
    }
}

/// A function that prints a text for each verb; `body` gives it.
template <typename tBody>
std::string tableFunction(const tReferenceVerb& program, const std::string& head, const tBody& body)
{
    std::string text = head + "\n{\n    case $1 in\n";
    for (const tReferenceVerb* const verb : flatVerbs(program))
    {
        const std::string own = body(*verb);
        if (!own.empty())
            text += "    " + shellQuoted(verb->m_strCall) + ")" + own + " ;;\n";
    }
    return text + "    esac\n}\n\n";
}

std::string valueCase(const tReferenceVerb& program, const tReferenceVerb& verb)
{
    std::string rows;
    for (const tReferenceOption& option : verb.m_vOption)
    {
        if (option.m_eKind != VK_none)
            rows += "        " + joined(option.m_vName, " | ") +
                    ") expected=" + shellQuoted(expectation(program, option)) + " ;;\n";
    }
    return rows.empty() ? rows : "\n        case $2 in\n" + rows + "        esac";
}

std::string argumentCase(const tReferenceVerb& program, const tReferenceVerb& verb)
{
    std::string rows;
    for (std::size_t i = 0; i < verb.m_vArgument.size(); ++i)
    {
        const tReferenceOption& one = verb.m_vArgument[i];
        rows += "        " + (one.m_bMany ? std::string("*") : std::to_string(i)) +
                ") expected=" + shellQuoted(expectation(program, one)) + " ;;\n";
    }
    return rows.empty() ? rows : "\n        case $2 in\n" + rows + "        esac";
}
}  // namespace

std::string bashCompletion(const tReferenceVerb& program)
{
    const auto printed = [](const std::vector<std::string>& words) {
        return words.empty() ? std::string() : " echo " + shellQuoted(joined(words, " "));
    };
    std::string text = "# Completes calls of murv in bash. Made by the build; see tools/reference.\n\n";
    text += tableFunction(program, "# _murv_verbs CALL - prints the verbs that may follow.\n_murv_verbs()",
                          [&](const tReferenceVerb& verb) { return printed(verbWords(verb)); });
    text += tableFunction(program, "# _murv_options CALL - prints the options of a verb.\n_murv_options()",
                          [&](const tReferenceVerb& verb) {
                              std::vector<std::string> names;
                              for (const tReferenceOption& option : verb.m_vOption)
                                  names.insert(names.end(), option.m_vName.begin(), option.m_vName.end());
                              return printed(names);
                          });
    text +=
        tableFunction(program, "# _murv_value CALL OPTION - sets expected when the option has a value.\n_murv_value()",
                      [&](const tReferenceVerb& verb) { return valueCase(program, verb); });
    text +=
        tableFunction(program, "# _murv_argument CALL PLACE - sets expected to what the argument is.\n_murv_argument()",
                      [&](const tReferenceVerb& verb) { return argumentCase(program, verb); });
    return text + (s_cpFollow + 1);
}

}  // namespace murv::tool
