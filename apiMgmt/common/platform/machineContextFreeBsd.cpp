#include <ucontext.h>

#include "apiMgmt/common/platform/machineContext.h"

void ReadMachineContext(MachineContext* context) {
    *context = {};
    ucontext_t here;
    if (getcontext(&here) != 0)
        return;
    const mcontext_t& machine = here.uc_mcontext;
    *context = {
        .rax = static_cast<uint64_t>(machine.mc_rax),
        .rbx = static_cast<uint64_t>(machine.mc_rbx),
        .rcx = static_cast<uint64_t>(machine.mc_rcx),
        .rdx = static_cast<uint64_t>(machine.mc_rdx),
        .rsi = static_cast<uint64_t>(machine.mc_rsi),
        .rdi = static_cast<uint64_t>(machine.mc_rdi),
        .rbp = static_cast<uint64_t>(machine.mc_rbp),
        .rsp = static_cast<uint64_t>(machine.mc_rsp),
        .r8 = static_cast<uint64_t>(machine.mc_r8),
        .r9 = static_cast<uint64_t>(machine.mc_r9),
        .r10 = static_cast<uint64_t>(machine.mc_r10),
        .r11 = static_cast<uint64_t>(machine.mc_r11),
        .r12 = static_cast<uint64_t>(machine.mc_r12),
        .r13 = static_cast<uint64_t>(machine.mc_r13),
        .r14 = static_cast<uint64_t>(machine.mc_r14),
        .r15 = static_cast<uint64_t>(machine.mc_r15),
        .ds = machine.mc_ds,
        .es = machine.mc_es,
        .fs = machine.mc_fs,
        .gs = machine.mc_gs,
        .rip = static_cast<uint64_t>(machine.mc_rip),
        .cs = static_cast<uint64_t>(machine.mc_cs),
        .ss = static_cast<uint64_t>(machine.mc_ss),
        .flags = static_cast<uint64_t>(machine.mc_rflags),
    };
}
