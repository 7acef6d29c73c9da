# SPDX-License-Identifier: MIT
# type_in_shell.zsh SHELL SCRIPT LINE...: types each line into an interactive shell on a terminal of its own and prints
# the words that the program routermsg gets in the end.
#
# SHELL is the command that starts the shell, SCRIPT loads the completion. In a line, <text> stands for the tab key;
# text is what the shell must add then. Shells take a tab for text when it arrives together with other keys, so every
# part of the line is typed when the one before is visible.
zmodload zsh/zpty || exit

mkdir -p bin
cat >bin/routermsg <<'END'
#!/bin/sh
printf ' <%s>' "$@" >got
mv got ran
END
chmod +x bin/routermsg
path=($PWD/bin $path)
export TERM=dumb HOME=$PWD ZDOTDIR=$PWD XDG_CONFIG_HOME=$PWD XDG_DATA_HOME=$PWD

# until_true CONDITION...: waits until the command succeeds.
until_true() {
    repeat 600; do
        "$@" && return
        sleep 0.05
    done
    print -r -- "This did not happen: $*. The shell wrote: ${(V)written}"
    exit 1
}

written=
is_written() {
    local more
    while zpty -r -t shell more; do
        written+=$more
    done
    [[ $written == *"$1"* ]]
}

# type_keys KEYS TEXT: types the keys, and waits until the shell has written the text.
type_keys() {
    written=
    zpty -w -n shell "$1"
    until_true is_written "$2"
}

zpty -e shell $=1
zpty -w shell ". ./$2; touch ready"
until_true test -e ready
shift 2
for line; do
    rm -f ran
    type_keys $'echo PROM""PT\n' PROMPT
    rest=$line
    while [[ $rest == *'<'*'>'* ]]; do
        type_keys "${rest%%'<'*}" "${rest%%'<'*}"
        rest=${rest#*'<'}
        type_keys $'\t' "${rest%%'>'*}"
        rest=${rest#*'>'}
    done
    zpty -w -n shell "$rest"$'\n'
    until_true test -e ran
    print -r -- "$line ->$(<ran)"
done
zpty -d shell
