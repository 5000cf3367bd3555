/* A host that knows the object record only by its offsets, as a program in
 * another language would read it: the C compiler's layout must agree. */
#include "HostReader.h"

#include <stdio.h>
#include <string.h>

_Static_assert(sizeof(PdfObject) == 96, "the record is 96 bytes");

static const void* pointerAt(const unsigned char* record, size_t offset) {
    const void* p;
    memcpy(&p, record + offset, sizeof p);
    return p;
}

static uint32_t u32At(const unsigned char* record, size_t offset) {
    uint32_t v;
    memcpy(&v, record + offset, sizeof v);
    return v;
}

static uint64_t u64At(const unsigned char* record, size_t offset) {
    uint64_t v;
    memcpy(&v, record + offset, sizeof v);
    return v;
}

int hostListObjects(PSHandle handle, char* out, size_t room) {
    uint64_t count = 0;
    PdfObject** objects = PSGetPdfObjects(handle, &count);
    size_t used = 0;
    uint64_t i;
    if (!objects) return -1;
    out[0] = '\0';
    for (i = 0; i < count; ++i) {
        const unsigned char* record = (const unsigned char*)objects[i];
        const char* dictionary = (const char*)pointerAt(record, 0);
        const char* data = (const char*)pointerAt(record, 24);
        const unsigned length = (unsigned)u64At(record, 32);
        int n =
            snprintf(out + used, room - used,
                     "%s kind=%d uncompressed=%u reserved=%u length=%u data=%.*s "
                     "dictionary=%s extra=%s procedure=%s\n",
                     (const char*)pointerAt(record, 40), (int)u32At(record, 48),
                     (unsigned)u32At(record, 20), (unsigned)u32At(record, 16), length, (int)length,
                     data ? data : "", dictionary ? dictionary : "-",
                     pointerAt(record, 8) ? "set" : "null", pointerAt(record, 56) ? "set" : "null");
        if (n < 0 || (size_t)n >= room - used) return -1;
        used += (size_t)n;
    }
    return (int)count;
}
