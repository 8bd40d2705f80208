# Made by: morandel completion bash
_morandel() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    [[ $previous == = ]] && previous=${COMP_WORDS[COMP_CWORD-2]}
    [[ $current == = ]] && current=''
    local verb='' operand='' before='' word words
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ $word == = ]] && continue
        case $before in --lang|--color) before=''; continue ;; esac
        before=$word
        if [[ -n $verb ]]; then
            [[ $word == -* ]] || operand=$word
            continue
        fi
        case $word in
            eval|vars|check|calc|each|functions|errors|help|completion) verb=$word ;;
        esac
    done
    case $previous in
        --get) return ;;
        --add) return ;;
        --where) return ;;
        --select) return ;;
        --output|-o) return ;;
        --delimiter) return ;;
        --encoding) COMPREPLY=($(compgen -W 'utf-8 gbk' -- "$current")); return ;;
        --on-error) COMPREPLY=($(compgen -W 'stop skip empty' -- "$current")); return ;;
        --empty) COMPREPLY=($(compgen -W 'error zero empty' -- "$current")); return ;;
        --text) return ;;
        --number) return ;;
        --file|-f) return ;;
        --decimals) return ;;
        --lang) COMPREPLY=($(compgen -W 'zh en' -- "$current")); return ;;
        --color) COMPREPLY=($(compgen -W 'auto always never' -- "$current")); return ;;
    esac
    case $verb in
        eval) words='--file -f --decimals --plain --json --quiet -q --strict --lang --color --help -h --version -V' ;;
        vars) words='--json --quiet -q --strict --lang --color --help -h --version -V' ;;
        check) words='--json --quiet -q --strict --lang --color --help -h --version -V' ;;
        calc) words='--get --encoding --decimals --plain --json --quiet -q --strict --lang --color --help -h --version -V' ;;
        each) words='--add --where --select --output -o --delimiter --no-header --encoding --on-error --empty --text --number --decimals --plain --json --quiet -q --strict --lang --color --help -h --version -V' ;;
        functions) words='--json --quiet -q --strict --lang --color --help -h --version -V' ;;
        errors) words='--json --quiet -q --strict --lang --color --help -h --version -V' ;;
        help) words='--man --json --quiet -q --strict --lang --color --help -h --version -V' ;;
        completion) words='--json --quiet -q --strict --lang --color --help -h --version -V' ;;
        *) words='--file -f --decimals --plain --json --quiet -q --strict --lang --color --help -h --version -V' ;;
    esac
    if [[ $current != -* ]]; then
        [[ -n $operand ]] && return
        case $verb in
            '') words='eval vars check calc each functions errors help completion' ;;
            functions) words='sin cos tan ctan sqrt arcsin arccos arctan arcctan ln log int deci preci mod strcase strlen strsub strtrim strcat strtrims strmismatch strfind strreplace strdelete strinsert r2s s2r strsubn left right strfindn not if' ;;
            help) words='eval vars check calc each functions errors help completion' ;;
            completion) words='bash zsh fish' ;;
            *) return ;;
        esac
    fi
    COMPREPLY=($(compgen -W "$words" -- "$current"))
}
complete -o default -F _morandel morandel
