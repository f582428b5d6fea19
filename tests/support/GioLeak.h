#pragma once

// GLib 2.74 forgets two strings when `g_file_trash` can't move the file after it wrote the info file (mended
// in later versions). A test program that makes that happen includes this file, once, so that the leak
// detector lets it pass; the slow unwinder is what finds GIO in the call stack.

extern "C" const char *__lsan_default_suppressions();

extern "C" const char *__lsan_default_suppressions() // NOLINT(misc-definitions-in-headers)
{
    return "leak:libgio-2.0.so\n";
}

extern "C" const char *__asan_default_options();

extern "C" const char *__asan_default_options() // NOLINT(misc-definitions-in-headers)
{
    return "fast_unwind_on_malloc=0";
}
