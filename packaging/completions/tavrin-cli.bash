# SPDX-License-Identifier: GPL-3.0-or-later
# bash completion for tavrin-cli

# Splits a text as the shell does: words[cword] is the last one, at hand, without its quotes and
# backslashes. An option and its value joined by "=" are two words here.
_tavrin_cli_split() {
    local text=$1 quote='' char word='' started='' i
    words=()
    for ((i = 0; i < ${#text}; ++i)); do
        char=${text:i:1}
        if [[ $quote != "'" && $char == \\ && (-z $quote || ${text:i+1:1} == [\$\`\"\\]) ]]; then
            i=$((i + 1))
            word+=${text:i:1}
        elif [[ -n $quote ]]; then
            if [[ $char == "$quote" ]]; then quote=''; else word+=$char; fi
        elif [[ $char == [\'\"] ]]; then
            quote=$char
            started=1
        elif [[ $char == [[:space:]] ]]; then
            [[ -n $word$started ]] && words+=("$word")
            word=''
            started=''
        elif [[ $char == = && $word =~ ^--[a-z-]+$ ]]; then
            words+=("$word")
            word=''
            started=1
        else
            word+=$char
        fi
    done
    words+=("$word")
    cword=$((${#words[@]} - 1))
}

_tavrin_cli_words_of() {
    local candidate
    for candidate in "$@"; do
        [[ $candidate == "$cur"* ]] && COMPREPLY+=("$candidate")
    done
}

# One candidate a line of standard input, each of which may hold blanks: "filenames" makes the shell
# quote them the way the word at hand was begun.
_tavrin_cli_lines() {
    local line
    compopt -o filenames
    while IFS= read -r line; do
        [[ $line == "$cur"* ]] && COMPREPLY+=("$line")
    done
}

# Files whose names match the pattern, and all folders.
_tavrin_cli_files() {
    local pattern=${1-*} path expanded=$cur
    compopt -o filenames
    [[ $cur == '~/'* ]] && expanded=$HOME${cur:1}
    while IFS= read -r path; do
        # shellcheck disable=SC2053 # a pattern is meant
        [[ -d $path || ${path##*/} == $pattern ]] || continue
        [[ $cur == '~/'* ]] && path=\~${path#"$HOME"}
        COMPREPLY+=("$path")
    done < <(compgen -f -- "$expanded")
}

_tavrin_cli_presets() {
    # One name a line; those of the program carry a mark.
    tavrin-cli presets list 2>/dev/null | sed 's/  (shipped)$//'
}

_tavrin_cli_logs() {
    # Paths of saved logs stand behind date and number of files; rollback takes their names, too.
    tavrin-cli logs 2>/dev/null | sed 's|^.*/||; s|\.renameLog$||'
}

# Of a word with "=" or ":" in it the shell replaces only what follows these.
_tavrin_cli_trim() {
    local last=${COMP_WORDS[COMP_CWORD]-} head i words cword
    [[ $last == [=:] ]] && last=''
    _tavrin_cli_split "$last"
    head=${cur%"${words[cword]}"}
    [[ $head == *[=:] ]] || return
    for i in "${!COMPREPLY[@]}"; do
        COMPREPLY[i]=${COMPREPLY[i]#"$head"}
    done
}

_tavrin_cli() {
    local words cword cur prev
    _tavrin_cli_split "${COMP_LINE:0:COMP_POINT}"
    cur=${words[cword]}
    prev=${words[cword - 1]-}
    COMPREPLY=()
    _tavrin_cli_complete
    _tavrin_cli_trim
}

_tavrin_cli_complete() {
    local verbs=(preview rename rollback logs recover tags table presets rules archive)
    local recipe=(--rule --preset --recipe --extension --compliance --leading-period
        --duplicates-critical --keep-unchanged)
    local files=(--files-from --null --sort)
    local output=(--jsonl --quiet --verbose --color --progress)
    local common=(--json --help)

    if ((cword == 1)); then
        _tavrin_cli_words_of "${verbs[@]}" help --help --version
        return
    fi

    case $prev in
    --rule)
        _tavrin_cli_words_of Text Counter Original Date ImageTag AudioTag VideoTag CSVTag RegExTag \
            Separator
        return
        ;;
    --preset)
        _tavrin_cli_lines < <(_tavrin_cli_presets)
        _tavrin_cli_files '*.renamesetting'
        return
        ;;
    --recipe | --files-from)
        _tavrin_cli_files
        return
        ;;
    --extension)
        _tavrin_cli_words_of handlingMethod= map= replacer= caseHandling= mapRemainderChoice= \
            ignoreCase= regEx= regAccess= rePattern=
        compopt -o nospace
        return
        ;;
    --sort)
        _tavrin_cli_words_of fileName targetName creationDate modificationDate size error
        return
        ;;
    --color | --progress)
        _tavrin_cli_words_of auto always never
        return
        ;;
    esac

    local options
    case ${words[1]} in
    help)
        ((cword == 2)) && _tavrin_cli_words_of "${verbs[@]}"
        return
        ;;
    preview) options=("${recipe[@]}" "${files[@]}" "${output[@]}" "${common[@]}") ;;
    rename)
        options=("${recipe[@]}" "${files[@]}" --yes --no-undo "${output[@]}" "${common[@]}")
        ;;
    rollback) options=(--last --check --reverse --yes "${output[@]}" "${common[@]}") ;;
    tags) options=("${output[@]}" "${common[@]}") ;;
    presets) options=("${recipe[@]}" "${common[@]}") ;;
    *) options=("${common[@]}") ;;
    esac
    if [[ $cur == -* ]]; then
        _tavrin_cli_words_of "${options[@]}"
        return
    fi

    case ${words[1]} in
    logs | recover | rules) ;;
    rollback)
        _tavrin_cli_lines < <(_tavrin_cli_logs)
        _tavrin_cli_files '*.renameLog'
        ;;
    presets)
        if ((cword == 2)); then
            _tavrin_cli_words_of list show save delete export import
        elif ((cword == 3)) && [[ ${words[2]} == @(show|save|delete|export) ]]; then
            _tavrin_cli_lines < <(_tavrin_cli_presets)
        elif [[ $cword,${words[2]} == @(3,import|4,export) ]]; then
            _tavrin_cli_files
        fi
        ;;
    *) _tavrin_cli_files ;;
    esac
}

complete -F _tavrin_cli tavrin-cli
