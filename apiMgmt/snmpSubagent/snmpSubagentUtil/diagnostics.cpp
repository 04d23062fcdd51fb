#include "apiMgmt/snmpSubagent/snmpSubagentUtil/diagnostics.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "apiMgmt/common/platform/machineContext.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

struct flag_name {
    int bit;
    const char* name;
};

constexpr flag_name kFlagNames[] = {
    {0, "CF"},  {2, "PF"},  {4, "AF"},  {6, "ZF"},     {7, "SF"},     {8, "TF"},
    {9, "IF"},  {10, "DF"}, {11, "ZF"}, {12, "IOP-0"}, {13, "IOP-1"}, {14, "NF"},
    {16, "RF"}, {17, "VM"}, {18, "AC"}, {19, "VIF"},   {20, "VIP"},   {21, "ID"},
};

std::string names_of_flags(uint64_t flags) {
    std::string names;
    for (const flag_name& each : kFlagNames) {
        if ((flags >> each.bit & 1) != 0)
            names.append(" ").append(each.name);
    }
    return names;
}

using ull = unsigned long long;

}  // namespace

void context_backtrace() {
    SUBAGENT_LOG(raw, "calling getcontext()...\n");
    MachineContext context{};
    ReadMachineContext(&context);
    SUBAGENT_LOG(raw, "returned from getcontext()\n");
    SUBAGENT_LOG(raw, "calling snmp_log with context stuff...\n");
    SUBAGENT_LOG(raw, "rax=%016llX, rbx=%016llX, rcx=%016llX, rdx=%016llX\n", ull{context.rax},
                 ull{context.rbx}, ull{context.rcx}, ull{context.rdx});
    SUBAGENT_LOG(raw, "rsi=%016llX, rdi=%016llX, rbp=%016llX, rsp=%016llX\n", ull{context.rsi},
                 ull{context.rdi}, ull{context.rbp}, ull{context.rsp});
    SUBAGENT_LOG(raw, " r8=%016llX,  r9=%016llX, r10=%016llX, r11=%016llX\n", ull{context.r8},
                 ull{context.r9}, ull{context.r10}, ull{context.r11});
    SUBAGENT_LOG(raw, "r12=%016llX, r13=%016llX, r14=%016llX, r15=%016llX\n", ull{context.r12},
                 ull{context.r13}, ull{context.r14}, ull{context.r15});
    SUBAGENT_LOG(raw, " ds=%08X,          es=%08X,          fs=%08X,          gs=%08X\n", context.ds,
                 context.es, context.fs, context.gs);
    SUBAGENT_LOG(raw, "rip=%016llX,  cs=%016llX,  ss=%016llX, flags=0x%X%s\n", ull{context.rip},
                 ull{context.cs}, ull{context.ss}, static_cast<unsigned>(context.flags),
                 names_of_flags(context.flags).c_str());
}

void snmp_hexDump(const void* bytes, int length, const char* title) {
    constexpr int kBytesPerLine = 16;
    constexpr int kLineLength = 78;
    constexpr int kHexColumn = 8;
    constexpr int kTextColumn = 61;

    SUBAGENT_LOG(raw, "--------- %s --------- (%d bytes)\n", title, length);
    const auto* data = static_cast<const unsigned char*>(bytes);
    for (int start = 0; start < length; start += kBytesPerLine) {
        char line[kLineLength + 2];
        memset(line, ' ', kLineLength);
        line[kLineLength] = '\n';
        line[kLineLength + 1] = '\0';
        char digits[16];
        snprintf(digits, sizeof digits, "+%04X", static_cast<unsigned>(start) & 0xFFFFU);
        memcpy(line, digits, 5);
        for (int i = 0; i < kBytesPerLine && start + i < length; ++i) {
            const unsigned char byte = data[start + i];
            snprintf(digits, sizeof digits, "%02X", byte);
            memcpy(line + kHexColumn + 3 * i + i / 4, digits, 2);
            line[kTextColumn + i] = byte >= 0x20 && byte <= 0x7e ? static_cast<char>(byte) : '.';
        }
        SUBAGENT_LOG(raw, "%s", line);
    }
}
