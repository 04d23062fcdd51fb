"""Tests the installed library: other programs find it, link it, and run with the simulated array.

packageTest.py BUILD [unittest arguments]
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "../../.."))
sys.path.insert(0, ROOT)
from codegen.model import catalogueReader  # noqa: E402  (found through the line above)
from codegen.reader import Data  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = ("share", "doc", "tesseraApi", "examples")


def run(*command, check=True):
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if check and result.returncode != 0:
        raise AssertionError(f"{' '.join(command)} exited with {result.returncode}:\n{result.stdout}{result.stderr}")
    return result


class Package(unittest.TestCase):
    build = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="apiPackage")
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.prefix = cls.path("prefix")
        cls.socket, cls.control = cls.path("api.sock"), cls.path("control.sock")
        cls.array = os.path.join(cls.build, "arraySim", "arraySim")
        run("cmake", "--install", cls.build, "--component", "api_library", "--prefix", cls.prefix)
        cls.example = cls.compile(os.path.join(cls.prefix, *EXAMPLES, "listDisks"), "listDisks")

    @classmethod
    def path(cls, *names):
        return os.path.join(cls.folder, *names)

    @classmethod
    def compile(cls, source, program, *options):
        """Builds a project that is given only the prefix of the package. Returns the program's path."""
        build = cls.path("build-" + program)
        run("cmake", "-G", "Ninja", "-S", source, "-B", build, f"-DCMAKE_PREFIX_PATH={cls.prefix}",
            "-DCMAKE_BUILD_TYPE=Debug", *options)
        run("cmake", "--build", build)
        return os.path.join(build, program)

    def tell(self, *words):
        return run(self.array, "tell", "--control", self.control, *words, check=False)

    def start_array(self):
        served = subprocess.Popen([self.array, "serve", "--preset", "small", "--spelling", "library", "--key", "KEY",
                                   "--socket", self.socket, "--control", self.control])
        self.addCleanup(served.wait, 60)
        self.addCleanup(served.terminate)
        while self.tell("list").returncode != 0:
            self.assertIsNone(served.poll(), "the simulated array has exited")
            time.sleep(0.1)

    def run_example(self, key="KEY"):
        result = run(self.example, "Down", self.socket, key, check=False)
        return result.returncode, result.stdout, result.stderr

    def test_the_example_lists_disks_or_reports_an_error(self):
        status, output, errors = self.run_example()
        self.assertEqual((status, output), (1, ""))
        self.assertIn(self.socket, errors)
        self.assertIn("no session key", self.run_example(key="")[2])
        self.start_array()
        for command in ("fail TsDisk 3", "set TsDisk 3 Size 3221225472", "set TsDisk 11 Size 2",  # 11 is down already
                        "set TsEnclosure 2 InstanceName Enclosure 4"):
            self.assertEqual(self.tell(command).returncode, 0, command)
        self.assertEqual(self.run_example(), (0, "02-02  1.50 TB  Contact with the disk was lost  Enclosure 4\n"
                                                 "02-07  1 KB  Contact with the disk was lost  Enclosure 4\n", ""))
        self.tell("fault error UserPrivilegeError not for you on TsDisk for 1")
        self.assertEqual(self.run_example(), (1, "", "listDisks: TsDisk GetList failed: UserPrivilegeError (11): not for you\n"))

    def test_the_links_of_the_installed_pages_lead_somewhere(self):
        folder = os.path.join(self.prefix, "share", "doc", "tesseraApi")
        checked = 0
        for page in ("apiLibrary.md", "apiReference.md"):
            with open(os.path.join(folder, page), encoding="utf-8") as file:
                text = file.read()
            headings = {re.sub(r"[^\w -]", "", line.lower()).replace(" ", "-")
                        for line in re.findall(r"^#+ (.*)", text, re.MULTILINE)}
            for target in re.findall(r"\]\(([^)]+)\)", text):
                checked += 1
                found = target[1:] in headings if target.startswith("#") else \
                    os.path.exists(os.path.join(folder, target))
                self.assertTrue(found, f"{page}: {target}")
        self.assertGreater(checked, 100)

    def test_all_classes_are_available_through_another_library(self):
        """Also checks that every installed header compiles on its own."""
        include = os.path.join(self.prefix, "include", "tesseraApi")
        units = self.path("units")
        os.mkdir(units)
        headers = [os.path.relpath(os.path.join(folder, name), include)
                   for folder, _, names in os.walk(include) for name in names]
        self.assertIn("apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h", headers)
        # Each is the first of a unit, so that none depends on another. The generated headers of objects share one unit.
        for header in headers:
            if not header.endswith(".pb.h") and "/tessera/src/apiT" not in header:
                with open(os.path.join(units, header.replace("/", "_") + ".cpp"), "w", encoding="utf-8") as file:
                    file.write(f'#include "{header}"\n#include "{header}"\n')
        with open(os.path.join(units, "objects.cpp"), "w", encoding="utf-8") as file:
            file.writelines(f'#include "{header}"\n' for header in headers)
        consumer = self.compile(os.path.join(HERE, "consumer"), "consumer", f"-DHEADER_UNITS={units}")
        catalogue, _ = catalogueReader.read(Data(os.path.join(ROOT, "data")))
        methods = sum(len(each.commands) for each in catalogue.objects)
        # The status record of a response is an object, too.
        expected = f"{len(catalogue.objects) + 1} {methods} {len(catalogue.method_objects)}\n"
        self.assertEqual(run(consumer).stdout, expected)


if __name__ == "__main__":
    Package.build = sys.argv.pop(1)
    unittest.main(verbosity=2)
