#include <ucontext.h>

#include "apiMgmt/common/platform/machineContext.h"

void ReadMachineContext(MachineContext* context) {
    *context = {};
    ucontext_t here;
    if (getcontext(&here) != 0)
        return;
#if defined(__x86_64__)
    const auto reg = [&here](int number) { return static_cast<uint64_t>(here.uc_mcontext.gregs[number]); };
    context->rax = reg(REG_RAX);
    context->rbx = reg(REG_RBX);
    context->rcx = reg(REG_RCX);
    context->rdx = reg(REG_RDX);
    context->rsi = reg(REG_RSI);
    context->rdi = reg(REG_RDI);
    context->rbp = reg(REG_RBP);
    context->rsp = reg(REG_RSP);
    context->r8 = reg(REG_R8);
    context->r9 = reg(REG_R9);
    context->r10 = reg(REG_R10);
    context->r11 = reg(REG_R11);
    context->r12 = reg(REG_R12);
    context->r13 = reg(REG_R13);
    context->r14 = reg(REG_R14);
    context->r15 = reg(REG_R15);
    context->rip = reg(REG_RIP);
    context->flags = reg(REG_EFL);
    // Linux packs the segments into one word: cs, gs, fs, ss from the low end. It does not save ds and es.
    const uint64_t segments = reg(REG_CSGSFS);
    context->cs = segments & 0xFFFF;
    context->gs = segments >> 16 & 0xFFFF;
    context->fs = segments >> 32 & 0xFFFF;
    context->ss = segments >> 48 & 0xFFFF;
#endif
}
