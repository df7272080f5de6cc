# Sourced by scripts that leave something out: that must not be overlooked among everything else they print.

# loudly LINE...
loudly() {
  local line
  printf '#%.0s' {1..90}
  echo
  for line in "$@"; do printf '## %-84s ##\n' "$line"; done
  printf '#%.0s' {1..90}
  echo
}
