#!/bin/bash
# First process of the guest: puts a layer in memory over the host's files and goes there.
export PATH=/usr/sbin:/usr/bin:/sbin:/bin
fail() { echo "init: $*"; busybox poweroff -f; }
mount -n -t tmpfs -o size=75% tmpfs /mnt || fail "no tmpfs"
mkdir /mnt/up /mnt/work /mnt/new
mount -n -t overlay -o lowerdir=/,upperdir=/mnt/up,workdir=/mnt/work overlay /mnt/new ||
    fail "no overlay"
cd /mnt/new || fail "no root"
# The kernel gives its own arguments of this form as variables.
# shellcheck disable=SC2154
mkdir -p vmjob
# shellcheck disable=SC2154
mount -n -t hostfs -o "$vmjob" none vmjob || fail "no job folder"
[ -n "${vmout:-}" ] && mount -n -t hostfs -o "$vmout" none vmjob/out
mount -n -t devtmpfs dev dev || fail "no devtmpfs"
# shellcheck disable=SC2154
cp "$vmhome/guest-init.sh" vmjob-init
pivot_root . mnt
# shellcheck disable=SC2094 # a terminal
exec chroot . /bin/bash /vmjob-init <dev/console >dev/console 2>&1
