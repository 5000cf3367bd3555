#pragma once

#include "kelumpd64/conversion.h"

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Lists the handle's objects as a host written in C sees them, one line per
 * record, reading each field at its offset in the record's bytes:
 * "<name> kind=<k> uncompressed=<u> reserved=<r> length=<n> data=<bytes>
 * dictionary=<text or -> extra=<null or set> procedure=<null or set>\n".
 * Returns the count, or -1 when there is no array. */
int hostListObjects(PSHandle handle, char* out, size_t room);

#ifdef __cplusplus
}
#endif
