# Completion of finf for bash. What can be completed is what `finf --help` lists.

_finf() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} program=${COMP_WORDS[0]}
    local command='' word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word != -* ]]; then
            command=$word
            break
        fi
    done
    COMPREPLY=()
    if [[ $previous == --output-directory ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
    elif [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("$program" ${command:+"$command"} --help 2>/dev/null |
            sed -nE 's/^ +(-[[:alnum:]]),(--[a-z-]+).*/\1 \2/p; s/^ +(--[a-z-]+).*/\1/p')" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$("$program" --help 2>/dev/null |
            sed -nE '/^Subcommands:/,/^$/ s/^  ([a-z]+) .*/\1/p')" -- "$current")
    fi
}

# Nothing of these: file names.
complete -o default -F _finf finf
