# SPDX-License-Identifier: MIT
# lines_with_tabs.sh SHELL SCRIPT: types lines with tabs into the shell; see type_in_shell.zsh. The script loads the
# completion. Sourced by cases.
for shell in zsh "${1%% *}"; do
    if ! command -v "$shell" >/dev/null; then
        echo "There is no $shell." >&2
        exit 77
    fi
done
cp documents/request-tuning.xml .
zsh -f "$SUPPORT/type_in_shell.zsh" "$1" "$2" \
    'routermsg conv<ert >req<uest-tuning.xml >--to bi<nary >out.bin' \
    'routermsg convert --to=bi<nary >request-tuning.xml -' \
    'routermsg check --form<at>js<on>' \
    'routermsg check --format=js<on>' \
    'routermsg new Ty<pe=>Requ<est >Acq<uireMastership >Succ<ess=>t<rue>' \
    'routermsg diff --ig<nore>DF_Params/Freq<uency>' \
    'routermsg diff --ignore=Mess<ageID>' \
    'routermsg compl<etion >b<ash>'
