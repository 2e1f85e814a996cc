# SPDX-License-Identifier: GPL-3.0-or-later
# bash completion for tavrin-cli

_tavrin_cli_presets() {
    local IFS=$'\n'
    # One name a line; those of the program carry a mark.
    tavrin-cli presets list 2>/dev/null | sed 's/  (shipped)$//'
}

_tavrin_cli_from_lines() {
    local line
    while IFS= read -r line; do
        [[ $line == "$cur"* ]] && COMPREPLY+=("$(printf '%q' "$line")")
    done
}

_tavrin_cli() {
    local cur prev words cword
    if declare -F _init_completion >/dev/null; then
        _init_completion -n = || return
    else
        cur=${COMP_WORDS[COMP_CWORD]}
        prev=${COMP_WORDS[COMP_CWORD - 1]}
        words=("${COMP_WORDS[@]}")
        cword=$COMP_CWORD
    fi
    COMPREPLY=()

    local verbs="preview rename rollback logs recover tags table presets rules archive"
    local recipe="--rule --preset --recipe --extension --compliance --leading-period
        --duplicates-critical --keep-unchanged"
    local files="--files-from --null --sort"
    local output="--jsonl --quiet --verbose --color --progress"
    local common="--json --help"

    if ((cword == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "$verbs --help --version" -- "$cur")
        return
    fi

    case $prev in
    --rule)
        local kinds="Text Counter Original Date ImageTag AudioTag VideoTag CSVTag RegExTag Separator"
        mapfile -t COMPREPLY < <(compgen -W "$kinds" -- "$cur")
        return
        ;;
    --preset)
        _tavrin_cli_from_lines < <(_tavrin_cli_presets)
        _tavrin_cli_from_lines < <(compgen -f -X '!*.renamesetting' -- "$cur")
        return
        ;;
    --recipe)
        _tavrin_cli_from_lines < <(compgen -f -- "$cur")
        return
        ;;
    --files-from)
        _tavrin_cli_from_lines < <(compgen -f -- "$cur")
        return
        ;;
    --extension)
        mapfile -t COMPREPLY < <(compgen -W "handlingMethod= map= replacer= caseHandling=
            mapRemainderChoice= ignoreCase= regEx= regAccess= rePattern=" -- "$cur")
        compopt -o nospace
        return
        ;;
    --sort)
        mapfile -t COMPREPLY < <(compgen -W "fileName targetName creationDate modificationDate size
            error" -- "$cur")
        return
        ;;
    --color | --progress)
        mapfile -t COMPREPLY < <(compgen -W "auto always never" -- "$cur")
        return
        ;;
    esac

    local options
    case ${words[1]} in
    preview) options="$recipe $files $output $common" ;;
    rename) options="$recipe $files --yes --no-undo $output $common" ;;
    rollback) options="--last --check --reverse --yes $output $common" ;;
    tags) options="$output $common" ;;
    presets)
        if ((cword == 2)); then
            mapfile -t COMPREPLY < <(compgen -W "list show save delete export import" -- "$cur")
            return
        fi
        if ((cword == 3)) && [[ ${words[2]} == @(show|delete|export) ]]; then
            _tavrin_cli_from_lines < <(_tavrin_cli_presets)
            return
        fi
        options="$recipe $common"
        ;;
    *) options="$common" ;;
    esac
    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
    else
        compopt -o filenames
        _tavrin_cli_from_lines < <(compgen -f -- "$cur")
    fi
}

complete -F _tavrin_cli tavrin-cli
