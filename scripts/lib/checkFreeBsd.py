"""Compiles the sources of a build for FreeBSD. scripts/check-freebsd describes it.

Usage: checkFreeBsd.py [--with-tests] BUILD
"""

import concurrent.futures
import glob
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

TARGET = "x86_64-unknown-freebsd14.0"
SKIPPED = 77
# Headers of other libraries in /usr/include, which do not depend on the system. OpenSSL's are in two directories.
LIBRARIES = ("CLI", "nlohmann", "google", "net-snmp", "expat.h", "expat_external.h", "x86_64-linux-gnu/expat_config.h",
             "gtest", "gmock", "benchmark")
OPENSSL = ("openssl", "x86_64-linux-gnu/openssl")
# Omitted: generated classes, except one that represents all, because they come from the same template; and copies of
# sources with planted faults.
REPEATED = re.compile(r"/tessera/src/apiTs(?!Disk\.)|/fuzz/planted/")
# The first is for GCC's -Wno-restrict in the build's options; the others are those of cmake/ProjectOptions.cmake.
OPTIONS = ("-Wno-unknown-warning-option", "-Wno-unused-private-field", "-Wno-overlength-strings")


def skip(reason):
    print(f"skipped '{reason}'")
    sys.exit(SKIPPED)


def newest(pattern):
    """Returns the path with the highest number in its name."""
    return max(glob.glob(pattern), key=lambda path: int("".join(filter(str.isdigit, path)) or 0), default=None)


def find_tools():
    """Returns (sysroot, compiler, directory of the C++ library's headers)."""
    sysroot = os.environ.get("FREEBSD_SYSROOT", "")
    if not os.path.isfile(os.path.join(sysroot, "usr/include/sys/event.h")):
        skip("FREEBSD_SYSROOT is not a directory with FreeBSD's usr/include")
    compiler = shutil.which("clang++") or newest("/usr/bin/clang++-*")
    library = newest("/usr/lib/llvm-*/include/c++/v1")
    if library and os.access(compiler_of_it := library.replace("include/c++/v1", "bin/clang++"), os.X_OK):
        compiler = compiler_of_it
    own = os.path.join(sysroot, "usr/include/c++/v1")
    if os.path.isdir(own):
        library = own
    if not compiler or not library:
        skip("clang++ or the headers of libc++ are missing; run apt-get install clang-16 libc++-16-dev")
    return sysroot, compiler, library


def gather_libraries(directory):
    (directory / "openssl").mkdir()
    for name in LIBRARIES:
        source = pathlib.Path("/usr/include") / name
        if source.exists():
            (directory / source.name).symlink_to(source)
    for name in OPENSSL:
        for header in (pathlib.Path("/usr/include") / name).glob("*.h"):
            (directory / "openssl" / header.name).symlink_to(header)


def options_of(entry):
    """Yields the options of an entry of compile_commands.json that do not depend on the system."""
    words = shlex.split(entry["command"])
    for word, following in zip(words, words[1:]):
        if word == "-isystem":
            yield from (word, following)
        elif word.startswith(("-I", "-D", "-W", "-std=")):
            yield word


def units_of(root, build, with_tests):
    """Returns each source file with its options; FreeBSD files replace those for Linux."""
    entries = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    others = () if with_tests else tuple(f"{root}/{folder}/" for folder in ("tests", "bench", "fuzz"))
    units = {entry["file"]: list(options_of(entry)) for entry in entries
             if not entry["file"].startswith(others) and not REPEATED.search(entry["file"])}
    for file in [file for file in units if file.endswith("Linux.cpp")]:
        units[file.replace("Linux.cpp", "FreeBsd.cpp")] = units.pop(file)
    missing = {str(path) for path in (root / "apiMgmt").rglob("*FreeBsd.cpp")} - set(units)
    if missing:
        sys.exit(f"check-freebsd: no file for Linux corresponds to {' '.join(sorted(missing))}")
    return sorted(units.items())


def main(build, with_tests):
    sysroot, compiler, library = find_tools()
    root, build = pathlib.Path.cwd(), pathlib.Path(build).resolve()
    resources = subprocess.run([compiler, "-print-resource-dir"], check=True, capture_output=True, text=True).stdout
    with tempfile.TemporaryDirectory() as directory:
        gather_libraries(pathlib.Path(directory))
        command = [compiler, f"--target={TARGET}", f"--sysroot={sysroot}", "-fsyntax-only", "-nostdinc", "-nostdinc++"]
        for place in (library, resources.strip() + "/include", f"{sysroot}/usr/include", directory):
            command += ["-isystem", place]

        def compile_unit(unit):
            file, options = unit
            return subprocess.run([*command, *options, *OPTIONS, file], capture_output=True, text=True, check=False)

        units = units_of(root, build, with_tests)
        failed = 0
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for done in pool.map(compile_unit, units):
                failed += done.returncode != 0
                print(done.stderr.replace(f"{root}/", ""), end="", flush=True)
    print(f"{len(units)} files, {failed} do not compile for {TARGET}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[-1], "--with-tests" in sys.argv))
