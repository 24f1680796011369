# Completion of finf for bash, made by: finf --completion bash

_finf() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command='' word options='' pattern=''
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word != -* ]]; then
            command=$word
            break
        fi
    done
    case $command in
    encode) options='-h --help -o --output --output-directory -c --stdout -f --force -k --keep --in-place -u --update --compress -r --recursive -j --jobs -q --quiet -v --verbose --external-vocabulary --vocabulary --max-depth --max-string-length --max-table-entries --max-output --max-amplification --max-indexed-length --strip-whitespace --xml-declaration --typed' ;;
    decode) options='-h --help -o --output --output-directory -c --stdout -f --force -k --keep --in-place -u --update --compress -r --recursive -j --jobs -q --quiet -v --verbose --external-vocabulary --vocabulary --max-depth --max-string-length --max-table-entries --max-output --max-amplification --pretty --canonical-numbers --lenient --first --separator --follow --recover' ;;
    vocabulary) options='-h --help -o --output -f --force --format --uri --min-count --strip-whitespace --external-vocabulary --vocabulary --max-depth --max-string-length --max-table-entries --max-output --max-amplification' ;;
    inspect) options='-h --help --html --json -o --output -f --force --first --tables --full --offset --limit --color --external-vocabulary --vocabulary --max-depth --max-string-length --max-table-entries --max-output --max-amplification' ;;
    validate) options='-h --help -r --recursive --json -q --quiet --external-vocabulary --vocabulary --max-depth --max-string-length --max-table-entries --max-output --max-amplification' ;;
    stats) options='-h --help -r --recursive --json --svg -f --force --color --external-vocabulary --vocabulary --max-depth --max-string-length --max-table-entries --max-output --max-amplification' ;;
    diff) options='-h --help -q --quiet --external-vocabulary --vocabulary --max-depth --max-string-length --max-table-entries --max-output --max-amplification' ;;
    bench) options='-h --help --rounds --json --external-vocabulary --vocabulary --max-depth --max-string-length --max-table-entries --max-output --max-amplification' ;;
    *) options='-h --help -V --version' ;;
    esac
    case $command in
    encode) pattern='*.finf@(|.gz|.zst)' ;;
    decode) pattern='!*.finf@(|.gz|.zst)' ;;
    inspect) pattern='!*.finf@(|.gz|.zst)' ;;
    validate) pattern='!*.finf@(|.gz|.zst)' ;;
    stats) pattern='!*.finf@(|.gz|.zst)' ;;
    esac
    COMPREPLY=()
    if [[ $previous == --output-directory ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
    elif [[ $previous == --color ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'auto always never' -- "$current")
    elif [[ $previous == --compress ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'gzip zstd' -- "$current")
    elif [[ $previous == --format ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'xml finf' -- "$current")
    elif [[ $previous == --vocabulary ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'x3d' -- "$current")
    elif [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W 'encode decode vocabulary inspect validate stats diff bench' -- "$current")
    elif [[ -n $pattern && $previous != -o && $previous != --output && $previous != --svg &&
        $previous != --external-vocabulary ]]; then
        local extended
        extended=$(shopt -p extglob)
        shopt -s extglob
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X "$pattern" -- "$current" |
            while read -r word; do [[ -d $word ]] || printf '%s\n' "$word"; done)
        $extended
    fi
}

# Nothing of these: file names.
complete -o default -F _finf finf
