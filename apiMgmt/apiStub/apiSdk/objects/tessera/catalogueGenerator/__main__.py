"""Writes the classes of the array's objects, their registration and their description.

Run from the root of the sources: python3 -m apiMgmt.apiStub.apiSdk.objects.tessera.catalogueGenerator
"""

import argparse
import glob
import os
import sys

from apiMgmt.common.generator import output, reader

from ..enumerationGenerator import model as enumerations
from . import (check, describe, names, read, renderAssociations, renderHeader, renderReference, renderRegistration,
               renderSource)
from .model import Catalogue


def read_catalogue(folder):
    """folder: holds objects/*.def and methodObjects.def."""
    objects = []
    for path in sorted(glob.glob(os.path.join(folder, "objects", "*.def"))):
        lines = reader.read_lines(path)
        if not lines:
            raise reader.DataError(f"{os.path.basename(path)}:1: the file holds no object")
        objects.append(read.read_object(lines))
    method_objects = read.read_method_objects(reader.read_lines(os.path.join(folder, "methodObjects.def")))
    if not method_objects:
        raise reader.DataError("methodObjects.def:1: the file holds no method object")
    return Catalogue(objects, method_objects)


def render(catalogue):
    """Names and texts of all that is made."""
    files = [("catalogueRegistration.cpp", renderRegistration.render(catalogue)),
             ("apiAssociations.cpp", renderAssociations.render(catalogue)),
             ("catalogue.json", describe.render_json(catalogue)),
             ("apiReference.md", renderReference.render(catalogue)),
             (names.METHOD_OBJECT_UNIT + ".h", renderHeader.render_method_objects(catalogue.method_objects)),
             (names.METHOD_OBJECT_UNIT + ".cpp", renderSource.render_method_objects(catalogue.method_objects))]
    for each in catalogue.objects:
        files.append((names.unit(each.name) + ".h", renderHeader.render_object(each)))
        files.append((names.unit(each.name) + ".cpp", renderSource.render_object(each)))
    return files


def main():
    parser = argparse.ArgumentParser(prog="catalogueGenerator", description=__doc__)
    parser.add_argument("--data", required=True, help="folder of objects, methodObjects.def and enumerations")
    parser.add_argument("--out", required=True, help="folder for what is made")
    arguments = parser.parse_args()
    try:
        catalogue = read_catalogue(arguments.data)
        tables = enumerations.read_folder(os.path.join(arguments.data, "enumerations"))
        check.check_catalogue(catalogue, {table.name for table in tables})
    except (reader.DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    output.write_files(arguments.out, render(catalogue))
    return 0


if __name__ == "__main__":
    sys.exit(main())
