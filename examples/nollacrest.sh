#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# A backup and distribution script to start from: carries out what the profile says. The symbolic
# links are not its work; varnholt --save_symlink has made them before.
# Usage: nollacrest.sh [--dry-run] backup
set -u
profile=/etc/.varnholt.ini
dry_run=false
if [ "${1-}" = --dry-run ]; then dry_run=true && shift; fi
if [ "$*" != backup ]; then
  echo "Usage: nollacrest.sh [--dry-run] backup" >&2
  exit 64
fi
failed=0

# run COMMAND... runs a command, or only tells it.
run() {
  if $dry_run; then
    printf '%q ' "$@"
    echo
  else
    "$@" || { echo "nollacrest.sh: failed: $*" >&2 && failed=1 && return 1; }
  fi
}

# objection_to SOURCE TARGET tells why one cannot be copied to the other, if that is so.
objection_to() {
  [ -e "$1" ] || echo "there is no $1"
  case $1/ in "$2"/*) echo "$1 lies in $2" ;; esac
  case $2/ in "$1"/*) echo "$2 lies in $1" ;; esac
}

# copy SOURCE TARGET [OPTION...] copies a folder or a file.
copy() {
  local source=$1 target=$2 objection
  shift 2
  objection=$(objection_to "$source" "$target")
  if [ -n "$objection" ]; then
    echo "nollacrest.sh: $objection" >&2
    failed=1
    return 1
  fi
  run mkdir -p -- "$(dirname -- "$target")" || return
  if [ -d "$source" ]; then source+=/ target+=/; fi
  run rsync -a "$@" -- "$source" "$target"
}

# carry_out OPERATION FORCE SOURCE TARGET. An update adds what is new or newer and deletes nothing. To
# overwrite makes the target the same as the source, and is done only while its box is ticked.
carry_out() {
  case $1,$2 in
    update,*) copy "$3" "$4" --update ;;
    overwrite,true) copy "$3" "$4" --delete ;;
  esac
}

delete_default_route=yes
while IFS=, read -r kind what source target operation force rest || [ -n "$kind" ]; do
  case $kind,$what in
    lnk,*) carry_out "$operation" "$force" "$source" "$target" ;;
    shl,*)
      # Such a line has no field for a kind: "shl,SOURCE,TARGET,OPERATION".
      if carry_out "$target" true "$what" "$source"; then run chmod +x -- "$source"; fi
      ;;
    rut,del) delete_default_route=$source ;;
    rut,add)
      IFS=, read -r gateway hops interface <<<"$force,$rest"
      run ip route replace "$target/$operation" via "$gateway" \
        ${interface:+dev "$interface"} ${hops:+metric "$hops"}
      ;;
  esac
done <"$profile"
if [ "$delete_default_route" = yes ] && [ -n "$(ip route show default)" ]; then
  run ip route delete default
fi
exit $failed
