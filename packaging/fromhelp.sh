#!/bin/sh
# SPDX-License-Identifier: MIT
# fromhelp.sh PROGRAM manual|bash|zsh: a program's page of the manual, or what a shell completes, from its help.
set -eu
program=$1
name=$(basename "$1")
here=$(dirname "$0")
LC_ALL=C.UTF-8
export LC_ALL
# Whether memory is given back is not what is asked here, under a sanitizer.
export ASAN_OPTIONS=detect_leaks=0
version=$("$program" --version | sed 's/.* //')

# Help texts as nuvostat has them: a sentence, the usage, options with their meaning in the 29th column. What Qt prints for a
# program is brought into this form.
help() {
    "$program" "$@" --help | awk -v name="$name" '
        NR == 1 && /^Usage: / { qt = 1; usage = name substr($0, index($0, " [")); next }
        !qt { print; next }
        !described && $0 != "" { text = text (text == "" ? "" : " ") $0; next }
        !described { described = 1; print text "\n\nUsage:\n  " usage "\n"; next }
        /^  [^ ]/ {
            option = substr($0, 3)
            meaning = ""
            if (match(option, /  +/)) {
                meaning = substr(option, RSTART + RLENGTH)
                option = substr(option, 1, RSTART - 1)
            }
            gsub(/, -/, ",-", option)
            gsub(/[<>]/, "", option)
            if (length(option) > 25) {
                print "  " option
                option = ""
            }
            printf "  %-25s %s\n", option, meaning
            next
        }
        /^   / { sub(/^ +/, ""); printf "%28s%s\n", "", $0; next }
        { print }'
}
commands=$(help | sed -n '/^Commands:$/,/^$/s/^  \([a-z][a-z]*\) .*/\1/p')

options() { # of a command
    help "$@" | sed -n 's/^  \(-[a-z],\)\{0,1\}\(--[a-z][a-z-]*\).*/\2/p'
}
choices() { # "--format text report json" for each option that takes one of some words
    help "$@" | sed -n 's/^  \(--[a-z][a-z-]*\) \([a-z][a-z0-9]*\(|[a-z][a-z0-9]*\)\{1,\}\)\( .*\)\{0,1\}$/\1 \2/p' | tr '|' ' '
}
files() { # the options whose value is a file or a folder
    help "$@" | sed -n 's/^  \(--[a-z][a-z-]*\) \(FILE\|DIR\|DB\)\( .*\)\{0,1\}$/\1/p'
}

case $2 in
manual)
    {
        printf '\f\n'
        help
        for command in $commands; do
            printf '\f%s\n' "$command"
            help "$command"
        done
    } | awk -v name="$name" -v version="$version" -f "$here/manual.awk"
    ;;
bash)
    echo "# Made from what \"$name --help\" says."
    if [ -z "$commands" ]; then
        # shellcheck disable=SC2046
        echo "complete -o filenames -f -W '$(echo $(options))' $name"
        exit
    fi
    echo "_$name()"
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
    echo "complete -o filenames -F _$name $name"
    ;;
zsh)
    echo "#compdef $name"
    echo "# Made from what \"$name --help\" says."
    if [ -z "$commands" ]; then
        # shellcheck disable=SC2046
        echo "_arguments $(echo $(options)) '*:file:_files'"
        exit
    fi
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
