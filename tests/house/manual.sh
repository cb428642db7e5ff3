#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The installed manual page and completions tell every command and option that the program tells. Usage: manual.sh STAGE BINDIR
# DATADIR MANDIR
set -u # no pipefail: grep -q stops reading early
stage=$1
nuvostat=$stage/$2/nuvostat
manual=$stage/$4/man1/nuvostat.1
bash_file=$stage/$3/bash-completion/completions/nuvostat
zsh_file=$stage/$3/zsh/vendor-completions/_nuvostat
failures=0
fail() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}

# The page as a reader sees it, options of one command each.
section() { sed -n "/^\.SH \"NUVOSTAT ${1^^}\"$/,/^\.SH/p" "$manual" | sed 's/\\-/-/g'; }
# What bash offers behind these words, the last of which is being written.
offered() {
    bash -c 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _nuvostat; printf "%s\n" "${COMPREPLY[@]}"' \
        bash "$bash_file" nuvostat "$@"
}

commands=$("$nuvostat" --help | sed -n '/^Commands:$/,/^$/s/^  \([a-z]*\) .*/\1/p')
[ "$(wc -w <<<"$commands")" -ge 5 ] || fail "the program tells of few commands: $commands"
for command in $commands; do
    offered "$command" | grep -qx "$command" || fail "bash does not offer $command"
    grep -q "^$command) " "$zsh_file" || fail "zsh does not know $command"
    options=$("$nuvostat" "$command" --help | grep -oE '^ +(-h,)?--[a-z-]+' | grep -oE '\-\-[a-z-]+')
    [ -n "$options" ] || fail "the help of $command has no options"
    for option in $options; do
        section "$command" | grep -qE "^\.B (-h,)?$option( |\$)" || fail "the manual of $command lacks $option"
        offered "$command" "$option" | grep -qx -- "$option" || fail "bash does not offer $option of $command"
        grep "^$command) " "$zsh_file" | grep -q -- " $option " || fail "zsh does not offer $option of $command"
    done
    # Nothing that the program has not.
    for option in $(section "$command" | grep -oE '^\.B (-h,)?--[a-z-]+' | grep -oE '\-\-[a-z-]+'); do
        grep -qx -- "$option" <<<"$options" || fail "the manual of $command invents $option"
    done
done
offered fit --format '' | tr '\n' ' ' | grep -qx 'text report json ' || fail 'bash does not offer the formats'
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" && touch data.csv && offered import data | grep -qx data.csv || fail 'bash does not offer files'

# The workbench has options and no commands.
workbench=$stage/$4/man1/nuvo-workbench.1
options=$("$stage/$2/nuvo-workbench" --help | grep -oE '^ +(-[a-z], ?)?--[a-z-]+' | grep -oE '\-\-[a-z-]+')
grep -qx -- --version <<<"$options" || fail "the workbench has no option --version, but $options"
for option in $options; do
    sed 's/\\-/-/g' "$workbench" | grep -qE "^\.B (-[a-z],)?$option( |\$)" || fail "the manual of the workbench lacks $option"
    for file in "$stage/$3/bash-completion/completions/nuvo-workbench" "$stage/$3/zsh/vendor-completions/_nuvo-workbench"; do
        grep -qE -- "[' ]${option}[' ]" "$file" || fail "$file does not know $option"
    done
done
sed -n '/^\.SH NAME/,/^\.SH SYNOPSIS/p' "$workbench" | grep -qE '^nuvo\\-workbench \\- .*linear regression' ||
    fail 'the manual of the workbench does not say what it is'
[ "$(sed -n '/^\.SH SYNOPSIS/,/^\.S[SH] /p' "$workbench" | grep -c '^nuvo..workbench \[\|^  nuvo..workbench \[')" -eq 1 ] ||
    fail 'the manual of the workbench does not say how it is called'

for page in "$manual" "$workbench"; do
    command -v man >/dev/null || break
    warnings=$(man -l --warnings -E UTF-8 "$page" 2>&1 >/dev/null | grep -v 'cannot' || true)
    [ -z "$warnings" ] || fail "man says of $page: $warnings"
done
[ "$failures" -eq 0 ]
