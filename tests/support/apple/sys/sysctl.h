#pragma once

// The kernel's process table as a 64-bit Mac lays it out: the members that are read, in their
// places.

#include <cstddef>

#define CTL_KERN 1
#define KERN_PROC 14
#define KERN_PROC_ALL 0

struct kinfo_proc {
  struct {
    char before_pid[40];
    int p_pid;
    char before_comm[199];
    char p_comm[17];
    char after_comm[36];
  } kp_proc;
  struct {
    char before_ppid[264];
    int e_ppid;
    char after_ppid[84];
  } kp_eproc;
};

extern "C" int sysctl(int* name, unsigned nameLength, void* old, std::size_t* oldSize,
                      void* replacement, std::size_t replacementSize);
