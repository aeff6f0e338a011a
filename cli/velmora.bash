# Completion of the velmora command for bash. Commands and options are read from its help, files and units from the
# data, so that nothing is listed here which the command itself knows.

# The word as the command would get it.
_velmora_plain() {
    local text=${1//\\/}
    text=${text#[\"\']}
    printf '%s' "${text%[\"\']}"
}

# Offers the lines of its input that begin with the word, or with it in another letter case if there are none. Names
# have spaces in them: they are quoted unless the word is being typed in quotation marks. $1 goes behind each.
_velmora_offer() {
    local typed line exact=()
    typed=$(_velmora_plain "$word")
    while IFS= read -r line; do
        [[ ${line,,} == "${typed,,}"* ]] || continue
        local offered=$line
        [[ $word == [\"\']* ]] || printf -v offered '%q' "$line"
        COMPREPLY+=("$offered${1-}")
        [[ $line != "$typed"* ]] || exact+=("$offered${1-}")
    done
    ((${#exact[@]} == 0)) || COMPREPLY=("${exact[@]}")
}

_velmora_paths() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$1" -- "$word")
}

# The words that the help offers for the option before, as in "Angles in rad (the default), deg or gra".
_velmora_choices() {
    sed -nE "s/^ *$previous [A-Z].* (as|in) (.*)/\2/p" <<<"$help" | sed -E 's/ \(the default\)//; s/, | or /\n/g'
}

# Runs the command for what it lists.
_velmora_ask() {
    "${COMP_WORDS[0]}" "${data[@]}" "$@" 2>/dev/null
}

_velmora_commands() {
    _velmora_ask --help | sed -n '/^commands:/,/^$/s/^  \([a-z]*\) .*/\1/p'
}

# Offers what can stand for the last word of a question.
_velmora_question() {
    local words=() i
    for ((i = first; i <= COMP_CWORD; ++i)); do
        words+=("$(_velmora_plain "${COMP_WORDS[i]}")")
    done
    [[ ${words[0]} != ask ]] || words=("${words[@]:1}")
    _velmora_offer < <(_velmora_ask ask --complete -- "${words[@]}")
}

_velmora() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local first=1 data=()
    COMPREPLY=()
    if ((COMP_CWORD > 2)) && [[ ${COMP_WORDS[1]} == --data ]]; then
        data=(--data "$(_velmora_plain "${COMP_WORDS[2]}")")
        first=3
    fi
    if ((COMP_CWORD == first)); then
        if [[ $word == -* ]]; then
            _velmora_offer < <(_velmora_ask --help | grep -oE '\-\-[a-z]+' | sort -u)
        else
            _velmora_offer < <(_velmora_commands)
            ((${#COMPREPLY[@]})) || _velmora_question
        fi
        return
    fi
    [[ $previous != --data ]] || { _velmora_paths -d; return; }
    if [[ $word != --* && $'\n'$(_velmora_commands)$'\n' != *$'\n'"${COMP_WORDS[first]}"$'\n'* ]]; then
        _velmora_question
        return
    fi

    # Lines such as "  --to UNIT ...": a word in capitals behind the option is its value.
    local command=${COMP_WORDS[first]} help valued arguments=() i
    help=$(_velmora_ask "$command" --help)
    valued=$(grep -oE '^ +--?[a-z-]+ [A-Z]{2}' <<<"$help")
    for ((i = first + 1; i < COMP_CWORD; ++i)); do
        if [[ ${COMP_WORDS[i]} != -* ]]; then
            arguments+=("$(_velmora_plain "${COMP_WORDS[i]}")")
        elif [[ $valued == *" ${COMP_WORDS[i]} "* ]]; then
            ((++i))
        fi
    done

    if [[ $word == --* ]]; then
        _velmora_offer < <(grep -oE '^ +--[a-z-]+' <<<"$help" | tr -d ' ')
        return
    fi
    case $command:$previous:${#arguments[@]} in
        ask:*) _velmora_question ;;
        convert:--to:*) _velmora_offer < <(_velmora_ask show "${arguments[0]}" --names) ;;
        eval:--as:* | eval:--angle:*) _velmora_offer < <(_velmora_choices) ;;
        feed:--out:*) _velmora_paths -d ;;
        feed:--rates:* | update:--rates:* | export:-o:* | check:* | import:* | page:*) _velmora_paths -f ;;
        *:--url:* | *:--base-url:* | *:--parts:*) ;;
        feed:--file:* | convert:*:0 | calc:*:0 | show:*:0 | export:*:0 | update:*)
            if [[ $word == */* ]]; then
                _velmora_paths -f
            else
                _velmora_offer < <(_velmora_ask files --names)
            fi
            ;;
        convert:*:1) _velmora_offer < <(_velmora_ask show "${arguments[0]}" --names) ;;
        calc:*)
            compopt -o nospace 2>/dev/null
            _velmora_offer = < <(_velmora_ask show "${arguments[0]}" --names)
            ;;
        options:*:0) _velmora_offer < <(_velmora_ask options | sed 's/ .*//') ;;
    esac
}

complete -F _velmora velmora
