# SPDX-License-Identifier: MIT
# What a program says of itself, as a page of the manual: help texts, each behind a line with its command (empty for the
# program itself) after a form feed. Variables: name, version.
function escaped(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    if (text ~ /^[.']/)
        text = "\\&" text
    return text
}
function verbatim(on) {
    if (on != open)
        print on ? ".PP\n.nf" : ".fi"
    open = on
}
function flushOption() {
    if (option != "") {
        verbatim(0)
        print ".TP\n.B " escaped(option) "\n" escaped(meaning)
    }
    option = meaning = ""
}
BEGIN {
    print ".TH " toupper(name) " 1 \"\" \"" name " " version "\" \"User Commands\""
}
/^\f/ {
    flushOption()
    verbatim(0)
    command = substr($0, 2)
    first = 1
    if (command != "")
        print ".SH \"" toupper(name " " command) "\""
    next
}
first { # the sentence that says what it is
    first = 0
    if (command == "") {
        sub(/\.$/, "")
        print ".SH NAME\n" escaped(name) " \\- " escaped(tolower(substr($0, 1, 1)) substr($0, 2))
        print ".SH SYNOPSIS"
    } else
        print escaped($0) "."
    next
}
/^  -/ { # an option: its name, and from the 29th column on what it does
    flushOption()
    option = substr($0, 3)
    if (length($0) > 28 && substr($0, 28, 1) == " ") {
        option = substr($0, 3, 25)
        meaning = substr($0, 29)
    }
    sub(/ +$/, "", option)
    next
}
option != "" && /^ {28}/ {
    meaning = meaning (meaning == "" ? "" : " ") substr($0, 29)
    next
}
{
    flushOption()
    if ($0 == "") {
        verbatim(0)
        next
    }
    if ($0 ~ /^Usage:$/ && command == "") # the synopsis
        next
    if ($0 ~ /^[A-Za-z]+:$/) {
        verbatim(0)
        print ".SS " substr($0, 1, length($0) - 1)
        next
    }
    verbatim(1)
    print escaped($0)
}
END {
    flushOption()
    verbatim(0)
}
