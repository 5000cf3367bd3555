/* kelumpd64, print job face: a print job's bytes to one output file, and the
 * per-user launcher told of its start and end. Windows only: the DLL carries
 * it, the native library does not yet.
 *
 * A job is an opaque pointer from DocStart2K or DocStart, good until DocEnd.
 * Every function checks the pointer it is given, and a bad one (null, ended,
 * made up) shows an "invalid parms" box and fails. */
#ifndef KELUMPD64_PRINTJOB_H
#define KELUMPD64_PRINTJOB_H

#include "kelumpd64/conversion.h"

#include <stdint.h>
#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Starts a job on the spooler's printer handle and job id. printerName is
 * only logged; documentName may be null. Null when the job cannot start. */
KELUMPD64_API void* DocStart2K(void* printer, uint32_t jobId, const wchar_t* printerName,
                               const wchar_t* documentName);

/* One block of the job, as it stands, to the file (or back to the spooler in
 * passthrough mode). 1 when written whole, 0 when not; after one failed or
 * empty block the job writes nothing more. */
KELUMPD64_API int DocWrite(void* job, const void* buffer, uint32_t length);

/* Ends the job and frees it: the file is closed and the launcher told.
 * 1, or 0 for a bad job. */
KELUMPD64_API int DocEnd(void* job);

/* Tells the user's launcher that the printer is going away. */
KELUMPD64_API void PrinterCleanup(const wchar_t* printerName);

/* A setting of the job's printer read as an integer, or fallback. */
KELUMPD64_API int getIntVal(void* job, const wchar_t* name, int fallback);

/* A setting of the job's printer as text into buffer (length characters with
 * the terminator), or the fallback cut to fit; "pdfaXML" gives the job's XMP
 * packet, or an empty text when it does not fit. 1, or 0 for a bad job. */
KELUMPD64_API int getStringVal(void* job, const wchar_t* name, wchar_t* buffer, int length,
                               const wchar_t* fallback);

/* "pdfaXML" as UTF-8 into buffer (length bytes); a packet that does not fit
 * leaves only what did, unterminated. Other names write nothing. 1, or 0 for
 * a bad job. */
KELUMPD64_API int getStringMultibyte(void* job, const char* name, char* buffer, int length);

#ifdef __cplusplus
}

/* Starts a job on the printer of that name (null or empty: the default
 * printer of the product). Exported under its decorated C++ name: callers
 * look it up by that name. */
KELUMPD64_API void* DocStart(wchar_t* printerName);

/* An empty class whose two assignment operators the library exports. */
class KELUMPD64_API CUmpd {
public:
    CUmpd& operator=(const CUmpd& other);
    CUmpd& operator=(CUmpd&& other);
};
#endif

#endif
