# Completions of tobrimax-cli for bash. bash-completion loads this file when the program's arguments are completed.

# No word that is offered has a space, so that they may be split where spaces are.
# shellcheck shell=bash disable=SC2207

# The names of the layouts.
_tobrimax_cli_layouts() {
    tobrimax-cli layouts 2>/dev/null | cut -d ' ' -f 1
}

_tobrimax_cli() {
    local cur prev words cword split
    _init_completion -s || return

    # The command at the start: one word or two.
    local command=${words[1]-} first=2
    if ((cword >= 2)) && [[ $command == icns || $command == custom-icon ]]; then
        command+=" ${words[2]}"
        first=3
    fi
    if ((cword < first)); then
        case $command in
        "icns "*) COMPREPLY=($(compgen -W "list extract make --help" -- "$cur")) ;;
        "custom-icon "*) COMPREPLY=($(compgen -W "set remove --help" -- "$cur")) ;;
        *) COMPREPLY=($(compgen -W "generate layouts icns custom-icon export --version --help" -- "$cur")) ;;
        esac
        return
    fi

    local fit="--fit --padding" style="--round-corner --border --border-color"
    local options operands=1
    case $command in
    generate)
        options="--out --platform $style $fit --small --background --layout --name --dark --tinted --foreground --monochrome"
        options+=" --compress --catalogue --jobs --svg-limit --dry-run --check --watch --proof --open --quiet --verbose --json --timings"
        operands=100000
        ;;
    layouts) options="--json" ;;
    "icns list") options="--proof --json" ;;
    "icns extract") options="--out" ;;
    "icns make") options="--out $style $fit --small --background --svg-limit" ;;
    "custom-icon set") options="--apple-double --compatibility --create" operands=2 ;;
    "custom-icon remove") options="--apple-double" ;;
    export) options="--format --out --size $fit --svg-limit" ;;
    *) return ;;
    esac

    # Which operands are there already, and whether the cursor is at an option's value.
    local at given=0 ended=0 option=""
    for ((at = first; at < cword; ++at)); do
        if ((ended)) || [[ ${words[at]} != -* ]]; then
            ((++given))
            continue
        fi
        case ${words[at]} in
        --) ended=1 ;;
        -o | -p | -l | --out | --platform | --round-corner | --border | --border-color | --compress | --catalogue | --jobs | --format | \
            --size | --fit | --padding | --small | --svg-limit | --background | --layout | --name | --dark | --tinted | \
            --foreground | --monochrome | --proof)
            ((++at == cword)) && option=$prev
            ;;
        esac
    done
    ((ended)) || ! $split || option=$prev

    case $option in
    -o | --out)
        if [[ $command == generate || $command == "icns extract" ]]; then _filedir -d; else _filedir; fi
        return
        ;;
    --catalogue | --proof | --small | --dark | --tinted | --foreground | --monochrome)
        _filedir
        return
        ;;
    -p | --platform)
        COMPREPLY=($(compgen -W "iphone ipad universal watch mac android all" -- "$cur"))
        return
        ;;
    -l | --layout)
        _filedir
        COMPREPLY+=($(compgen -W "$(_tobrimax_cli_layouts)" -- "$cur"))
        return
        ;;
    --compress)
        COMPREPLY=($(compgen -W "fast best" -- "$cur"))
        return
        ;;
    --fit)
        COMPREPLY=($(compgen -W "stretch contain cover" -- "$cur"))
        return
        ;;
    --format)
        COMPREPLY=($(compgen -W "jpeg tiff bmp gif png jpeg2000" -- "$cur"))
        return
        ;;
    ?*) return ;;
    esac

    if ((!ended)) && [[ $cur == -* || $given -ge $operands ]]; then
        COMPREPLY=($(compgen -W "$options --help" -- "$cur"))
    elif ((given < operands)); then
        _filedir
        [[ $command != layouts ]] || COMPREPLY+=($(compgen -W "$(_tobrimax_cli_layouts)" -- "$cur"))
    fi
} && complete -F _tobrimax_cli tobrimax-cli
