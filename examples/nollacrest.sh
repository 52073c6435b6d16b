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
[ -r $profile ] || { echo "nollacrest.sh: $profile cannot be read" >&2 && exit 1; }
failed=0

fail() {
  echo "nollacrest.sh: $*" >&2
  failed=1
  return 1
}

# run COMMAND... runs a command, or only tells it.
run() {
  if $dry_run; then
    printf '%q ' "$@" && echo
  else
    "$@" || fail "failed: $*"
  fi
}

# copy SOURCE TARGET [OPTION...] copies a folder or a file, never onto something that holds the other.
copy() {
  local source=$1 target=$2 from to
  shift 2
  [ -e "$source" ] || fail "there is no $source" || return
  from=$(realpath -m -- "$source")/ to=$(realpath -m -- "$target")/
  case $from in "$to"* | //) fail "$source lies in $target" || return ;; esac
  case $to in "$from"* | //) fail "$target lies in $source" || return ;; esac
  # A file system that is not mounted leaves an empty folder, which must not empty the target.
  if [ -d "$source" ] && [ "$*" = --delete ] && [ -z "$(ls -A -- "$source")" ]; then
    fail "$source is empty" || return
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
    overwrite,false | symbolic,*) ;;
    *) fail "nobody knows how to $1 $4" ;;
  esac
}

delete_default_route=yes
while IFS=, read -r kind what source target operation force rest; do
  case $kind,$what in
    lnk,*) carry_out "$operation" "$force" "$source" "$target" ;;
    shl,*)
      # Such a line has no field for a kind: "shl,SOURCE,TARGET,OPERATION".
      [ "$target" = update ] || target=overwrite
      if carry_out "$target" true "$what" "$source"; then run chmod +x -- "$source"; fi
      ;;
    rut,del) delete_default_route=$source ;;
    rut,add)
      IFS=, read -r gateway hops interface <<<"$force,$rest"
      run ip route replace "$target/$operation" via "$gateway" \
        ${interface:+dev "$interface"} ${hops:+metric "$hops"}
      ;;
  esac
done < <(sed -E 's/[[:space:]]*(,|$)[[:space:]]*/\1/g; s/^[[:space:]]+//' $profile && echo)
if [ "$delete_default_route" = yes ] && [ -n "$(ip route show default)" ]; then
  run ip route delete default
fi
exit $failed
