#pragma once

#include <cstdint>

/** The caller's registers as getcontext(3) gives them. A system that does not show one leaves it 0. */
struct MachineContext {
    uint64_t rax, rbx, rcx, rdx, rsi, rdi, rbp, rsp;
    uint64_t r8, r9, r10, r11, r12, r13, r14, r15;
    uint32_t ds, es, fs, gs;
    uint64_t rip, cs, ss, flags;
};

void ReadMachineContext(MachineContext* context);
