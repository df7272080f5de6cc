# Sourced by scripts that build libraries for Windows from Debian's source packages. They set: work, the folder that all
# happens in; log, the file that what is run writes to; triplet, of the compiler; library, what is built.

say() { echo "windows/$(basename "$0" .sh): $*"; }

# For the end of the script.
finish() {
  local code=$?
  if ((code != 0)); then
    tail -n 40 "$log" | cut -c -400 >&2
    say "failed; the whole log is $log. Started again, it goes on where it stopped." >&2
  fi
}

# step TEXT COMMAND...   In a subshell: where a step fails, the script ends outside of the redirection to the log.
step() {
  say "$1 ($(date +%H:%M))"
  shift
  ("$@") >>"$log" 2>&1
}

# APT with the machine's package sources and source packages beside them, and lists of its own: the machine's own lists
# and configuration stay as they are.
private_apt() {
  apt-get -q -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$work/apt/sources" \
    -o Dir::State::Lists="$work/apt/lists" -o Dir::Cache="$work/apt/cache" "$@"
}

list_packages() {
  local file
  mkdir -p "$work"/apt/{sources,lists/partial,cache/archives/partial}
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [[ -f $file ]] || continue
    sed -E '/^[[:space:]]*deb[[:space:]]/ { p; s/deb/deb-src/ }' "$file" >"$work/apt/sources/$(basename "$file")"
  done
  for file in /etc/apt/sources.list.d/*.sources; do
    [[ -f $file ]] || continue
    sed -E 's/^Types:.*/Types: deb deb-src/I' "$file" >"$work/apt/sources/$(basename "$file")"
  done
  private_apt update
}

# The compilers with posix threads under the plain names, whatever the machine's alternatives say. Where a library names its
# sources, the name does not tell where they lay.
name_compilers() {
  local compiler named
  mkdir -p "$work/bin"
  for compiler in gcc g++; do
    named=$work/bin/$triplet-$compiler
    cat >"$named" <<SCRIPT
#!/bin/sh
exec $(command -v "$triplet-$compiler-posix") '-ffile-prefix-map=$work=$library' "\$@"
SCRIPT
    chmod +x "$named"
  done
}
