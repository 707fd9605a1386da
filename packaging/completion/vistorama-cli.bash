# Completion of vistorama-cli for bash.

# Names of layouts ("Templates") or styles ("Styles"): those of their definition files, without ".xml".
_vistorama_cli_definitions() {
    local data=${VISTORAMA_DATA:-}
    if [[ -z $data ]]; then
        local program
        program=$(type -P "${COMP_WORDS[0]}") || return
        data=$(dirname "$(readlink -f "$program")")/../share/vistorama
    fi
    local file
    for file in "$data/$1"/*.xml; do
        if [[ -e $file ]]; then
            file=${file##*/}
            printf '%s\n' "${file%.xml}"
        fi
    done
}

# Names of stored destinations. A name may hold blanks.
_vistorama_cli_destinations() {
    "${COMP_WORDS[0]}" destination list 2>/dev/null | cut -f 2
}

# The lines of standard input that begin with the word, quoted as the command line needs it.
_vistorama_cli_lines() {
    local line
    while IFS= read -r line; do
        if [[ $line == "$1"* ]]; then
            COMPREPLY+=("$(printf '%q' "$line")")
        fi
    done
}

# Folders, and the files that match one of the patterns.
_vistorama_cli_files() {
    local word=$1
    shift
    local IFS=$'\n'
    compopt -o filenames 2>/dev/null
    COMPREPLY+=($(compgen -d -- "$word"))
    local pattern
    for pattern in "$@"; do
        COMPREPLY+=($(compgen -f -X "!$pattern" -- "$word"))
    done
}

_vistorama_cli() {
    COMPREPLY=()
    local word=${COMP_WORDS[COMP_CWORD]}
    local previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]}
    local pictures=('*.[gG][iI][fF]' '*.[pP][nN][gG]' '*.[bB][mM][pP]' '*.[jJ][pP][gG]' '*.[pP][cC][xX]')

    if ((COMP_CWORD == 1)); then
        COMPREPLY=($(compgen -W "new deploy info check relink cache destination ftp-test ftp-ls ftp-mkdir ftp-rename \
            --help --version" -- "$word"))
        return
    fi
    case $previous in
        --layout) _vistorama_cli_lines "$word" < <(_vistorama_cli_definitions Templates); return ;;
        --style) _vistorama_cli_lines "$word" < <(_vistorama_cli_definitions Styles); return ;;
        --tree) _vistorama_cli_files "$word"; return ;;
        --watermark) _vistorama_cli_files "$word" "${pictures[@]}"; return ;;
        --position)
            COMPREPLY=($(compgen -W "top-left top top-right left centre right bottom-left bottom bottom-right" \
                -- "$word"))
            return
            ;;
        --size-class) COMPREPLY=($(compgen -W "small middle large all" -- "$word")); return ;;
        --to) _vistorama_cli_lines "$word" < <(_vistorama_cli_destinations); return ;;
        --identity) _vistorama_cli_files "$word" '*'; return ;;
        --signature | --margin | --directory | --clusters | --fingerprint) return ;;
    esac

    local options=
    local action=
    case $command in
        new) options="--layout --style --tree --watermark --signature --position --margin --size-class" ;;
        deploy) options="--to --directory --leave-out-missing --overwrite --dry-run --quiet --identity --fingerprint" ;;
        info) options="--json --clusters" ;;
        cache) options="--size --clear" ;;
        destination)
            if ((COMP_CWORD == 2)); then
                COMPREPLY=($(compgen -W "add list remove" -- "$word"))
                return
            fi
            action=${COMP_WORDS[2]}
            if [[ $action == add ]]; then
                options="--all-users --identity"
            fi
            ;;
        ftp-test) options="--transcript --identity --fingerprint" ;;
        ftp-ls) options="--raw --identity --fingerprint" ;;
        ftp-mkdir | ftp-rename) options="--identity --fingerprint" ;;
    esac
    if [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$word"))
        return
    fi
    case $command:$action in
        new:)
            if ((COMP_CWORD == 2)); then
                _vistorama_cli_files "$word" '*.gallery'
            else
                _vistorama_cli_files "$word" "${pictures[@]}"
            fi
            ;;
        deploy: | info: | relink:)
            if ((COMP_CWORD == 2)); then
                _vistorama_cli_files "$word" '*.gallery'
            elif [[ $command != info ]]; then
                _vistorama_cli_files "$word"
            fi
            ;;
        check:) _vistorama_cli_files "$word" '*.xml' ;;
        destination:remove) _vistorama_cli_lines "$word" < <(_vistorama_cli_destinations) ;;
    esac
}

complete -F _vistorama_cli vistorama-cli
