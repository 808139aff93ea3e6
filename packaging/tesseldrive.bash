# Completion of tesseldrive for bash.
_tesseldrive()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    case $before in
        --home | --drive)
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            return
            ;;
        --log)
            mapfile -t COMPREPLY < <(compgen -W "stderr off" -f -- "$word")
            return
            ;;
        --log-level)
            mapfile -t COMPREPLY < <(compgen -W "debug info warning error" -- "$word")
            return
            ;;
        --shortcut)
            mapfile -t COMPREPLY < <(compgen -W "search recent:" -- "$word")
            return
            ;;
    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--home --drive --console --json --new-instance --continue --shortcut --run-test
            --option --gallery --log --log-level --log-private --help --version" -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -o filenames -F _tesseldrive tesseldrive
