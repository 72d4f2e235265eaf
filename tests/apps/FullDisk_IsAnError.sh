# usage: FullDisk_IsAnError.sh SHOW ARGUMENTS...
set -u
# As in RunShow.cmake.
export ASAN_OPTIONS="${ASAN_OPTIONS:-}:fast_unwind_on_malloc=0:malloc_context_size=10"
message=$("$@" 2>&1 > /dev/full)
code=$?

[ "$code" -eq 1 ] || { echo "the exit code is $code and should be 1"; exit 1; }
[ "$message" = "guitree-show: cannot write: No space left on device" ] || { echo "the message is: $message"; exit 1; }
