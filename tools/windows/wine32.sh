#!/usr/bin/env bash
# tools/windows/wine32.sh COMMAND...   Runs a command, such as another script, for which wine, wineboot, winepath and
# wineserver are those of a 32-bit Windows. They come from a small i386 Debian of its own, build/wine32, since Debian's i386 packages of Wine
# cannot always be installed beside those of amd64. It is made once, in half a minute, from the package sources of this
# machine, and takes 1.3 GB. The command and all that it starts are in namespaces of their own: what is mounted there nobody
# else sees, and nothing of it goes on afterwards. Ends with 3 where that cannot be done: without root, or when no package
# source answers.
set -euo pipefail
cd "$(dirname "$0")/../.."

system=$PWD/build/wine32
packages=(wine wine32 python3)

say() { echo "windows/wine32: $*" >&2; }

# The package source of this system's own release.
package_source() {
  local release
  release=$(. /etc/os-release && echo "$VERSION_CODENAME")
  apt-get indextargets --format '$(CODENAME) $(COMPONENT) $(ORIGIN) $(REPO_URI)' 'Created-By: Packages' |
    awk -v release="$release" '$1 == release && $2 == "main" && $3 == "Debian" { print $1, $4; exit }'
}

# Under its name it appears when it is complete. What the namespace is for: debootstrap mounts, too.
make_system() {
  local release source proxy=
  read -r release source < <(package_source) || { apt-get update -qq && read -r release source < <(package_source); } ||
    { say "this machine has no package source of Debian."; return 3; }
  eval "$(apt-config shell proxy Acquire::http::Proxy)"
  [[ -z $proxy ]] || export http_proxy=$proxy
  rm -rf "$system.new"
  mkdir -p "$system.new"
  debootstrap --arch=i386 --variant=minbase "$release" "$system.new" "$source" || return 3
  chroot "$system.new" sh -e -c '
    export DEBIAN_FRONTEND=noninteractive
    apt-get install -y -qq --no-install-recommends "$@"
    apt-get clean
    rm -rf /var/lib/apt/lists/*' sh "${packages[@]}" || return 3
  echo "${packages[*]}" >"$system.new/x9-packages"
}

# What the system sees of this machine: this folder, temporary files with the sockets of the screens, fonts.
enter_system() {
  local folder
  mount -t proc proc "$system/proc"
  mount --rbind /dev "$system/dev"
  mount --rbind /sys "$system/sys"
  for folder in /tmp /usr/share/fonts "$PWD"; do
    mkdir -p "$system$folder"
    mount --bind "$folder" "$system$folder"
  done
  # Among the commands of this machine, these are the system's.
  local commands=$system/x9-commands command
  mkdir -p "$commands"
  for command in wine wineboot winepath wineserver; do
    cat >"$commands/$command" <<END
#!/bin/sh
exec $(command -v chroot) '$system' env -C "\$PWD" /usr/bin/$command "\$@"
END
    chmod +x "$commands/$command"
  done
  export X9_WINE_ROOT=$system PATH=$commands:$PATH
}

case ${1:-} in
  '') sed -n '2,7s/^# //p' "$0" >&2; exit 2 ;;
  --make) # within the namespaces
    make_system
    ;;
  --run)
    shift
    enter_system
    # Not in the place of this process, which is the first one here: Xvfb does not tell that one that it is ready.
    "$@"
    exit
    ;;
  *)
    # Where all of these end with the first process in them.
    apart=(unshare --mount --pid --fork --kill-child --mount-proc)
    ((EUID == 0)) || { say "an i386 system cannot be used without root."; exit 3; }
    "${apart[@]}" true || { say "this machine has no namespaces."; exit 3; }
    if [[ $(cat "$system/x9-packages" 2>/dev/null) != "${packages[*]}" ]]; then
      say "makes an i386 system; this takes half a minute."
      tools/install-packages.sh wine32
      mkdir -p build
      "${apart[@]}" tools/windows/wine32.sh --make >"$system.log" 2>&1 ||
        { tail -n 20 "$system.log" >&2; say "the system could not be made; the whole log is $system.log."; exit 3; }
      rm -rf "$system"
      mv "$system.new" "$system"
    fi
    exec "${apart[@]}" tools/windows/wine32.sh --run "$@"
    ;;
esac
