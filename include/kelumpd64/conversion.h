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

/* A PDF object that cannot stand in page content: an image XObject (kind 3)
 * or a tiling pattern (kind 1). The page content names it by `name`; the host
 * makes the PDF object from it. A host reads it by this layout: 96 bytes,
 * little-endian, 64-bit pointers. Records belong to the library. */
typedef struct PdfObject {
    char* dictionaryText;   /*  0: the object's dictionary entries, or null */
    void* extraText;        /*  8: null when made; freed with the record */
    uint32_t reserved;      /* 16: zero */
    uint32_t uncompressed;  /* 20: 0 when the data carries a filter of its own */
    unsigned char* data;    /* 24: the stream bytes, or null */
    uint64_t dataLength;    /* 32: bytes at data */
    char* name;             /* 40: the resource name, "/PSI1", "/PA2", ... */
    int32_t kind;           /* 48: 1 pattern, 3 image */
    void* procedure;        /* 56: internal */
    unsigned char text[32]; /* 64: internal */
} PdfObject;

/* Opens a conversion with the default matrix: six floats a b c d e f.
 * Returns null when the handle cannot be allocated. */
KELUMPD64_API PSHandle PSOpen(const float* matrix);

/* Closes a conversion; null is ignored. */
KELUMPD64_API void PSClose(PSHandle handle);

/* Starts a page with its default matrix, six floats a b c d e f: the
 * graphics state goes back to one default state under that matrix. Nothing is
 * written, and the interpreter keeps its stacks and definitions. */
KELUMPD64_API void PSStartPage(PSHandle handle, const float* matrix);

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

/* The PDF objects of every handle of the process, in order of creation:
 * *count record pointers. The array is valid until the next call; the records
 * until the print job face empties the list. */
KELUMPD64_API PdfObject** PSGetPdfObjects(PSHandle handle, uint64_t* count);

#ifdef __cplusplus
}
#endif

#endif
