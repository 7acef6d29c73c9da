# SPDX-License-Identifier: MIT
# complete_in_zsh.zsh FOLDER LINE...: prints the words that zsh offers at the end of each line, with the completion
# functions of the folder. Completion works only in an interactive shell, so a second zsh runs on its own terminal.
zmodload zsh/zpty || exit

# wait_for FILE: waits until the second shell has made the file.
wait_for() {
    repeat 600; do
        [[ ! -e $1 ]] || return 0
        sleep 0.05
    done
    print -r -- "zsh did not make the file $1."
    exit 1
}

cat >setup <<END
PS1= PS2= RPS1=
fpath=(${(q)1:A} \$fpath)
END
cat >>setup <<'END'
autoload -Uz compinit
compinit -u -d compdump
# All offered words pass through compadd. With the options -O, -A and -D it offers nothing.
compadd() {
    if (( ! ${@[(I)-[OAD]*]} )); then
        local -a words
        builtin compadd -O words "$@"
        print -rC1 -- $words >>offered
    fi
    builtin compadd "$@"
}
offer() {
    : >offered
    zle list-choices
    zle kill-whole-line
    : >done
}
zle -N offer
bindkey '^T' offer
: >ready
END
shift

zpty inner zsh -f -i
zpty -w inner 'source ./setup'
wait_for ready
for line; do
    rm -f done
    zpty -w -n inner "$line"$'\x14'
    wait_for done
    print -r -- "$line ->"
    sort offered
done
zpty -d inner
