# usage: ClosedPipe_EndsQuietly.sh SHOW ARGUMENTS...
# Writes into a pipe whose reader has gone: the program must end by the signal for it and say nothing.
set -u
pipe=$(mktemp -u)
messages=$(mktemp)
trap 'rm -f "$pipe" "$messages"' EXIT
mkfifo "$pipe"

(
  trap '' PIPE  # as a parent does that ignores the signal
  exec 3<> "$pipe" > "$pipe" 3<&-
  exec "$@" 2> "$messages"
)
code=$?

[ "$code" -eq 141 ] || { echo "the exit code is $code and should be 141"; exit 1; }
[ ! -s "$messages" ] || { echo "there should be no messages:"; cat "$messages"; exit 1; }
