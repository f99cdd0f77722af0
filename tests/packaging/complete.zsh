#!/usr/bin/env zsh
# SPDX-License-Identifier: MIT
# complete.zsh FOLDER LINE...  prints what zsh offers for each line with the completions of a folder: "line: word word ...".
# A shell of its own completes on a pseudo terminal, as that is the only place where zsh does.
zmodload zsh/zpty || exit 1
zpty shell zsh -f -i
zpty -w shell "PROMPT= ; fpath=(${(q)1} \$fpath); autoload -Uz compinit; compinit -u -D"
zpty -w shell 'stty -echo; bindkey "^I" complete-word; zstyle ":completion:*" list-colors "no="; LISTMAX=10000
capture() { local -a found; compadd() { local -a hits; builtin compadd -O hits "$@"; found+=($hits); builtin compadd "$@" }
  _main_complete; print -r -- "{{${(j: :)found}}}"; compstate[insert]= compstate[list]= }
zle -C capture complete-word capture; bindkey "^I" capture; print ready'
zpty -r shell output '*ready*ready*' 2>/dev/null
shift
for line; do
    zpty -w -n shell "$line"$'\t'
    zpty -r shell output '*{{*}}*' || exit 1
    print -r -- "$line: ${${output##*\{\{}%%\}\}*}"
    zpty -w -n shell $'\C-U'
done
zpty -d shell
