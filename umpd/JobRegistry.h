#pragma once

class UmDriver;

// Every live job of the process. An export trusts a job pointer only when it is found here
// and its magic matches: a freed, made-up or foreign pointer is never read through.
void registerJob(UmDriver* job);
void forgetJob(UmDriver* job);
// The job, or null when the pointer is no live job with its magic.
UmDriver* findJob(const void* pointer);

// What an entry point asks of a job.
enum class JobNeed { Magic, Ready };
// The job when it meets the need; else the entry point's "invalid parms" box and null.
UmDriver* checkedJob(const void* pointer, JobNeed need, const char* failure);
