// Writes the coverage counts before a process exits with _exit. Linked only into coverage builds.

extern "C" {
void __gcov_dump();
[[noreturn]] void __real__exit(int status);

[[noreturn]] void __wrap__exit(int status) {
    __gcov_dump();
    __real__exit(status);
}
}
