/* kelumpd64, conversion face: a bound on the work of one call.
 *
 * Not part of the classic conversion interface; a host that does not call it
 * gets the unbounded behaviour. */
#ifndef KELUMPD64_LIMITS_H
#define KELUMPD64_LIMITS_H

#include "kelumpd64/conversion.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Bounds the objects that one call (PSConvertToPdf, PSExecuteReturnDoubles,
 * PSExecuteReturnStdOut) may execute; 0, the default, bounds nothing. A call
 * that reaches the bound fails with "Step limit of <steps> reached", the work
 * that was left running is dropped, and the next call goes on with the next
 * piece of the job. A null handle is ignored. */
KELUMPD64_API void PSSetStepLimit(PSHandle handle, uint64_t steps);

#ifdef __cplusplus
}
#endif

#endif
