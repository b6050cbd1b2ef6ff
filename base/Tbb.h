#pragma once

// oneTBB names a function "emit", which Qt defines as a macro.
#pragma push_macro("emit")
#undef emit
#include <tbb/concurrent_vector.h>
#include <tbb/parallel_for.h>
#include <tbb/task_group.h>
#pragma pop_macro("emit")
