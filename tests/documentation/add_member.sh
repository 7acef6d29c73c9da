#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# add_member.sh FOLDER COMPILER [OPTION]...: adds the member of docs/extending.md to a copy of the record DF_Params, as the
# page says, and compiles it together with a use of each accessor. FOLDER has the sources of this project.
set -euo pipefail
folder=$1
compiler=("${@:2}")
copies=$(mktemp -d)
trap 'rm -rf "$copies"' EXIT
page=$folder/docs/extending.md

row=$(sed -n 's/^    \(ROW(.*SquelchLevel.*)\)$/\1/p' "$page")
accessors=$(sed -n 's/^    \([a-z].*SquelchLevel.*;\)$/\1/p' "$page")
if [ "$(wc -l <<<"$row")" -ne 1 ] || [ "$(wc -l <<<"$accessors")" -ne 7 ]; then
    echo "$page has not one row and seven accessors of SquelchLevel." >&2
    exit 1
fi

mkdir "$copies/routerinterface"
{
    sed "s/^#define MEMBERS(ROW).*/&\n    $row \\\\/" "$folder/routerinterface/DF_Params.cpp"
    cat <<'CODE'
bool isThere()
{
    PELLU300ROUTERINTERFACEXML::DF_Params record;
    record.SetDefaultSquelchLevel(record.GetDefaultSquelchLevel() + 1);
    record.ResetSquelchLevel();
    record.SetSquelchLevel(record.GetSquelchLevel());
    return record.IsSquelchLevelSet() && record.IsValidSquelchLevel(0.5);
}
CODE
} >"$copies/routerinterface/DF_Params.cpp"
awk -v accessors="$accessors" '/\\name Frequency/ { print accessors } { print }' \
    "$folder/routerinterface/DF_Params.h" >"$copies/routerinterface/DF_Params.h"

"${compiler[@]}" -std=c++17 -Wall -Wextra -Werror -Wno-missing-declarations -fsyntax-only -I "$copies" -I "$folder" \
    "$copies/routerinterface/DF_Params.cpp"
echo "The member of $page compiles."
