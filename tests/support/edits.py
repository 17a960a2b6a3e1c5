#!/usr/bin/env python3
"""Repeats edits of property lists on plain dictionaries, and compares the results with what was saved.

The input file is a sequence of cases. Each consists of a line with the name and the sizes of three lists, separated by
tabs, and of the bytes of the lists: the file before the edits, the operations, and the file after the edits. An operation
has a path of keys and indexes, and a value to `set` or to `insert` before an index there, or none to remove what is
there. Prints one line for each difference. Values of different types are different: neither 1 and 1.0 nor 1 and true are
the same.
"""

import plistlib
import sys

sys.dont_write_bytecode = True  # the sources stay as they are
from untouched import differences, load


def apply(operation, root):
    *above, last = operation["path"]
    place = root
    for step in above:
        place = place[step]
    if "insert" in operation:
        place.insert(last, operation["insert"])
    elif "set" in operation:
        place[last] = operation["set"]
    else:
        del place[last]


def value_at(root, path):
    for step in path:
        try:
            root = root[step]
        except (IndexError, KeyError, TypeError):
            return "nothing"
    return repr(root)


def cases(stream):
    while line := stream.readline():
        name, *sizes = line.decode().rstrip("\n").split("\t")
        yield name, *(stream.read(int(size)) for size in sizes)


def check(name, before, operations, after):
    try:
        expected = load(before)
        for operation in plistlib.loads(operations):
            apply(operation, expected)
        saved = load(after)
    except Exception as error:
        return [f"{name}: {type(error).__name__}: {error}"]
    return [
        f"{name}: {path}: {value_at(saved, path)} was saved, expected {value_at(expected, path)}"
        for path in differences(expected, saved)
    ]


def main():
    with open(sys.argv[1], "rb") as stream:
        for case in cases(stream):
            for line in check(*case):
                print(line)


main()
