#!/bin/sh
# fromhelp.sh NUVOSTAT manual|bash|zsh: the manual page of nuvostat, or what a shell completes, from the program's help.
set -eu
program=$1
here=$(dirname "$0")
LC_ALL=C.UTF-8
export LC_ALL
version=$("$program" --version | sed 's/.* //')
commands=$("$program" --help | sed -n '/^Commands:$/,/^$/s/^  \([a-z][a-z]*\) .*/\1/p')

options() { # of a command
    "$program" "$@" --help | sed -n 's/^  \(-h,\)\{0,1\}\(--[a-z][a-z-]*\).*/\2/p'
}
choices() { # "--format text report json" for each option that takes one of some words
    "$program" "$@" --help | sed -n 's/^  \(--[a-z][a-z-]*\) \([a-z][a-z0-9]*\(|[a-z][a-z0-9]*\)\{1,\}\)\( .*\)\{0,1\}$/\1 \2/p' | tr '|' ' '
}
files() { # the options whose value is a file or a folder
    "$program" "$@" --help | sed -n 's/^  \(--[a-z][a-z-]*\) \(FILE\|DIR\|DB\)\( .*\)\{0,1\}$/\1/p'
}

case $2 in
manual)
    {
        printf '\f\n'
        "$program" --help
        for command in $commands; do
            printf '\f%s\n' "$command"
            "$program" "$command" --help
        done
    } | awk -v version="$version" -f "$here/manual.awk"
    ;;
bash)
    echo '# Made from what "nuvostat --help" says.'
    echo '_nuvostat()'
    echo '{'
    echo '    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}'
    echo '    case ${COMP_WORDS[1]}$before in'
    for command in $commands; do
        choices "$command" | while read -r option words; do
            echo "    $command$option) COMPREPLY=(\$(compgen -W '$words' -- \"\$word\")) && return ;;"
        done
        for option in $(files "$command"); do
            echo "    $command$option) COMPREPLY=(\$(compgen -f -- \"\$word\")) && return ;;"
        done
    done
    echo '    esac'
    echo '    case $COMP_CWORD:${COMP_WORDS[1]} in'
    # shellcheck disable=SC2046,SC2086
    echo "    1:*) COMPREPLY=(\$(compgen -W '$(echo $commands $(options))' -- \"\$word\")) ;;"
    for command in $commands; do
        # shellcheck disable=SC2046
        echo "    *:$command) COMPREPLY=(\$(compgen -W '$(echo $(options "$command"))' -- \"\$word\")) ;;"
    done
    echo '    esac'
    echo '    case $word in -*) ;; *) [ "$COMP_CWORD" -gt 1 ] && COMPREPLY+=($(compgen -f -- "$word")) ;; esac'
    echo '}'
    echo 'complete -o filenames -F _nuvostat nuvostat'
    ;;
zsh)
    echo '#compdef nuvostat'
    echo '# Made from what "nuvostat --help" says.'
    # shellcheck disable=SC2046,SC2086
    echo "(( CURRENT == 2 )) && { compadd -- $(echo $commands $(options)); return }"
    echo 'case $words[2]$words[CURRENT-1] in'
    for command in $commands; do
        choices "$command" | while read -r option words; do
            echo "$command$option) compadd -- $words; return ;;"
        done
        for option in $(files "$command"); do echo "$command$option) _files; return ;;"; done
    done
    echo 'esac'
    echo 'case $words[2] in'
    for command in $commands; do
        # shellcheck disable=SC2046
        echo "$command) [[ \$words[CURRENT] == -* ]] && compadd -- $(echo $(options "$command")) || _files ;;"
    done
    echo 'esac'
    ;;
*)
    echo "fromhelp.sh: manual, bash or zsh, not \"$2\"." >&2
    exit 2
    ;;
esac
