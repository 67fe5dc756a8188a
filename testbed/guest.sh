#!/bin/bash
# guest.sh [-o DIR] [-t SECONDS] [-v] COMMAND [ARGUMENT...]
#
# Boots the guest in a second or two: its root is this machine's own file system, read-only below a
# layer in memory, so every program here runs there as it is, on the guest's kernel. Runs COMMAND as
# root, passes its output on, powers off and gives its exit code; what it writes is lost except
# below /vmjob/out, which is DIR.
#   -t SECONDS  ends COMMAND (exit code 124), 900 unless told
#   -v          starts vivid, the kernel's driver of an imaginary camera
# Exit code 125: the guest did not start or died. One processor; run only trusted commands.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cache=${testbed_cache:-${XDG_CACHE_HOME:-$HOME/.cache}/pictor-testbed}
out='' limit=900 vivid=initcall_blacklist=vivid_init
while getopts o:t:v option; do
    case $option in
    o) out=$(mkdir -p "$OPTARG" && cd "$OPTARG" && pwd) ;;
    t) limit=$OPTARG ;;
    v) vivid='' ;;
    *) sed -n '2,12p' "$0" >&2; exit 2 ;;
    esac
done
shift $((OPTIND - 1))
[ $# -ge 1 ] || { sed -n '2,12p' "$0" >&2; exit 2; }
[ -x "$cache/linux" ] || { echo "run build.sh first" >&2; exit 125; }

job=$(mktemp -d "${TMPDIR:-/tmp}/vmjob.XXXXXX")
trap 'rm -rf "$job"' EXIT
mkdir "$job/out"
printf '%q ' "$@" >"$job/command"
printf '%s\n' "$PWD" >"$job/folder"
printf '%s\n' "$limit" >"$job/limit"
printf '%s\n' "$cache" >"$job/cache"
# The guest's /tmp is empty but for these.
printf '%s\n' "$here" "$PWD" "$cache" | sort -u >"$job/keep"

# On one processor of ours: the guest's kernel and its processes take turns, and waking across
# processors costs tenfold. The outer limit is for a guest that hangs as a whole.
# shellcheck disable=SC2086 # $vivid is a word or none
TMPDIR=/dev/shm taskset -c "$(($$ % $(nproc)))" timeout -k 5 $((limit + 120)) "$cache/linux" \
    mem=3072M uml_dir="$job" umid=uml rootfstype=hostfs rootflags=/ ro quiet panic=-1 $vivid \
    init="$here/init.sh" con=null con0=null,fd:4 ssl=null ssl0=null,fd:3 \
    vmhome="$here" vmjob="$job" vmout="$out" \
    </dev/null 3> >(exec cat) 4>"$job/console" >"$job/start" 2>&1 &
pid=$!
trap 'kill $pid 2>/dev/null' INT TERM
wait $pid
code=$?
if [ ! -f "$job/code" ]; then
    echo "guest.sh: the guest ended without a result ($code); its console:" >&2
    tail -n 40 "$job/console" "$job/start" >&2
    exit 125
fi
exit "$(cat "$job/code")"
