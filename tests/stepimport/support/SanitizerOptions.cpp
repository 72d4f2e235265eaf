extern "C" const char* __asan_default_options();

/// Open CASCADE is built without frame pointers: only the slow way to walk the stack reaches the names that
/// tests/leaks.supp lists. They stand near the top, and short walks keep it bearable.
extern "C" const char* __asan_default_options()
{
  return "fast_unwind_on_malloc=0:malloc_context_size=10";
}
