# usage: ScriptFromAPipe_IsPlayedLineByLine.sh SHOW FILE
# Writes a line of a script only when what the line before it has caused was seen.
set -u
# As in RunShow.cmake.
export ASAN_OPTIONS="${ASAN_OPTIONS:-}:fast_unwind_on_malloc=0:malloc_context_size=10"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkfifo "$folder/in" "$folder/out"

"$1" --depth 0 "$2" --script - < "$folder/in" > "$folder/out" &
exec 3> "$folder/in" 4< "$folder/out"

expect()
{
  read -r line <&4 || { echo "the output ends and should go on with: $1"; exit 1; }
  [ "$line" = "$1" ] || { echo "the output is '$line' and should be '$1'"; exit 1; }
}

expect "[x]  pump [+5]"
echo "hide pump" >&3
expect ""
expect "> hide pump"
expect "[ ]  pump [+5]"
echo "show pump" >&3
expect ""
expect "> show pump"
expect "[x]  pump [+5]"
exec 3>&-
wait $!
