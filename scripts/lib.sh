# shellcheck shell=bash
# What ./scan, ./check and scripts/install share. To be sourced under `set -euo pipefail`; written for
# the bash 3.2 of a Mac too.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
logs=$root/build/logs
cores=$(getconf _NPROCESSORS_ONLN)

# Everything said goes to standard error: the standard output of ./scan belongs to the agent.
say() { printf '%s\n' "$*" >&2; }

stop() {
  say "$*"
  exit 1
}

on_a_mac() { [ "$(uname -s)" = Darwin ]; }

# step TITLE COMMAND...: runs the command, a function of the script included, with its output in a log.
# Shows that it goes on while it takes long, says how long it took, and ends the script with the end of
# the log when it fails. The command must get no standard input: that too belongs to the agent.
step() {
  local title=$1 began=$SECONDS status watcher log
  shift
  log=$logs/$(printf '%s' "$title" | tr -cs '[:alnum:]' '-').log
  mkdir -p "$logs"
  say "== $title"
  : >"$log"
  watch_log "$log" &
  watcher=$!
  set +e  # not `|| status=$?`, which would also switch off `set -e` inside the command
  (set -e; "$@") >"$log" 2>&1 </dev/null
  status=$?
  set -e
  { kill "$watcher" && wait "$watcher"; } 2>/dev/null || true
  if [ -t 2 ]; then printf '\r\033[K' >&2; fi
  if [ "$status" -ne 0 ]; then
    tail -n 60 "$log" >&2
    stop "   FAILED after $((SECONDS - began)) s. The whole log: $log"
  fi
  say "   $((SECONDS - began)) s"
}

# The sign of life of a step: its seconds and the last line of its log; every second on a terminal,
# every 15 seconds in a file. `sleep` holds none of our streams, so that nobody waits for its end.
watch_log() {
  local began=$SECONDS next=15 took line
  while sleep 1 >/dev/null 2>&1 && kill -0 $$ 2>/dev/null; do
    took=$((SECONDS - began))
    if [ ! -t 2 ] && [ "$took" -lt "$next" ]; then continue; fi
    next=$((took + 15))
    line="   $took s  $(tail -n 1 "$1" | tr -d '\r' | cut -c 1-65)"
    if [ -t 2 ]; then printf '\r\033[K%s' "$line" >&2; else say "$line"; fi
  done
}

# configure FOLDER COMPILER OPTION...: prepares build/FOLDER. Options that are not named keep what an
# earlier run gave them: ./scan shares build/release with ./check, and builds nothing anew after it.
configure() {
  local folder=$root/build/$1 compiler=$2
  shift 2
  if [ ! -f "$folder/CMakeCache.txt" ]; then set -- "$@" -G Ninja; fi
  CXX=$compiler cmake -S "$root" -B "$folder" "$@"
}

# build FOLDER [TARGET...]
build() {
  local folder=$root/build/$1
  shift
  if [ $# -gt 0 ]; then set -- --target "$@"; fi
  cmake --build "$folder" --parallel "$cores" "$@"
}
