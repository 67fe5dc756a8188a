#!/bin/bash
# The guest, once its root is in place: the usual mounts, the command, power off.
export PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root
mount -t proc proc /proc
mount -t sysfs sysfs /sys
ln -sf /proc/self/fd /dev/fd; ln -sf fd/0 /dev/stdin; ln -sf fd/1 /dev/stdout; ln -sf fd/2 /dev/stderr
mkdir -p /dev/pts /dev/shm
mount -t devpts devpts /dev/pts
mount -t tmpfs shm /dev/shm
mount -t tmpfs run /run
exec </dev/null >/dev/console 2>&1

# A clean /tmp (none of the host's X locks), with the job's folders kept.
mapfile -t keep < <(grep ^/tmp/ /vmjob/keep)
for i in "${!keep[@]}"; do mkdir -p "/vmkeep/$i"; mount --bind "${keep[i]}" "/vmkeep/$i"; done
mount -t tmpfs -o mode=1777 tmp /tmp
for i in "${!keep[@]}"; do mkdir -p "${keep[i]}"; mount --move "/vmkeep/$i" "${keep[i]}"; done
ip link set lo up 2>/dev/null || busybox ifconfig lo 127.0.0.1 up

# The output leaves through a serial line, so that the kernel's messages do not mix with it.
stty -F /dev/ttyS0 raw -echo
cd "$(cat /vmjob/folder)" || exit
testbed_cache=$(cat /vmjob/cache) timeout -k 10 "$(cat /vmjob/limit)" bash /vmjob/command 2>&1 \
    </dev/null | cat >/dev/ttyS0
code=${PIPESTATUS[0]}
echo "$code" >/vmjob/code.new && mv /vmjob/code.new /vmjob/code
sync
busybox poweroff -f
