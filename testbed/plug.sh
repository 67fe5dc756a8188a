#!/bin/bash
# plug.sh - plugs USB devices made of software into the guest (see guest.sh).
#
#   plug.sh camera NAME VID:PID JPEGDIR [usbdev camera options]   prints /dev/videoN
#   plug.sh serial NAME VID:PID acm|ch341|pl2303 [options]        prints the tty
#   plug.sh press  NAME HEXBYTES      send bytes, e.g. AA550401000AF0, from NAME's side
#   plug.sh unplug NAME               pull the plug
#   plug.sh reload NAME               read JPEGDIR again
#   plug.sh log NAME                  what happened to it (streams, controls, lines)
#
# State lies in /run/usbdev/NAME.{pid,log,fifo,rx}; .rx is what was written to the tty.
set -euo pipefail
: "${testbed_cache:?}"
state=/run/usbdev
[ -d "$state" ] || mkdir -p "$state"
die() { echo "plug: $*" >&2; exit 1; }
[ $# -ge 2 ] || { sed -n '2,13p' "$0" >&2; exit 2; }
what=$1 name=$2; shift 2

[ -e /sys/devices/platform/vhci_hcd.0/attach ] || die "this kernel has no vhci_hcd"

# Prints the device node once usbdev has seen it.
await() {
    local i line
    exec 9<> <(:)                      # a pipe that never has anything: "read -t" on it is a sleep
    for ((i = 0; i < 300; i++)); do
        while read -r line; do
            case $line in "ready "*) echo "${line#ready }"; return 0 ;; esac
        done < "$state/$name.log"
        [ -d "/proc/$pid" ] || break
        read -rt 0.1 -u 9 line || true
    done
    echo "plug: $name did not appear:" >&2
    while read -r line; do echo "  $line" >&2; done < "$state/$name.log"
    return 1
}

start() {
    local kind=$1; shift
    : > "$state/$name.log"
    setsid "$testbed_cache/usbdev" "$kind" -S "vm-$name" "$@" </dev/null >>"$state/$name.log" 2>&1 &
    pid=$!
    echo $pid > "$state/$name.pid"
    await
}

case $what in
camera)
    [ $# -ge 2 ] || die "camera NAME VID:PID JPEGDIR"
    id=$1 dir=$2; shift 2
    start camera -V "${id%:*}" -P "${id#*:}" -d "$dir" "$@"
    ;;
serial)
    [ $# -ge 2 ] || die "serial NAME VID:PID acm|ch341|pl2303"
    id=$1 chip=$2; shift 2
    # A product id that the chip's driver does not list is added to it.
    if [ "$chip" != acm ]; then
        for d in /sys/bus/usb-serial/drivers/"$chip"*; do echo "${id%:*} ${id#*:}" > "$d/new_id" || true; done 2>/dev/null
    fi
    rm -f "$state/$name.fifo" && mkfifo "$state/$name.fifo"
    start serial -c "$chip" -V "${id%:*}" -P "${id#*:}" -i "$state/$name.fifo" -o "$state/$name.rx" "$@"
    ;;
press)
    [ $# -eq 1 ] || die "press NAME HEXBYTES"
    [[ $1 =~ ^([0-9A-Fa-f]{2})+$ ]] || die "not hex: $1"
    h='' s=$1
    while [ -n "$s" ]; do h+="\\x${s:0:2}"; s=${s:2}; done
    # shellcheck disable=SC2059 # the escapes are what it is for
    printf "$h" > "$state/$name.fifo"
    ;;
unplug)
    read -r p < "$state/$name.pid"
    kill "$p"
    while [ -d "/proc/$p" ]; do sleep 0.05; done
    rm -f "$state/$name.pid"
    ;;
reload) kill -HUP "$(cat "$state/$name.pid")" ;;
log) cat "$state/$name.log" ;;
*) die "unknown: $what" ;;
esac
