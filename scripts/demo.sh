#!/usr/bin/env bash
# The road in one run: a devmode becomes a print ticket, the ticket becomes a devmode again. The printer lives in a
# scratch store below build/demo, so nothing outside the checkout is touched.
set -euo pipefail
cd "$(dirname "$0")/.."

tvpt=build/release/bin/tvpt
demo=build/demo
printer="Tavlen C9070 sample"
rm -rf "$demo"
mkdir -p "$demo"
export TVPT_STORE=$demo/store

# step TEXT COMMAND...: says what happens and how it is asked for, then does it.
step()
{
    printf '\n%s\n  $ tvpt' "$1"
    printf ' %q' "${@:2}"
    printf '\n'
    "$tvpt" "${@:2}" | sed 's/^/    /'
}

step "A sample printer, in a store of its own." \
    printer add "$printer" --model tavlen-c9070-ps
step "A devmode of that printer that asks for three copies; a title and a staple are features of our own." \
    devmode new --printer "$printer" -o "$demo/job.devmode" --set dmCopies=3 \
    --set feature.78="Quarterly report" --set feature.208=6254
step "The devmode becomes a print ticket; the system's own part of the ticket is given." \
    ticket from-devmode --printer "$printer" "$demo/job.devmode" \
    --base tests/data/tickets/platform-00.xml -o "$demo/job.ticket.xml"
step "What the ticket says." \
    ticket show "$demo/job.ticket.xml"
step "The job ticket: what the printer's controller is told, as it stands in that ticket, too." \
    jobticket --printer "$printer" "$demo/job.devmode"
step "What the printer offers." \
    capabilities --printer "$printer" --ticket "$demo/job.ticket.xml" -o "$demo/capabilities.xml"
step "Both documents keep the Print Schema's rules: no line, no fault." \
    check "$demo/capabilities.xml"
step "Another devmode, with the printer's defaults." \
    devmode new --printer "$printer" -o "$demo/defaults.devmode"
step "The ticket is applied to it." \
    ticket to-devmode --printer "$printer" --devmode "$demo/defaults.devmode" "$demo/job.ticket.xml" \
    -o "$demo/back.devmode"
step "What came back." \
    devmode show "$demo/back.devmode"

# The demo is only done when the figures agree.
copies()
{
    "$tvpt" devmode show "$1" --json | tr -d ' \n' | sed -n 's/.*"dmCopies":\([0-9]*\).*/\1/p'
}
staple()
{
    "$tvpt" devmode show "$1" --json | tr -d ' \n' | sed -n 's/.*"208":\([0-9]*\).*/\1/p'
}
in_ticket()
{
    tr '<' '\n' <"$demo/job.ticket.xml" | awk '
        /name="[^"]*:JobCopiesAllDocuments"/ { found = 1 }
        found && /^[^\/]*Value[^>]*>/         { sub(/^[^>]*>/, ""); print; exit }'
}
echo
printf '%-28s %s\n' "copies in the devmode" "$(copies "$demo/job.devmode")" \
    "copies in the ticket" "$(in_ticket)" \
    "copies in the defaults" "$(copies "$demo/defaults.devmode")" \
    "copies that came back" "$(copies "$demo/back.devmode")" \
    "staple that came back" "$(staple "$demo/back.devmode")"
[ "$(staple "$demo/back.devmode")" = 6254 ] ||
    { echo "demo: the staple has not come back" >&2; exit 1; }
[ "$(copies "$demo/back.devmode")" = 3 ] && [ "$(in_ticket)" = 3 ] ||
    { echo "demo: three copies went in, something else came out" >&2; exit 1; }

printf '\nThe files:\n'
for file in "$demo"/*.devmode "$demo"/*.xml; do
    printf '  %s (%s bytes)\n' "$file" "$(stat -c %s "$file")"
done
echo "The program: $tvpt, the printers: TVPT_STORE=$TVPT_STORE"
echo "1 0 0" >build/demo/figures # one case passed, for .ci/run
