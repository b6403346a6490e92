/* Allocations that fail when a test says so, for programs of their own in C++ and C. */
#ifndef UXTREE_TESTS_FAILING_NEW_H
#define UXTREE_TESTS_FAILING_NEW_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The allocation that fails next: 0 is the one now, below 0 none. */
extern long untilFailure;
/* Has one failed since the test set this to false? */
extern bool failed;

#ifdef __cplusplus
}
#endif

#endif
