# SPDX-License-Identifier: MIT
# messages_for_editors.sh LANGUAGE FILE: writes findings with each kind of place to the file messages, and to FILE the
# lines in this language that the page about other tools recommends for an editor. Sourced by cases.
sed -n "/^\`\`\`$1/,/^\`\`\`/p" "$SUPPORT/../../docs/other-tools.md" | grep -v '^```' >"$2"
sed s/Request/Demand/ documents/request-tuning.xml >'a demand.xml'
$ROUTERMSG convert -q documents/request-tuning.xml good.bin
head -c 60 good.bin >cut.bin
echo '{"DF_Params": {"Frequenzy": 1}}' >key.json
cat good.bin documents/event-three-decimals.xml >two.rec
$ROUTERMSG check -q --strict 'a demand.xml' cut.bin key.json missing.xml two.rec documents/event-three-decimals.xml \
    >messages 2>&1
wc -l <messages
