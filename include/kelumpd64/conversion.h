/* kelumpd64, conversion face: PostScript in, PDF page content and objects out.
 *
 * A handle is one conversion. Feed it the PostScript of a job in pieces of
 * any size; each call returns the page content that piece produced. Every
 * pointer returned belongs to the library and stays valid as documented at
 * each function; the host frees nothing. A handle belongs to one thread at a
 * time, and handles of one process are used one after the other. */
#ifndef KELUMPD64_CONVERSION_H
#define KELUMPD64_CONVERSION_H

#include <stdint.h>

#if defined(_WIN32)
#define KELUMPD64_API
#elif defined(KELUMPD64_BUILDING)
#define KELUMPD64_API __attribute__((visibility("default")))
#else
#define KELUMPD64_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct KelPsHandle* PSHandle;

/* Opens a conversion with the default matrix: six floats a b c d e f.
 * Returns null when the handle cannot be allocated. */
KELUMPD64_API PSHandle PSOpen(const float* matrix);

/* Closes a conversion; null is ignored. */
KELUMPD64_API void PSClose(PSHandle handle);

/* Runs length bytes of data (a negative length, as signed 32 bits, means
 * NUL-terminated). Returns the page content this call produced, *length bytes
 * long and not NUL-safe, valid until the next run or PSClose on the handle.
 * Null on failure, with *length untouched and the reason in PSGetErrorStr. */
KELUMPD64_API const char* PSConvertToPdf(PSHandle handle, const unsigned char* data,
                                         uint32_t* length);

/* Runs a NUL-terminated text and returns the numbers of the last getdoubles,
 * *count of them, valid until the next getdoubles. Null on failure. */
KELUMPD64_API const double* PSExecuteReturnDoubles(PSHandle handle, const char* text,
                                                   uint32_t* count);

/* Runs length bytes of text (negative: NUL-terminated) and returns what the
 * printing operators wrote, NUL-terminated, valid until the next run. Null on
 * failure. */
KELUMPD64_API const char* PSExecuteReturnStdOut(PSHandle handle, const char* text, uint32_t length);

/* The text of the last failure, "Exception:[file:line] message\n", or "". */
KELUMPD64_API const char* PSGetErrorStr(PSHandle handle);

#ifdef __cplusplus
}
#endif

#endif
