extern "C" const char* __asan_default_options();

/// Open CASCADE is built without frame pointers: only the slow way to walk the stack reaches the names that
/// tests/leaks.supp lists.
extern "C" const char* __asan_default_options()
{
  return "fast_unwind_on_malloc=0";
}
