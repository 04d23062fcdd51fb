#pragma once

#include <cstdint>

/** Registers as returned by getcontext(3). A register that the system does not report is 0. */
struct MachineContext {
    uint64_t rax, rbx, rcx, rdx, rsi, rdi, rbp, rsp;
    uint64_t r8, r9, r10, r11, r12, r13, r14, r15;
    uint32_t ds, es, fs, gs;
    uint64_t rip, cs, ss, flags;
};

void ReadMachineContext(MachineContext* context);
