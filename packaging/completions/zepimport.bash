# Completes commands, options and choices of zepimport in bash; files are left to bash itself.

_zepimport()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local every="--verbose --plugin --help"
    local files="--recursive $every"
    local batch="--quiet --jobs $files"
    local words

    if ((COMP_CWORD == 1)); then
        words="laps info channels compare export report check formats --version --help"
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
        return
    fi
    case $before in
    --lap) words="best last all" ;;
    --channels) words="driver engine position tyres" ;;
    --format) words="csv json mat" ;;
    --units)
        words="metric imperial raw"
        [[ ${COMP_WORDS[1]} != export ]] || words="header row none"
        ;;
    --sep) words="tab" ;;
    --jobs | -j) words="2 4 8" ;;
    --sort) words="time date" ;;
    --grid) return ;;
    --plugin | --output | -o) return ;;
    *)
        [[ $word == -* ]] || return
        case ${COMP_WORDS[1]} in
        laps) words="--lap --units --best --sort --json $batch" ;;
        info) words="--lap --units --json $batch" ;;
        channels) words="--lap --channels --units --json $batch" ;;
        compare) words="--lap --grid --units --output --force --json --quiet $files" ;;
        export) words="--lap --channels --output --format --split --force --sep --time --units $batch" ;;
        report) words="--lap --channels --output --force --quiet $files" ;;
        check) words="--json $batch" ;;
        formats) words="--json $every" ;;
        esac
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -o filenames -o default -F _zepimport zepimport
