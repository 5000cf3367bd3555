#pragma once

#include <cstdint>

// The spooler's handle-based form of the job's life. Not exported: nothing calls them yet.
void* DrvSplStartDoc(std::uintptr_t printerHandle, std::uint32_t jobId);
// Stores length into written first, whatever follows.
int DrvSplWritePrinter(void* job, const void* buffer, std::uint32_t length, std::uint32_t* written);
int DrvSplStartPage(void* job);
int DrvSplEndPage(void* job);
// Ends the job without freeing it.
void DrvSplEndDoc(void* job);
void DrvSplAbort(void* job);
// Frees the job; an open file is closed and nobody is told.
void DrvSplClose(void* job);
