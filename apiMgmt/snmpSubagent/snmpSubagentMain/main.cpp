#include <unistd.h>

#include <cstdio>

#include "apiMgmt/snmpSubagent/snmpSubagentMain/startOptions.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/startUp.h"

int main(int argc, char* argv[]) {
    if (const std::optional<int> status = answer_options(argc, argv))
        return *status;
    const int status = run_subagent(argc, argv);
    // The other threads are not joined: they may be at work while static objects would be destroyed.
    fflush(nullptr);
    _exit(status);
}
