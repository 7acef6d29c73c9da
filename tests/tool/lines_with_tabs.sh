# SPDX-License-Identifier: MIT
# lines_with_tabs.sh SHELL SCRIPT LINE...: types lines with tabs into the shell, and then those given; see
# type_in_shell.zsh. The script loads the completion. Sourced by cases.
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
    'routermsg compl<etion >b<ash>' \
    'routermsg list --where Type=Eve<nt> -' \
    'routermsg list --where Type!=Rep<ly> -' \
    'routermsg list --where=Mess<ageID> -' \
    'routermsg list --columns file,DF_Params/Fr<equency> -' \
    'routermsg list --columns=file,DF_Params/Fr<equency> -' \
    'routermsg spl<it >--rec<ord>DF_P<arams >- {n}.bin' \
    'routermsg join --from=bi<nary >--byte<-order>li<ttle >--limit 5<12M >-' \
    'routermsg convert --jobs 8< >-' \
    "${@:3}"
