#!/usr/bin/env bash
# The client's bash completion offers what the client itself lists: each command it offers is
# one the client takes, and the words below are offered where they belong and nowhere else.
#   bash completion.sh CLIENT COMPLETION-SCRIPT
set -u
client=$(realpath "$1")
source "$(realpath "$2")"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export CORVANE_REGISTRY_DIR=$scratch/registry CORVANE_PROGRAM_DIR=$scratch
mkdir "$scratch/files" && touch "$scratch/files/ports.json" "$scratch/files/other.txt"
cd "$scratch/files"

failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

# What the completion offers at the end of a command line.
offered() {
    COMP_LINE="corvane-remote-cli $1"
    COMP_POINT=${#COMP_LINE}
    COMPREPLY=()
    _corvane_remote_cli "$client"
    printf '%s\n' "${COMPREPLY[@]}"
}

commands=$(offered "")
for command in status watch purge get-parms set-parms fields export import copy-parms revert diff history config init-store \
    users; do
    grep -qx -- "$command" <<<"$commands" || fail "the command $command is not offered"
done
for command in $commands; do
    usage=$("$client" "$command" --help 2>/dev/null | head -n 1)
    [[ $usage == "Usage: corvane-remote-cli [options] $command"* ]] || fail "offered $command, which the client does not take"
done

# The line typed so far | the words that must be offered (all of them) | words that must not be.
cases=(
    "--|--host --port --host-number --timeout --user --password-file --password --json --yes --help --version|--interval"
    "--host-number 2 wat|watch|status"
    "--user SMITH --json st|status|"
    "--help |status users config|--host"
    "--password-file po|ports.json|other.txt"
    "--port ||status"
    "status --t|--timeout|"
    "--timeout 5 status --password-file p|ports.json|other.txt"
    "watch --|--interval --count --json --host|--since --dry-run"
    "history --s|--since|--until"
    "history -- -||--since --user"
    "config |show set-host set-idle|--name"
    "config set-host 1 --|--name --address --socket-port|--grant"
    "users |list add passwd grant revoke delete|status"
    "users --json a|add|status"
    "users add SMITH --|--password --grant|--new-password"
    "users passwd SMITH --|--new-password --no-password|--grant"
    "users [ --||--password --grant"
    "set-parms 15 Bau|Baud=|Baud"
    "set-parms 15 SaveTo|SaveToFolder=|"
    "set-parms 15 Baud=1|1 10 14|0 Baud=1"
    "set-parms 15 AppendDateAndTime=|True False|"
    "set-parms 15 SaveToFolder=||SaveToFolder= True"
    "set-parms 15 Baud=6 --d|--dry-run|"
    "import |ports.json other.txt|"
    "import ports.json ||ports.json"
    "import ports.json --|--to --dry-run|--all-fields"
    "export 1 2 --file p|ports.json|other.txt"
    "export 1 2 --file=p|ports.json|other.txt"
    "export 1 2 --|--file|--dry-run"
    "copy-parms 1 2 --|--all-fields --dry-run|--force"
    "revert 3 --|--before --force --dry-run|--all-fields"
    "diff 1 p|ports.json|other.txt"
    "diff p||ports.json"
)
for case in "${cases[@]}"; do
    IFS='|' read -r line wanted unwanted <<<"$case"
    got=$(offered "$line")
    for word in $wanted; do
        grep -qx -- "$word" <<<"$got" || fail "'$line' offers no $word (it offers: $(echo $got))"
    done
    for word in $unwanted; do
        grep -qx -- "$word" <<<"$got" && fail "'$line' offers $word"
    done
done

if ((failures > 0)); then
    echo "$failures failed" >&2
    exit 1
fi
echo "the completion offers what the client lists"
