# Sourced by scripts that need a kernel with CAN, which containers and many build machines lack: QEMU boots Debian's own
# kernel in software, with this machine's files shared read-only, so what was built here runs in there on real interfaces.
# Nothing is installed for the kernel: its package is downloaded and unpacked into build/, once.

vm_cache=$PWD/build/socketcan-vm
# In the order in which they need each other; several are built into other kernels.
vm_modules=(virtio_ring virtio virtio_pci_legacy_dev virtio_pci_modern_dev virtio_pci netfs fscache 9pnet 9pnet_virtio 9p
            can can-raw can-bcm can-gw can-dev vcan vxcan sch_netem)

# Why there can be no machine; nothing when there can.
vm_obstacle() {
  local tool
  for tool in qemu-system-x86_64 busybox cpio; do
    command -v "$tool" >/dev/null || { echo "$tool is missing"; return; }
  done
  [[ $(dpkg --print-architecture) == amd64 ]] || { echo "this machine is not an amd64 one"; return; }
  [[ -f $vm_cache/ready ]] || vm_make >"$vm_cache.log" 2>&1 || echo "the kernel cannot be had; see $vm_cache.log"
}

vm_make() (
  set -e
  rm -rf "$vm_cache"
  mkdir -p "$vm_cache/package" "$vm_cache/initrd"/{bin,mods,proc,sys,dev,host}
  cd "$vm_cache/package"
  apt-get download "$(apt-cache depends linux-image-amd64 | sed -n 's/^ *Depends: //p' | head -1)"
  dpkg -x ./*.deb tree
  cp tree/boot/vmlinuz-* ../kernel
  cd ../initrd
  cp "$(command -v busybox)" bin/busybox
  local module file
  : >modules
  for module in "${vm_modules[@]}"; do
    file=$(find ../package/tree/lib/modules -name "$module.ko" | head -1)
    [[ -n $file ]] || continue # built in
    cp "$file" mods/
    echo "$module" >>modules
  done
  cat >init <<'END'
#!/bin/busybox sh
/bin/busybox --install -s /bin
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs dev /dev
for module in $(cat /modules); do insmod "/mods/$module.ko" || echo "no module $module"; done
shared=trans=virtio,version=9p2000.L,msize=262144
mount -t 9p -o $shared,ro,cache=loose host /host || poweroff -f
mount -t proc proc /host/proc
mount -t sysfs sysfs /host/sys
mount -t devtmpfs dev /host/dev
mount -t tmpfs tmp /host/tmp
word() { tr ' ' '\n' </proc/cmdline | sed -n "s/^$1=//p"; }
root=$(word x9root)
mkdir -p "/host$root" /host/tmp/out
mount -t 9p -o $shared,ro,cache=loose project "/host$root"
mount -t 9p -o $shared,cache=none out /host/tmp/out
ip link set lo up
echo; echo x9 begins
chroot /host /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/tmp LANG=C.UTF-8 /bin/bash "$root/$(word x9script)"
echo "x9 ended with $?"
poweroff -f
END
  chmod +x init
  find . | cpio -o -H newc --quiet | gzip -1 >../initrd.gz
  rm -rf ../package
  touch ../ready
)

# vm_run SCRIPT FOLDER SECONDS   Runs a script of the project, named by its path in it, as root in the machine; FOLDER is
# /tmp/out in there, writable. Answers what the script answers.
vm_run() {
  local script=$1 folder=$2 limit=$3 log
  log=$(mktemp)
  timeout "$limit" qemu-system-x86_64 -m 1536 -smp 2 -nographic -nic none -no-reboot -accel tcg,thread=multi -cpu max \
    -kernel "$vm_cache/kernel" -initrd "$vm_cache/initrd.gz" \
    -append "console=ttyS0 quiet panic=-1 mitigations=off x9root=$PWD x9script=$script" \
    -virtfs local,path=/,mount_tag=host,security_model=none,readonly=on,multidevs=remap \
    -virtfs "local,path=$PWD,mount_tag=project,security_model=none,readonly=on,multidevs=remap" \
    -virtfs "local,path=$folder,mount_tag=out,security_model=none" </dev/null 2>&1 |
    tr -d '\r' | tee "$log" | sed -n '/^x9 begins/,/^x9 ended with/ { /^x9 /d; p }'
  local code
  code=$(sed -n 's/^x9 ended with //p' "$log" | tail -1)
  if [[ -z $code ]]; then
    echo "the virtual machine has not told how its script ended, within $limit s; its last words:"
    tail -n 20 "$log"
    code=1
  fi
  rm -f "$log"
  return "$code"
}
