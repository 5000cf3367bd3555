/* A host built against the installed tree: converts a line and checks the content. */
#include <kelumpd64/conversion.h>
#include <kelumpd64/limits.h>
#include <stdio.h>
#include <string.h>

int main(void) {
    const float identity[6] = {1, 0, 0, 1, 0, 0};
    const char program[] = "0 0 moveto 72 72 lineto stroke\n";
    uint32_t length = (uint32_t)strlen(program);
    PSHandle handle = PSOpen(identity);
    if (!handle) return 1;
    PSSetStepLimit(handle, 1000000);
    const char* content = PSConvertToPdf(handle, (const unsigned char*)program, &length);
    int ok = content && length > 0 && memmem(content, length, "72 72 l", 7) != NULL;
    printf("%.*s", ok ? (int)length : 0, ok ? content : "");
    PSClose(handle);
    return ok ? 0 : 1;
}
